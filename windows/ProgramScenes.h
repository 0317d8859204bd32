// All that the program draws, by whoever's orders: the main window, the first run's, the popover and the About panel.
// Why there may be two who order: docs/decisions/0027-one-process-where-the-host-chooses-it.md
#pragma once

#include <QObject>
#include <QString>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "platform/ActivationRequest.h"
#include "platform/Desktop.h"
#include "runtime/Runtime.h"
#include "windows/PopoverController.h"
#include "windows/SceneSet.h"
#include "windows/WindowKeys.h"

namespace quillmere {

class DesktopServices;
class MixerState;
class ViewFactory;

/// What gestures in the windows ask of the rest of the program. [main]
struct SceneIntents {
  std::function<void(const ActivationRequest& request)> openMainWindow;
  std::function<void()> finishOnboarding;
  std::function<void()> quit;
};

/// What differs from one kind of display to the next. What is empty is not done. [main]
struct SceneHost {
  /// The desktop as windows ask it. Asked with the first window.
  std::function<Desktop()> makeDesktop;
  std::unique_ptr<PopoverStage> stage;
  /// Before the first window: its renderer, and what else a display needs to be told.
  std::function<void()> prepare;
  /// The family of the face in which the desktop writes. Asked with the first window; empty leaves the toolkit's.
  std::function<QString()> fontFamily;
  /// Whether a window that was asked for while it showed is seen; where nobody can say, it is.
  SightTest sight;
  /// The popover goes before the window that is asked for comes, and not after it.
  bool closesPopoverFirst = false;
  /// Whether the display is given the program's picture. One that has it from the program's bundle, in every size,
  /// would show this one instead.
  bool givesIcon = true;
  /// Told of each window that can be opened by its identifier, whenever the display has made one for it and before that
  /// one shows: what is closed and opened again is another one to the display.
  std::function<void(QWindow& window, const std::string& identifier)> made;
};

/// [main] throughout. Unknown identifiers are ignored.
class ProgramScenes final : public QObject {
  Q_OBJECT

 public:
  ProgramScenes(const Runtime& runtime, std::shared_ptr<MixerState> state, SceneHost host, SceneIntents intents);
  ~ProgramScenes() override;

  /// Shows the window; the main one at a section, where one is named.
  void open(const std::string& identifier, const std::optional<std::string>& section);
  void close(const std::string& identifier) { scenes_.close(identifier); }
  void orderFront(const std::string& identifier) { scenes_.orderFront(identifier); }
  void activate() { scenes_.activate(); }
  void showAboutPanel() { about_.show(); }
  void togglePopover(const PopoverPlace& place) { popover_.toggle(place); }
  [[nodiscard]] bool isVisible(const std::string& identifier) const { return scenes_.isVisible(identifier); }
  /// Whether anything is shown, or kept for a quick return.
  [[nodiscard]] bool holdsAny() const;

 Q_SIGNALS:
  void shown(const std::string& identifier);
  void becameKey(const std::string& identifier);
  /// The user or the window manager closes the window, which still counts as visible.
  void willClose(const std::string& identifier);
  /// `isClosing`: by the user or the window manager.
  void hidden(const std::string& identifier, bool isClosing);
  void dropped();

 private:
  ViewFactory& factory();
  [[nodiscard]] KeyIntents keyIntents();
  [[nodiscard]] std::unique_ptr<QWindow> makeAbout();
  void giveIcon() const;
  void tellWhenMade(QWindow& window, const std::string& identifier);
  template <typename Window>
  std::unique_ptr<Window> served(std::unique_ptr<Window> window);

  Runtime runtime_;
  std::shared_ptr<MixerState> state_;
  SceneHost host_;
  SceneIntents intents_;
  std::unique_ptr<DesktopServices> desktop_;
  std::unique_ptr<ViewFactory> factory_;
  SceneSet scenes_;
  WindowKeys keys_;
  PopoverController popover_;
  Scene about_;
};

}  // namespace quillmere
