// What tests of tabs stand on: texts by browser, failures of single calls, the record of what was run.
#include "platform/memory/MemoryTabScripting.h"

#include <gtest/gtest.h>

namespace quillmere {
namespace {

constexpr const char* chrome = "com.google.Chrome";
constexpr const char* safari = "com.apple.Safari";

class MemoryTabs : public ::testing::Test {
 protected:
  static TabRequest query(const std::string& bundleID) { return {TabRequest::Kind::query, bundleID, 1, 1}; }
  static TabRequest activation(const std::string& bundleID) { return {TabRequest::Kind::activate, bundleID, 2, 7}; }

  TabScriptResult run(const TabRequest& request) {
    const auto script = scripting.compile(request, "source");
    return script ? script->execute() : TabScriptResult{};
  }

  MemoryTabScripting scripting;
};

TEST_F(MemoryTabs, ABrowserThatNobodyHasWrittenDownHasAnEmptyText) {
  const auto result = run(query(chrome));
  EXPECT_EQ(result.text, "");
  EXPECT_FALSE(result.error);
}

TEST_F(MemoryTabs, EachBrowserHasATextOfItsOwn) {
  scripting.setText(chrome, "one");
  scripting.setText(safari, std::nullopt);
  EXPECT_EQ(run(query(chrome)).text, "one");
  EXPECT_EQ(run(query(safari)).text, std::nullopt);
}

TEST_F(MemoryTabs, AnActivationIsRecordedAndHasNoText) {
  scripting.setText(chrome, "one");
  EXPECT_EQ(run(activation(chrome)).text, std::nullopt);
  ASSERT_EQ(scripting.activations().size(), 1U);
  EXPECT_EQ(scripting.activations().front().request.window, 2);
  EXPECT_EQ(scripting.activations().front().request.tab, 7);
  EXPECT_EQ(scripting.activations().front().source, "source");
}

TEST_F(MemoryTabs, AQueryIsNoActivation) {
  run(query(chrome));
  EXPECT_EQ(scripting.executed().size(), 1U);
  EXPECT_TRUE(scripting.activations().empty());
}

TEST_F(MemoryTabs, OneCallAloneFailsToCompile) {
  scripting.failToCompile({TabRequest::Kind::query, chrome}, 1, 1);
  EXPECT_TRUE(scripting.compile(query(chrome), ""));
  EXPECT_TRUE(scripting.compile(query(safari), ""));
  EXPECT_TRUE(scripting.compile(activation(chrome), ""));
  EXPECT_FALSE(scripting.compile(query(chrome), ""));
  EXPECT_TRUE(scripting.compile(query(chrome), ""));
  EXPECT_EQ(scripting.compiled().size(), 5U);
}

TEST_F(MemoryTabs, OneRunAloneEndsWithAnError) {
  scripting.setText(chrome, "one");
  scripting.failToExecute({std::nullopt, chrome}, {"No.", "", -1743});
  EXPECT_FALSE(run(query(safari)).error);
  const auto failed = run(query(chrome));
  ASSERT_TRUE(failed.error);
  EXPECT_EQ(failed.error->number, -1743);
  EXPECT_FALSE(failed.text);
  EXPECT_FALSE(run(query(chrome)).error);
}

TEST_F(MemoryTabs, AScriptMayBeRunWhenItsMachineHasGone) {
  auto machine = std::make_unique<MemoryTabScripting>();
  machine->setText(chrome, "one");
  const auto script = machine->compile(query(chrome), "");
  machine.reset();
  EXPECT_EQ(script->execute().text, "one");
}

}  // namespace
}  // namespace quillmere
