// The applications that run and those that are installed, their names and icons.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <variant>
#include <vector>

namespace quillmere {

struct RunningApplication {
  std::optional<std::string> bundleID;
  std::optional<std::string> localizedName;
  std::int32_t pid = 0;

  friend bool operator==(const RunningApplication&, const RunningApplication&) = default;
};

/// Where an icon is to be had: a name in the desktop's icon theme, a file, or an encoded image.
struct ThemedIcon {
  std::string name;
  friend bool operator==(const ThemedIcon&, const ThemedIcon&) = default;
};
struct FileIcon {
  std::string path;
  friend bool operator==(const FileIcon&, const FileIcon&) = default;
};
struct EncodedIcon {
  std::vector<std::byte> png;
  friend bool operator==(const EncodedIcon&, const EncodedIcon&) = default;
};
using IconReference = std::variant<ThemedIcon, FileIcon, EncodedIcon>;

/// [any] unless stated.
class Workspace {
 public:
  virtual ~Workspace() = default;
  /// In a stable order; one application may stand for several processes.
  [[nodiscard]] virtual std::vector<RunningApplication> runningApplications() = 0;
  /// The icon of a running or installed application.
  [[nodiscard]] virtual std::optional<IconReference> icon(const std::string& bundleID) = 0;
  /// Opens an address in the program that handles it; false if it could not be handed over.
  virtual bool openURL(const std::string& url) = 0;
};

}  // namespace quillmere
