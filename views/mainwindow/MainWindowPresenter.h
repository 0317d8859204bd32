// What the main window shows around its canvas: the sections, which of them shows, and the banner of an update.
#pragma once

#include <QtQml/qqmlregistration.h>
#include <QObject>
#include <QUrl>
#include <memory>
#include <vector>

#include "runtime/Observable.h"
#include "views/ViewServices.h"
#include "views/mainwindow/Section.h"
#include "views/mainwindow/SidebarModel.h"

namespace quillmere {

/// [main] Made with its window and gone with it.
class MainWindowPresenter final : public QObject {
  Q_OBJECT
  QML_ELEMENT
  QML_UNCREATABLE("Made with its window")
  Q_PROPERTY(quillmere::SidebarModel* upperItems READ upperItems CONSTANT FINAL)
  Q_PROPERTY(quillmere::SidebarModel* lowerItems READ lowerItems CONSTANT FINAL)
  Q_PROPERTY(QString section READ section NOTIFY sectionChanged FINAL)
  Q_PROPERTY(QUrl canvasSource READ canvasSource NOTIFY canvasChanged FINAL)
  Q_PROPERTY(QObject* canvas READ canvas NOTIFY canvasChanged FINAL)
  Q_PROPERTY(QString liveText READ liveText NOTIFY liveTextChanged FINAL)
  Q_PROPERTY(QString duckingText READ duckingText NOTIFY duckingTextChanged FINAL)
  Q_PROPERTY(QString updateText READ updateText NOTIFY updateTextChanged FINAL)

 public:
  explicit MainWindowPresenter(ViewServices services, QObject* parent = nullptr);
  ~MainWindowPresenter() override;

  [[nodiscard]] SidebarModel* upperItems() { return &upperItems_; }
  [[nodiscard]] SidebarModel* lowerItems() { return &lowerItems_; }
  /// The raw value of the section that shows.
  [[nodiscard]] QString section() const { return rawValue(section_); }
  /// The component that shows the section; none while the window is hidden.
  [[nodiscard]] QUrl canvasSource() const;
  /// What that component shows: made anew each time its section is shown. Null while the window is hidden.
  [[nodiscard]] QObject* canvas();
  /// "3 sources active"; empty while nothing sounds.
  [[nodiscard]] QString liveText() const;
  /// Empty while nothing is ducked.
  [[nodiscard]] QString duckingText() const;
  /// Empty unless a newer version is known.
  [[nodiscard]] QString updateText() const;
  /// Told by the window. One that is closed and opened anew starts at the mixer, with nothing as it was left.
  void setVisible(bool visible);

  /// Shows the section of this raw value; a text that is none changes nothing.
  Q_INVOKABLE void show(const QString& rawValue);
  /// Shows the section so many places further down the sidebar, from its end at the beginning again.
  Q_INVOKABLE void showNext(int places);
  Q_INVOKABLE void update();

 Q_SIGNALS:
  void sectionChanged();
  void canvasChanged();
  void liveTextChanged();
  void duckingTextChanged();
  void updateTextChanged();

 private:
  void showSection(Section section);
  void dropCanvas();
  void refreshLive();

  ViewServices services_;
  Section section_ = Section::mixer;
  SidebarModel upperItems_;
  SidebarModel lowerItems_;
  /// A child.
  QObject* canvas_ = nullptr;
  bool hidden_ = false;
  int liveCount_ = 0;
  std::vector<Subscription> subscriptions_;
};

}  // namespace quillmere
