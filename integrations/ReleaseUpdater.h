// The updater that knows the newest version from the product's feed of releases.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "platform/ReleaseFeed.h"
#include "platform/Updater.h"
#include "platform/UserDefaults.h"
#include "platform/Workspace.h"
#include "runtime/Runtime.h"

namespace quillmere {

/// [main] throughout. The feed is asked at most once a day, however often the program starts: the time of the last
/// question and the version it gave are kept in the settings.
class ReleaseUpdater final : public Updater {
 public:
  static constexpr const char* checkedKey = "quillmere.updateCheckedAt";
  static constexpr const char* versionKey = "quillmere.latestVersion";

  /// What was known last is known at once. All that is passed in outlives the updater.
  ReleaseUpdater(ReleaseFeed& feed, UserDefaults& defaults, Workspace& workspace, const Runtime& runtime);
  ~ReleaseUpdater() override;

  /// Asks the feed a while from now, if a day has passed since it was asked last, and once a day from then on.
  void start();
  /// Opens the page where the newest version is to be had; asks the feed too if a day has passed.
  void checkForUpdates() override;
  [[nodiscard]] const Observable<std::optional<std::string>>& latestVersion() const override { return latestVersion_; }

 private:
  class Check;
  [[nodiscard]] double secondsUntilDue() const;
  void schedule(double seconds);
  void ask();
  void take(const ReleaseFeed::Answer& answer);

  ReleaseFeed& feed_;
  UserDefaults& defaults_;
  Workspace& workspace_;
  Runtime runtime_;
  Logger log_;
  Observable<std::optional<std::string>> latestVersion_;
  TimerID timer_ = 0;
  /// Answers may come when the updater has gone.
  std::shared_ptr<ReleaseUpdater*> self_;
};

/// The newest version that a feed's text announces; absent, with `problem` saying why, where it is not a feed as ours
/// is: {"version": "1.2.3"}, with anything else beside it. [any]
[[nodiscard]] std::optional<std::string> versionInFeed(std::string_view text, std::string& problem);

}  // namespace quillmere
