// Which application a process or an audio client belongs to, and which applications run.
// The rules are told in docs/applications.md.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/Workspace.h"
#include "platform/linux/ClientFacts.h"
#include "runtime/ChangeSignal.h"
#include "runtime/Runtime.h"

namespace quillmere {

struct ApplicationRegistryOptions {
  std::string procRoot = "/proc";
  /// Folders that hold an "applications" folder, the most important first; empty means the user's XDG folders.
  std::vector<std::string> dataFolders;
  /// Where programs without a folder are looked for; empty means the PATH variable.
  std::string searchPath;
  /// What the session's desktop is called; absent means what the session says.
  std::optional<std::vector<std::string>> desktops;
  /// Whose processes count; absent means the user that runs this.
  std::optional<std::uint32_t> userID;
};

/// An application with at least one process, or an installed one.
struct KnownApplication {
  std::string identifier;
  /// In the user's language.
  std::string name;
  std::optional<IconReference> icon;
  /// The process that stands for all of the application's; 0 if none runs.
  std::int32_t pid = 0;
  /// Whether people should see it among applications.
  bool isVisible = true;
  /// The file of its desktop entry.
  std::string path = {};

  friend bool operator==(const KnownApplication&, const KnownApplication&) = default;
};

/// [any]. A look at the machine costs at most one directory read, once a second, and only while somebody asks; it never
/// happens on [main], where the last picture is given and a new one asked for in the background.
class ApplicationRegistry {
 public:
  /// Problems with desktop entries go to the runtime's log, each file once. [any]
  explicit ApplicationRegistry(const Runtime& runtime, ApplicationRegistryOptions options = {});
  ~ApplicationRegistry();
  ApplicationRegistry(const ApplicationRegistry&) = delete;
  ApplicationRegistry& operator=(const ApplicationRegistry&) = delete;

  /// The identifier of an audio client's application: portal id, desktop entry, application id, binary; empty if
  /// nothing is known. Reads a few small files for a process it has not seen. [any but main]
  [[nodiscard]] std::string identify(const ClientFacts& facts);

  /// The applications that processes of this user map to, in the order in which they were first seen.
  [[nodiscard]] std::vector<KnownApplication> runningApplications();

  /// Counts the changes of what runs and of what is installed: while it stands, the answers here are the same.
  [[nodiscard]] std::uint64_t pictureNumber();

  /// Raised when pictureNumber() has grown, and stale when a question would make another look.
  [[nodiscard]] const ChangeSignal& changes() const;

  /// A running or installed application by its identifier.
  [[nodiscard]] std::optional<KnownApplication> application(const std::string& identifier);

  /// The installed applications that this desktop lists, in the order of their folders; an identifier may come more
  /// than once. Reads every entry anew. [any but main]
  [[nodiscard]] std::vector<KnownApplication> listedApplications();

  /// The application of a desktop entry, wherever the file is; absent if it is none's. [any but main]
  [[nodiscard]] std::optional<KnownApplication> applicationAt(const std::string& path);

  /// Called from the main loop when pictureNumber() has grown. One observer; an empty function ends it. [main]
  void onChanged(std::function<void()> callback);

  /// The process that stands for the application of `pid`; where that has none, the one of the application whose
  /// desktop entry is `desktopEntry`; else `pid` itself. [any but main]
  [[nodiscard]] std::int32_t representativePID(std::int32_t pid, const std::string& desktopEntry = {});

 private:
  class Core;
  std::shared_ptr<Core> core_;
};

}  // namespace quillmere
