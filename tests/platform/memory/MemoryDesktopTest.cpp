// The desktop in memory: the contracts of its ports, and of the feed.
#include "platform/memory/MemoryDesktop.h"

#include <gtest/gtest.h>

#include <functional>
#include <optional>
#include <string>

#include "platform/memory/MemoryReleaseFeed.h"
#include "tests/platform/contract/ApplicationChooserContract.h"
#include "tests/platform/contract/LoginItemContract.h"
#include "tests/platform/contract/PermissionsContract.h"
#include "tests/platform/contract/ReleaseFeedContract.h"

namespace quillmere {
namespace {

class MemoryDesktopHost {
 public:
  LoginItem& item() { return desktop_.loginItem; }
  Permissions& permissions() { return desktop_.permissions; }
  ApplicationChooser& chooser() { return desktop_.chooser; }

  void grant() {
    desktop_.permissions.setTrusted(true);
    desktop_.permissions.setFocus(FocusAuthorization::authorized);
  }
  void answer(std::optional<std::string> path) { desktop_.chooser.answer(std::move(path)); }
  [[nodiscard]] int dialogues() const { return desktop_.chooser.dialogues(); }
  static bool becomes(const std::function<bool()>& condition) { return condition(); }

 private:
  MemoryDesktop desktop_;
};

class MemoryReleaseFeedHost {
 public:
  ReleaseFeed& feed() { return feed_; }
  void publish(std::string text) { text_ = std::move(text); }
  void takeDown() { text_ = std::nullopt; }
  bool becomes(const std::function<bool()>& condition) {
    if (text_) {
      feed_.answer(*text_);
    } else {
      feed_.fail("gone");
    }
    return condition();
  }

 private:
  MemoryReleaseFeed feed_;
  std::optional<std::string> text_;
};

INSTANTIATE_TYPED_TEST_SUITE_P(Memory, LoginItemContract, MemoryDesktopHost);
INSTANTIATE_TYPED_TEST_SUITE_P(Memory, PermissionsContract, MemoryDesktopHost);
INSTANTIATE_TYPED_TEST_SUITE_P(Memory, ApplicationChooserContract, MemoryDesktopHost);
INSTANTIATE_TYPED_TEST_SUITE_P(Memory, ReleaseFeedContract, MemoryReleaseFeedHost);

}  // namespace
}  // namespace quillmere
