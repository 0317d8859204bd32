// The table that gives well-known Linux applications the identifiers which the mixer's own tables use.
// The data is resources/identities.json, compiled in. Immutable once made: [any].
#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace quillmere::applications {

class Identities {
 public:
  /// The table that is compiled in. [any]
  [[nodiscard]] static const Identities& builtIn();
  /// Reads a table; absent if it is not as it should be, with `problem` telling what is wrong.
  [[nodiscard]] static std::optional<Identities> parse(std::string_view json, std::string& problem);

  /// For a desktop-entry, portal or application id; ignores case. Absent where the table says nothing.
  [[nodiscard]] std::optional<std::string> forDesktopID(std::string_view id) const;
  /// For a program's file name; exact.
  [[nodiscard]] std::optional<std::string> forBinary(std::string_view fileName) const;
  /// Every desktop id that stands for this identifier, in the table's order.
  [[nodiscard]] std::vector<std::string> desktopIDsOf(std::string_view bundleID) const;

 private:
  using Table = std::map<std::string, std::string, std::less<>>;
  Table byDesktopID_;
  Table byPrefix_;
  Table byBinary_;
  std::map<std::string, std::vector<std::string>, std::less<>> desktopIDs_;
};

}  // namespace quillmere::applications
