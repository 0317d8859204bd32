// Permissions that a test gives and takes by hand. What is asked of the user is recorded.
#pragma once

#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "platform/Permissions.h"

namespace quillmere {

/// [main]
class MemoryPermissions final : public Permissions {
 public:
  [[nodiscard]] bool isProcessTrusted() override {
    ++reads_;
    return isTrusted_;
  }
  void promptForTrust() override { ++prompts_; }
  [[nodiscard]] int focusAuthorization() override { return focus_; }
  void requestFocusAuthorization(std::function<void()> answered) override { waiting_.push_back(std::move(answered)); }
  bool openSettings(const std::string& anchor) override {
    if (hasSettings_) opened_.push_back(anchor);
    return hasSettings_;
  }
  void onChanged(std::function<void()> callback) override { changed_ = std::move(callback); }

  /// Whether there are settings to open, which is so at first.
  void setHasSettings(bool hasSettings) { hasSettings_ = hasSettings; }
  void setTrusted(bool isTrusted) { isTrusted_ = isTrusted; }
  void setFocus(FocusAuthorization focus) { focus_ = static_cast<int>(focus); }
  /// A number that may have no name.
  void setFocusNumber(int number) { focus_ = number; }
  /// What the system does once it has an answer that nobody has asked for.
  void tellChanged() const {
    if (changed_) changed_();
  }
  /// The user answers every open question in this way.
  void answerFocus(FocusAuthorization focus) {
    setFocus(focus);
    for (const auto& answered : std::exchange(waiting_, {})) answered();
  }

  /// Questions for focus authorisation that the user has not answered.
  [[nodiscard]] std::size_t openQuestions() const { return waiting_.size(); }
  [[nodiscard]] int prompts() const { return prompts_; }
  /// The anchors whose settings were opened, in order.
  [[nodiscard]] const std::vector<std::string>& opened() const { return opened_; }
  /// How often the trust was read.
  [[nodiscard]] int reads() const { return reads_; }

 private:
  bool isTrusted_ = false;
  bool hasSettings_ = true;
  int focus_ = 0;
  int prompts_ = 0;
  int reads_ = 0;
  std::vector<std::string> opened_;
  std::vector<std::function<void()>> waiting_;
  std::function<void()> changed_;
};

}  // namespace quillmere
