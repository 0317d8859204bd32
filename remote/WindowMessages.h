// The kinds of messages between the program and the process that draws its windows.
#pragma once

namespace quillmere::wire {

/// version: what the sender is. The first message, both ways; whoever hears of another version than its own ends.
constexpr const char* hello = "hello";

// To the windows. Each of these has a number, one more than the one before.
/// window, token; section: which one the window is to show, absent for the one that shows.
constexpr const char* openWindow = "openWindow";
constexpr const char* closeWindow = "closeWindow";  ///< window.
constexpr const char* orderFront = "orderFront";    ///< window.
constexpr const char* activate = "activate";
constexpr const char* showAboutPanel = "showAboutPanel";  ///< token.
constexpr const char* togglePopover = "togglePopover";    ///< x and y, where the click was, or neither; token.
constexpr const char* keepOldTray = "keepOldTray";        ///< isWanted: whether to look for an old tray, and use it.
constexpr const char* answer = "answer";                  ///< Nothing but whether the process still does.

// From the windows.
constexpr const char* windowShown = "windowShown";          ///< window.
constexpr const char* windowBecameKey = "windowBecameKey";  ///< window.
constexpr const char* windowHidden = "windowHidden";        ///< window, isClosing.
constexpr const char* openMainWindow = "openMainWindow";    ///< section, or none.
constexpr const char* finishOnboarding = "finishOnboarding";
constexpr const char* quit = "quit";
constexpr const char* begun = "begun";  ///< seen: the number of the message that is about to be dealt with.
constexpr const char* taken = "taken";  ///< seen: the number of the last message that has been dealt with.
/// seen: the same. There is nothing to draw any more, and unless more was sent
/// meanwhile the process may end.
constexpr const char* idle = "idle";

}  // namespace quillmere::wire
