// A property list as plain data: what becomes a dictionary of the system's without further thought. [any]
#pragma once

#include <map>
#include <string>
#include <variant>
#include <vector>

namespace quillmere::macos {

struct PropertyList {
  using List = std::vector<PropertyList>;
  using Dictionary = std::map<std::string, PropertyList>;

  /// A boolean stands as a number, as the system's own do.
  std::variant<bool, std::string, List, Dictionary> value;

  PropertyList(bool truth) : value(truth) {}
  PropertyList(std::string text) : value(std::move(text)) {}
  PropertyList(const char* text) : value(std::string(text)) {}
  PropertyList(List items) : value(std::move(items)) {}
  PropertyList(Dictionary entries) : value(std::move(entries)) {}

  friend bool operator==(const PropertyList&, const PropertyList&) = default;
};

}  // namespace quillmere::macos
