// A settings database in memory that counts what is written to it.
// Writing the value that is there already counts too.
#pragma once

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/UserDefaults.h"

namespace quillmere {

class RecordingDefaults final : public UserDefaults {
 public:
  using Values = std::map<std::string, DefaultsValue, std::less<>>;

  RecordingDefaults();
  explicit RecordingDefaults(Values values);
  ~RecordingDefaults() override;
  RecordingDefaults(const RecordingDefaults&) = delete;
  RecordingDefaults& operator=(const RecordingDefaults&) = delete;

  [[nodiscard]] std::optional<DefaultsValue> object(std::string_view key) const override;
  void set(std::string_view key, DefaultsValue value) override;
  void remove(std::string_view key) override;

  [[nodiscard]] const Values& values() const { return values_; }
  [[nodiscard]] bool has(std::string_view key) const;
  /// The keys set or removed since the last clear, in order.
  [[nodiscard]] const std::vector<std::string>& written() const { return written_; }
  void clearWritten();
  /// The bytes under a key as text; empty where there are none.
  [[nodiscard]] std::string text(std::string_view key) const;
  static Data bytes(std::string_view text);

 private:
  Values values_;
  std::vector<std::string> written_;
};

}  // namespace quillmere
