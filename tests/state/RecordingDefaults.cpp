// What the recording database keeps and counts. Compiled once for all tests that stand on one: each would take as long
// over it again.
#include "RecordingDefaults.h"

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <utility>

namespace quillmere {

RecordingDefaults::RecordingDefaults() = default;
RecordingDefaults::RecordingDefaults(Values values) : values_(std::move(values)) {}
RecordingDefaults::~RecordingDefaults() = default;

std::optional<DefaultsValue> RecordingDefaults::object(std::string_view key) const {
  const auto found = values_.find(key);
  if (found == values_.end()) return std::nullopt;
  return found->second;
}

void RecordingDefaults::set(std::string_view key, DefaultsValue value) {
  written_.emplace_back(key);
  values_.insert_or_assign(std::string(key), std::move(value));
}

void RecordingDefaults::remove(std::string_view key) {
  written_.emplace_back(key);
  if (const auto found = values_.find(key); found != values_.end()) values_.erase(found);
}

bool RecordingDefaults::has(std::string_view key) const { return values_.contains(key); }

void RecordingDefaults::clearWritten() { written_.clear(); }

std::string RecordingDefaults::text(std::string_view key) const {
  const auto bytes = data(key);
  std::string result;
  if (bytes)
    std::ranges::transform(*bytes, std::back_inserter(result), [](std::byte each) { return static_cast<char>(each); });
  return result;
}

Data RecordingDefaults::bytes(std::string_view text) {
  Data result;
  std::ranges::transform(text, std::back_inserter(result), [](char each) { return static_cast<std::byte>(each); });
  return result;
}

}  // namespace quillmere
