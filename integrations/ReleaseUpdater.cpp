// When to ask, what to believe, what to keep.
#include "integrations/ReleaseUpdater.h"

#include <algorithm>
#include <chrono>
#include <nlohmann/json.hpp>
#include <utility>

#include "core/Product.h"
#include "runtime/Threads.h"

namespace quillmere {

namespace {

constexpr double secondsBetweenChecks = 24.0 * 60.0 * 60.0;
/// A session that begins has better things to do.
constexpr double secondsAfterStart = 60.0;
constexpr std::size_t maxVersionBytes = 64;

/// Digits and dots, and a digit first. Everything else is for machines to stumble over, or for people to be fooled by.
bool isVersion(std::string_view text) {
  if (text.empty() || text.size() > maxVersionBytes || text.front() == '.') return false;
  return std::ranges::all_of(text, [](char letter) { return (letter >= '0' && letter <= '9') || letter == '.'; });
}

}  // namespace

std::optional<std::string> versionInFeed(std::string_view text, std::string& problem) {
  const auto feed = nlohmann::json::parse(text, nullptr, false);
  if (feed.is_discarded() || !feed.is_object()) {
    problem = "no JSON object";
    return std::nullopt;
  }
  const auto version = feed.find("version");
  if (version == feed.end() || !version->is_string()) {
    problem = "it names no version";
    return std::nullopt;
  }
  const auto& told = version->get_ref<const std::string&>();
  if (!isVersion(told)) {
    problem = "its version is none";
    return std::nullopt;
  }
  return told;
}

ReleaseUpdater::ReleaseUpdater(ReleaseFeed& feed, UserDefaults& defaults, Workspace& workspace, const Runtime& runtime)
    : feed_(feed),
      defaults_(defaults),
      workspace_(workspace),
      runtime_(runtime),
      log_(runtime.log, "Updater"),
      self_(std::make_shared<ReleaseUpdater*>(this)) {
  if (auto known = defaults_.string(versionKey); known && isVersion(*known)) latestVersion_.set(std::move(known));
}

ReleaseUpdater::~ReleaseUpdater() {
  runtime_.main.cancelTimer(timer_);
  *self_ = nullptr;
}

void ReleaseUpdater::start() {
  QUILLMERE_CHECK_ON(runtime_.main, "the updater is started off the main thread");
  schedule(std::max(secondsUntilDue(), secondsAfterStart));
}

void ReleaseUpdater::checkForUpdates() {
  QUILLMERE_CHECK_ON(runtime_.main, "an update is looked for off the main thread");
  workspace_.openURL(downloadAddress());
  if (secondsUntilDue() <= 0.0) ask();
}

double ReleaseUpdater::secondsUntilDue() const {
  const auto checked = defaults_.real(checkedKey);
  if (!checked) return 0.0;
  const double passed = Date{*checked}.secondsUntil(runtime_.clocks.now());
  // A question from the future was asked by a wrong clock, or by none: it would hold for years.
  return passed >= 0.0 ? std::max(secondsBetweenChecks - passed, 0.0) : 0.0;
}

void ReleaseUpdater::schedule(double seconds) {
  runtime_.main.cancelTimer(timer_);
  const auto delay = std::chrono::duration_cast<Duration>(std::chrono::duration<double>(seconds));
  timer_ = runtime_.main.postAfter(delay, [this] {
    if (const double left = secondsUntilDue(); left > 0.0) {
      schedule(left);
    } else {
      ask();
    }
  });
}

void ReleaseUpdater::ask() {
  // Before the answer: a feed that is away, or that ends this program, is not asked again and again.
  defaults_.set(checkedKey, runtime_.clocks.now().secondsSinceReference);
  schedule(secondsBetweenChecks);
  feed_.fetch([self = self_](const ReleaseFeed::Answer& answer) {
    if (*self != nullptr) (*self)->take(answer);
  });
}

void ReleaseUpdater::take(const ReleaseFeed::Answer& answer) {
  if (!answer.text) {
    log_.standard("the release feed can't be had: " + answer.problem);
    return;
  }
  std::string problem;
  const auto version = versionInFeed(*answer.text, problem);
  if (!version) {
    log_.standard("the release feed is ignored: " + problem);
    return;
  }
  defaults_.set(versionKey, *version);
  latestVersion_.set(version);
}

}  // namespace quillmere
