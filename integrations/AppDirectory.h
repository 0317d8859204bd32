// Which applications there are on this machine, which of them run, and what they are called and look like.
// It asks the desktop directly, in the process of the windows: nothing of this passes through the mixer.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "integrations/InstalledApp.h"
#include "platform/ApplicationChooser.h"
#include "platform/Workspace.h"
#include "runtime/Observable.h"
#include "runtime/Runtime.h"
#include "runtime/Task.h"

namespace quillmere {

/// [main] unless told otherwise. The directory may go before what it has started in the background.
class AppDirectory {
 public:
  /// Applications that are known to run although the desktop may not know them: what the mixer lists by its sound.
  using Sounding = std::function<std::vector<RunningApplication>()>;

  /// `workspace`, `chooser` and the runtime's services outlive the directory and the tasks that await its answers.
  AppDirectory(Workspace& workspace, ApplicationChooser& chooser, const Runtime& runtime, Sounding sounding = {});
  ~AppDirectory();
  AppDirectory(const AppDirectory&) = delete;
  AppDirectory& operator=(const AppDirectory&) = delete;

  /// Every application that people should see, each once, by name. The disk is read on [background], never here; a task
  /// that is cancelled meanwhile gets an empty list. To be awaited in a task on the main executor.
  [[nodiscard]] Async<std::vector<InstalledApp>> installedApps();
  /// What runs, in the system's order, unsorted. From the last look, so that it is there at once; a newer one is begun,
  /// and revision() tells if it finds something else.
  [[nodiscard]] std::vector<InstalledApp> runningApps();
  /// The name of the running application, else of the installed one, else one made of the identifier: "Foo Bar" for
  /// "com.acme.foo-bar". Empty only for an empty identifier.
  [[nodiscard]] std::string name(const std::string& bundleID);
  /// The icon of a running or installed application. [any]
  [[nodiscard]] std::optional<IconReference> icon(const std::string& bundleID) { return workspace_.icon(bundleID); }
  /// Opens the system's dialogue for an application; absent where it was cancelled, or what was chosen is none. To be
  /// awaited in a task on the main executor.
  [[nodiscard]] Async<std::optional<InstalledApp>> browse(ApplicationQuestion question);

  /// Grows when running or installed applications have changed: whoever shows names, icons or lists asks again then.
  [[nodiscard]] const Observable<std::uint64_t>& revision() const { return revision_; }

 private:
  [[nodiscard]] std::vector<RunningApplication> running();

  Workspace& workspace_;
  ApplicationChooser& chooser_;
  Runtime runtime_;
  Sounding sounding_;
  Observable<std::uint64_t> revision_;
};

/// A name for an application of which nothing but the identifier is known: its last piece, "-" as a space, each word
/// capitalised. One without pieces stands as it is. [any]
[[nodiscard]] std::string nameFromIdentifier(const std::string& bundleID);

}  // namespace quillmere
