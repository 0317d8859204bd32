// The status item's menu as plain data.
#include "shell/StatusMenu.h"

#include "core/OneLine.h"
#include "core/RemainingText.h"
#include "core/SleepChoices.h"
#include "core/Texts.h"

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
  auto entry = item(translated("Sleep Timer"), StatusAction::none);
  entry.representedObject = "sleepTimer";
  entry.hasSubmenu = true;
  if (input.sleepTimerEndsAt) {
    entry.title += " · " + formatRemaining(*input.sleepTimerEndsAt, input.now);
    entry.submenu.push_back(item(translated("Cancel sleep timer"), StatusAction::cancelSleep));
    return entry;
  }
  for (const int minutes : sleepChoices) {
    auto choice =
        item(translatedCount("%1 minute", "%1 minutes", static_cast<unsigned long>(minutes)), StatusAction::sleepFor);
    choice.tag = minutes;
    entry.submenu.push_back(std::move(choice));
  }
  return entry;
}

StatusMenuEntry profiles(const StatusMenuInput& input) {
  auto entry = item(translated("Profiles"), StatusAction::none);
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
  return {item(translated("Open quillmere Window"), StatusAction::openMainWindow, "0"),
          separator(),
          item(input.isWhisperMode ? translated("Restore from Whisper Mode") : translated("Engage Whisper Mode"),
               StatusAction::toggleWhisper),
          sleepTimer(input),
          profiles(input),
          separator(),
          item(translated("Settings…"), StatusAction::openSettings, ","),
          item(translated("About quillmere"), StatusAction::openAbout),
          item(input.updateKnown ? translated("Download update…") : translated("Check for Updates…"),
               StatusAction::checkForUpdates),
          separator(),
          item(translated("Quit quillmere"), StatusAction::quit, "q")};
}

}  // namespace quillmere
