// The windows that desktops list, by identifier, each a scene of its own.
#pragma once

#include <QObject>
#include <map>
#include <memory>
#include <string>

#include "runtime/Runtime.h"
#include "windows/Scene.h"

namespace quillmere {

/// [main] throughout. Unknown identifiers are ignored.
class SceneSet final : public QObject {
  Q_OBJECT

 public:
  explicit SceneSet(const Runtime& runtime, SightTest sight = {});
  ~SceneSet() override;

  /// Makes a window known under its identifier.
  void add(const std::string& identifier, WindowFactory factory);

  void open(const std::string& identifier);
  void close(const std::string& identifier);
  /// Makes the window key and brings it to the front, if it shows.
  void orderFront(const std::string& identifier);
  /// Brings all that show to the front.
  void activate();
  /// The window under this identifier, shown or kept; null where there is none at the moment.
  [[nodiscard]] QWindow* window(const std::string& identifier) const;
  /// As desktops list them: by identifier, whether it shows.
  [[nodiscard]] bool isVisible(const std::string& identifier) const;
  /// Whether any window is shown, or kept for a quick return.
  [[nodiscard]] bool holdsAny() const;

 Q_SIGNALS:
  void shown(const std::string& identifier);
  void becameKey(const std::string& identifier);
  /// By the user or the window manager; it still counts as visible.
  void willClose(const std::string& identifier);
  /// `isClosing`: by the user or the window manager.
  void hidden(const std::string& identifier, bool isClosing);
  void dropped();

 private:
  Runtime runtime_;
  SightTest sight_;
  std::map<std::string, std::unique_ptr<Scene>> scenes_;
};

}  // namespace quillmere
