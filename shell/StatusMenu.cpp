// The status item's menu as plain data.
#include "shell/StatusMenu.h"

#include "core/OneLine.h"
#include "core/RemainingText.h"
#include "core/SleepChoices.h"

namespace quillmere {

namespace {

StatusMenuEntry item(std::string title, StatusAction action, std::string key = {}) {
  StatusMenuEntry entry;
  entry.title = std::move(title);
  entry.action = action;
  entry.key = std::move(key);
  return entry;
}

StatusMenuEntry separator() { return item({}, StatusAction::separator); }

StatusMenuEntry sleepTimer(const StatusMenuInput& input) {
  auto entry = item("Sleep Timer", StatusAction::none);
  entry.representedObject = "sleepTimer";
  entry.hasSubmenu = true;
  if (input.sleepTimerEndsAt) {
    entry.title += " · " + formatRemaining(*input.sleepTimerEndsAt, input.now);
    entry.submenu.push_back(item("Cancel sleep timer", StatusAction::cancelSleep));
    return entry;
  }
  for (const int minutes : sleepChoices) {
    auto choice = item(std::to_string(minutes) + " minutes", StatusAction::sleepFor);
    choice.tag = minutes;
    entry.submenu.push_back(std::move(choice));
  }
  return entry;
}

StatusMenuEntry profiles(const StatusMenuInput& input) {
  auto entry = item("Profiles", StatusAction::none);
  entry.representedObject = "profiles";
  entry.hasSubmenu = true;
  for (const auto& profile : input.profiles) {
    auto choice = item(oneLine(profile.name), StatusAction::applyProfile);
    choice.representedObject = profile.id.text();
    choice.isOn = input.activeProfileID == profile.id;
    entry.submenu.push_back(std::move(choice));
  }
  return entry;
}

}  // namespace

std::vector<StatusMenuEntry> statusMenu(const StatusMenuInput& input) {
  return {item("Open quillmere Window", StatusAction::openMainWindow, "0"),
          separator(),
          item(input.isWhisperMode ? "Restore from Whisper Mode" : "Engage Whisper Mode", StatusAction::toggleWhisper),
          sleepTimer(input),
          profiles(input),
          separator(),
          item("Settings…", StatusAction::openSettings, ","),
          item("About quillmere", StatusAction::openAbout),
          item(input.updateKnown ? "Download update…" : "Check for Updates…", StatusAction::checkForUpdates),
          separator(),
          item("Quit quillmere", StatusAction::quit, "q")};
}

}  // namespace quillmere
