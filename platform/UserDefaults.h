// A per-user key-value store with typed values. A type is never converted: a stored text is not a number.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace quillmere {

using Data = std::vector<std::byte>;
using DefaultsValue = std::variant<bool, double, std::string, Data>;

/// [main] throughout. Writes return at once; a value written is what the next read gives, and survives the process.
class UserDefaults {
 public:
  virtual ~UserDefaults() = default;
  /// The stored value, absent where the key is not there.
  [[nodiscard]] virtual std::optional<DefaultsValue> object(std::string_view key) const = 0;
  virtual void set(std::string_view key, DefaultsValue value) = 0;
  virtual void remove(std::string_view key) = 0;

  // The stored value if it has this very type.
  [[nodiscard]] std::optional<bool> boolean(std::string_view key) const { return typed<bool>(key); }
  [[nodiscard]] std::optional<double> real(std::string_view key) const { return typed<double>(key); }
  [[nodiscard]] std::optional<std::string> string(std::string_view key) const { return typed<std::string>(key); }
  [[nodiscard]] std::optional<Data> data(std::string_view key) const { return typed<Data>(key); }

 private:
  template <typename T>
  std::optional<T> typed(std::string_view key) const {
    auto value = object(key);
    if (!value || !std::holds_alternative<T>(*value)) return std::nullopt;
    return std::get<T>(std::move(*value));
  }
};

}  // namespace quillmere
