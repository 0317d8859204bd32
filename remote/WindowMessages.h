// The kinds of messages between the program and the process that draws its windows.
#pragma once

namespace quillmere::wire {

// To the windows. Each of these has a number, one more than the one before.
constexpr const char* openWindow = "openWindow";    ///< window, token.
constexpr const char* closeWindow = "closeWindow";  ///< window.
constexpr const char* orderFront = "orderFront";    ///< window.
constexpr const char* activate = "activate";
constexpr const char* showAboutPanel = "showAboutPanel";
constexpr const char* togglePopover = "togglePopover";  ///< x and y, where the click was, or neither; token.
constexpr const char* closePopover = "closePopover";
constexpr const char* keepOldTray = "keepOldTray";  ///< isWanted: whether to look for an old tray, and use it.

// From the windows.
constexpr const char* windowShown = "windowShown";          ///< window.
constexpr const char* windowBecameKey = "windowBecameKey";  ///< window.
constexpr const char* windowHidden = "windowHidden";        ///< window, isClosing.
constexpr const char* openMainWindow = "openMainWindow";
constexpr const char* quit = "quit";
constexpr const char* taken = "taken";  ///< seen: the number of the last message that has been dealt with.
/// seen: the same. There is nothing to draw any more, and unless more was sent
/// meanwhile the process may end.
constexpr const char* idle = "idle";

}  // namespace quillmere::wire
