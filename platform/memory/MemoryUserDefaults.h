// The settings database in memory, with a record of everything that was written.
#pragma once

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/UserDefaults.h"

namespace quillmere {

/// [main] throughout, as the port is.
class MemoryUserDefaults final : public UserDefaults {
 public:
  /// One set() or remove(), in the order in which they came.
  struct Write {
    std::string key;
    /// Absent for a removal.
    std::optional<DefaultsValue> value;

    friend bool operator==(const Write&, const Write&) = default;
  };

  [[nodiscard]] std::optional<DefaultsValue> object(std::string_view key) const override;
  void set(std::string_view key, DefaultsValue value) override;
  void remove(std::string_view key) override;

  /// All writes since the start or the last forgetWrites().
  [[nodiscard]] const std::vector<Write>& writes() const { return writes_; }
  /// How many of them concern this key.
  [[nodiscard]] int writeCount(std::string_view key) const;
  /// Empties the record; the stored values stay.
  void forgetWrites() { writes_.clear(); }
  /// Everything that is stored now.
  [[nodiscard]] const std::map<std::string, DefaultsValue, std::less<>>& values() const { return values_; }

 private:
  std::map<std::string, DefaultsValue, std::less<>> values_;
  std::vector<Write> writes_;
};

}  // namespace quillmere
