// What gestures in the views ask of the rest of the program.
#pragma once

#include <functional>
#include <utility>

namespace quillmere {

/// [main] What is empty does nothing.
struct ViewIntents {
  /// Opens the main window and brings the program to the front.
  std::function<void()> openMainWindow;
  std::function<void()> quit;
  /// The first run has come to its end: its window goes, and the main window comes.
  std::function<void()> onboardingFinished;
};

/// Calls an intent, if there is somebody who takes it.
template <typename... Arguments, typename... Given>
void ask(const std::function<void(Arguments...)>& intent, Given&&... given) {
  if (intent) intent(std::forward<Given>(given)...);
}

}  // namespace quillmere
