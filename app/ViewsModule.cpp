// Finding and loading the windows' library.
#include "app/ViewsModule.h"

#include <dlfcn.h>
#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <memory>
#include <string>

namespace quillmere {

namespace {

/// Seen from the executable: where it stands in a build, and in an installation.
constexpr const char* places[] = {"quillmere-views.so", QUILLMERE_MODULE_FOLDER "/quillmere-views.so"};

[[noreturn]] void giveUp(const std::string& why) {
  std::fprintf(stderr, "quillmere: its windows can't be loaded: %s\n", why.c_str());
  std::exit(EXIT_FAILURE);
}

class ModuleFile {
 public:
  ModuleFile() {
    std::error_code error;
    const auto folder = std::filesystem::read_symlink("/proc/self/exe", error).parent_path();
    for (const auto* place : places) {
      descriptor_ = ::open((folder / place).c_str(), O_RDONLY | O_CLOEXEC);
      if (descriptor_ >= 0) return;
    }
    giveUp(std::string("quillmere-views.so: ") + std::strerror(errno));
  }
  ~ModuleFile() { ::close(descriptor_); }
  ModuleFile(const ModuleFile&) = delete;
  ModuleFile& operator=(const ModuleFile&) = delete;

  /// Never unloaded: what Qt has learned of its types stays as long as the process.
  [[nodiscard]] ViewsModuleEntry* load() const {
    const auto path = "/proc/self/fd/" + std::to_string(descriptor_);
    auto* module = ::dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
    if (module == nullptr) giveUp(::dlerror());
    auto* entry = ::dlsym(module, viewsModuleEntry);
    if (entry == nullptr) giveUp(::dlerror());
    return reinterpret_cast<ViewsModuleEntry*>(entry);
  }

 private:
  int descriptor_ = -1;
};

}  // namespace

MakeViews openViewsModule() {
  return [file = std::make_shared<const ModuleFile>()](const std::shared_ptr<AppState>& state, const Runtime& runtime,
                                                       Machine& machine, const ViewIntents& intents) {
    Views views;
    file->load()(views, state, runtime, machine, intents);
    return views;
  };
}

}  // namespace quillmere
