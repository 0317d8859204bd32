// How people want programs to look, as the desktop tells it: what the look leaves open follows it.
#pragma once

#include <QObject>
#include <QString>

namespace quillmere {

/// One for all windows. [main]
class Appearance final : public QObject {
  Q_OBJECT

 public:
  static Appearance& shared();

  /// Nothing moves that need not: what would glide is there at once, and what pulses stands still.
  [[nodiscard]] bool reducesMotion() const { return reducesMotion_; }
  void setReducesMotion(bool reduces);
  /// Texts and edges stand out.
  [[nodiscard]] bool wantsContrast() const { return wantsContrast_; }
  void setWantsContrast(bool wants);
  /// The family of the desktop's own face; empty where it has none in particular.
  [[nodiscard]] const QString& fontFamily() const { return fontFamily_; }
  /// Told before the first window is made; a name that stands for any face is none.
  void setFontFamily(const QString& family);
  /// Whether the name is what toolkits say where nobody has told them a face, or no name at all. [any]
  [[nodiscard]] static bool isAnyFace(const QString& family);

 Q_SIGNALS:
  void motionChanged();
  void contrastChanged();

 private:
  using QObject::QObject;

  bool reducesMotion_ = false;
  bool wantsContrast_ = false;
  QString fontFamily_;
};

}  // namespace quillmere
