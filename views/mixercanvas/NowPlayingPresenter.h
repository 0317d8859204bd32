// The strip of what plays: the track, who plays it, and its transport.
#pragma once

#include <QtQml/qqmlregistration.h>
#include <QObject>
#include <QUrl>
#include <memory>
#include <vector>

#include "runtime/Observable.h"
#include "views/ViewServices.h"

namespace quillmere {

/// What the strip says of a track.
struct NowPlayingLook {
  bool shown = false;
  bool playing = false;
  QString title;
  /// Empty for none.
  QString artist;
  /// "· Spotify".
  QString sourceText;
  /// Empty where nobody is known to play.
  QUrl iconSource;

  friend bool operator==(const NowPlayingLook&, const NowPlayingLook&) = default;
};

/// [main]
class NowPlayingPresenter final : public QObject {
  Q_OBJECT
  QML_ELEMENT
  QML_UNCREATABLE("Made by its page's presenter")
  Q_PROPERTY(bool shown READ shown NOTIFY changed FINAL)
  Q_PROPERTY(bool playing READ playing NOTIFY changed FINAL)
  Q_PROPERTY(QString title READ title NOTIFY changed FINAL)
  Q_PROPERTY(QString artist READ artist NOTIFY changed FINAL)
  Q_PROPERTY(QString sourceText READ sourceText NOTIFY changed FINAL)
  Q_PROPERTY(QUrl iconSource READ iconSource NOTIFY changed FINAL)
  Q_PROPERTY(QString playSymbol READ playSymbol NOTIFY changed FINAL)
  Q_PROPERTY(QString playText READ playText NOTIFY changed FINAL)

 public:
  explicit NowPlayingPresenter(const ViewServices& services, QObject* parent = nullptr);

  [[nodiscard]] bool shown() const { return look_.shown; }
  [[nodiscard]] bool playing() const { return look_.playing; }
  [[nodiscard]] QString title() const { return look_.title; }
  [[nodiscard]] QString artist() const { return look_.artist; }
  [[nodiscard]] QString sourceText() const { return look_.sourceText; }
  [[nodiscard]] QUrl iconSource() const { return look_.iconSource; }
  [[nodiscard]] QString playSymbol() const;
  /// What the button in the middle does.
  [[nodiscard]] QString playText() const;

  Q_INVOKABLE void previous();
  /// Nothing while nothing is shown.
  Q_INVOKABLE void togglePlayPause();
  Q_INVOKABLE void next();

 Q_SIGNALS:
  void changed();

 private:
  void refresh();

  std::shared_ptr<MixerState> state_;
  DesktopServices& desktop_;
  NowPlayingLook look_;
  std::vector<Subscription> subscriptions_;
};

}  // namespace quillmere
