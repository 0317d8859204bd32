// A settings database in memory that counts what is written to it.
// Writing the value that is there already counts too.
#pragma once

#include <algorithm>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "platform/UserDefaults.h"

namespace quillmere {

class RecordingDefaults final : public UserDefaults {
 public:
  using Values = std::map<std::string, DefaultsValue, std::less<>>;

  explicit RecordingDefaults(Values values = {}) : values_(std::move(values)) {}

  [[nodiscard]] std::optional<DefaultsValue> object(std::string_view key) const override {
    const auto found = values_.find(key);
    if (found == values_.end()) return std::nullopt;
    return found->second;
  }
  void set(std::string_view key, DefaultsValue value) override {
    written_.emplace_back(key);
    values_.insert_or_assign(std::string(key), std::move(value));
  }
  void remove(std::string_view key) override {
    written_.emplace_back(key);
    if (const auto found = values_.find(key); found != values_.end()) values_.erase(found);
  }

  [[nodiscard]] const Values& values() const { return values_; }
  [[nodiscard]] bool has(std::string_view key) const { return values_.contains(key); }
  /// The keys set or removed since the last clear, in order.
  [[nodiscard]] const std::vector<std::string>& written() const { return written_; }
  void clearWritten() { written_.clear(); }
  /// The bytes under a key as text; empty where there are none.
  [[nodiscard]] std::string text(std::string_view key) const {
    const auto bytes = data(key);
    std::string result;
    if (bytes)
      std::ranges::transform(*bytes, std::back_inserter(result),
                             [](std::byte each) { return static_cast<char>(each); });
    return result;
  }
  static Data bytes(std::string_view text) {
    Data result;
    std::ranges::transform(text, std::back_inserter(result), [](char each) { return static_cast<std::byte>(each); });
    return result;
  }

 private:
  Values values_;
  std::vector<std::string> written_;
};

}  // namespace quillmere
