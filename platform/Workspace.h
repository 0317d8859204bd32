// The applications that run and those that are installed, their names and icons.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "runtime/ChangeSignal.h"

namespace quillmere {

struct RunningApplication {
  std::optional<std::string> bundleID;
  std::optional<std::string> localizedName;
  std::int32_t pid = 0;
  /// It shows itself nowhere and can't be brought to the front, by its own word: nobody chooses it from a list.
  bool isProhibited = false;

  friend bool operator==(const RunningApplication&, const RunningApplication&) = default;
};

/// An application as its own description tells of it.
struct InstalledApplication {
  /// The same as that of the running application.
  std::string bundleID;
  /// In the user's language; absent where the description has none.
  std::optional<std::string> name;
  /// The file or folder that holds the description.
  std::string path;

  friend bool operator==(const InstalledApplication&, const InstalledApplication&) = default;
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
  /// Raised after runningApplications() has another answer than before. A host that finds out by looking, while
  /// somebody asks, says when it would look again. Of a host that doesn't know: absent.
  [[nodiscard]] virtual const ChangeSignal& changes() const { return ChangeSignal::absent(); }
  /// In a stable order; one application may stand for several processes.
  [[nodiscard]] virtual std::vector<RunningApplication> runningApplications() = 0;
  /// The icon of a running or installed application.
  [[nodiscard]] virtual std::optional<IconReference> icon(const std::string& bundleID) = 0;
  /// Every application that people should see among applications, in the order of the places they are kept in, the most
  /// important first; one identifier may come more than once. Looks anew, however long that takes. [any but main]
  [[nodiscard]] virtual std::vector<InstalledApplication> installedApplications() = 0;
  /// One of them by its identifier, or one that people should not see, from the last look: reads nothing on [main].
  [[nodiscard]] virtual std::optional<InstalledApplication> installedApplication(const std::string& bundleID) = 0;
  /// The application whose description this file or folder is; absent if it is none. [any but main]
  [[nodiscard]] virtual std::optional<InstalledApplication> applicationAt(const std::string& path) = 0;
  /// Called from the main loop after a look has found other applications than the one before it, running or installed.
  /// Looks are made while somebody asks, and one answer late on [main]. One observer; an empty function ends it. [main]
  virtual void onApplicationsChanged(std::function<void()> callback) = 0;
  /// Opens an address in the program that handles it; false if it could not be handed over.
  virtual bool openURL(const std::string& url) = 0;
};

}  // namespace quillmere
