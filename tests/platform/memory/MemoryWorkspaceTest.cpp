// The workspace in memory: the port's contract.
#include "platform/memory/MemoryWorkspace.h"

#include "tests/platform/contract/WorkspaceContract.h"

namespace quillmere {
namespace {

class MemoryWorkspaceHost {
 public:
  Workspace& workspace() { return workspace_; }
  void launch(const std::string& id, const std::string& name, const std::string& iconName, std::int32_t pid) {
    workspace_.uninstall(id);
    workspace_.install(id, name, "/apps/" + id + ".app");
    workspace_.launch(id, name, pid);
    workspace_.setIcon(id, ThemedIcon{iconName});
    workspace_.tellApplicationsChanged();
  }
  void terminate(const std::string& id) {
    workspace_.terminate(id);
    workspace_.tellApplicationsChanged();
  }
  /// Finds nothing: all changes are told as they are made.
  static void look() {}

 private:
  MemoryWorkspace workspace_;
};

INSTANTIATE_TYPED_TEST_SUITE_P(Memory, WorkspaceContract, MemoryWorkspaceHost);

TEST(MemoryWorkspace, RecordsEveryAddress) {
  MemoryWorkspace workspace;
  EXPECT_TRUE(workspace.openURL("https://example.org"));
  workspace.setOpensURLs(false);
  EXPECT_FALSE(workspace.openURL("https://example.com"));
  EXPECT_EQ(workspace.openedURLs(), (std::vector<std::string>{"https://example.org", "https://example.com"}));
}

}  // namespace
}  // namespace quillmere
