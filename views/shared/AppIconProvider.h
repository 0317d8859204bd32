// Application icons for QML, drawn at the size that is asked for, in pixels.
// One that cannot be had comes as a single clear pixel: an error would be logged for each such application.
#pragma once

#include <QQuickAsyncImageProvider>
#include <QUrl>
#include <memory>
#include <string>

namespace quillmere {

class IconOmissions;
class Workspace;

/// Looks up and decodes on a pool of threads; icons of the desktop's theme are drawn on the main thread.
class AppIconProvider final : public QQuickAsyncImageProvider {
 public:
  static constexpr const char* id = "app-icon";
  /// The address under which an application's icon is asked for. A query "corner=0.2" rounds its corners by so much of
  /// its width, at most a half; without one they are rounded as in the mixer's rows.
  [[nodiscard]] static QUrl urlFor(const std::string& bundleID);

  /// The workspace outlives the provider and every request.
  explicit AppIconProvider(Workspace& workspace);
  ~AppIconProvider() override;

  QQuickImageResponse* requestImageResponse(const QString& address, const QSize& requestedSize) override;

  /// [main] From now on icons of the theme are drawn only once pictureStands() has been said: reading a theme for the
  /// first time takes longer than all else that a window's first picture waits for on this thread.
  void waitForPicture();
  void pictureStands();

 private:
  class ThemedIcons;

  Workspace& workspace_;
  /// Those who still look for an icon need it when this has gone.
  std::shared_ptr<IconOmissions> omissions_;
  std::shared_ptr<ThemedIcons> themed_;
};

}  // namespace quillmere
