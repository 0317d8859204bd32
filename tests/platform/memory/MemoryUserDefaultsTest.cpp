// The settings in memory: the port's contract, and the record that tests look at.
#include "platform/memory/MemoryUserDefaults.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/platform/contract/UserDefaultsContract.h"

namespace quillmere {
namespace {

class MemoryHost {
 public:
  UserDefaults& defaults() { return defaults_; }
  /// What is in memory stays there for as long as the test runs.
  void restart() {}

 private:
  MemoryUserDefaults defaults_;
};

INSTANTIATE_TYPED_TEST_SUITE_P(Memory, UserDefaultsContract, MemoryHost);

TEST(MemoryUserDefaults, RecordsEveryWriteInOrder) {
  MemoryUserDefaults defaults;
  defaults.set("a", 1.0);
  defaults.set("b", true);
  defaults.remove("a");
  defaults.remove("never there");
  using Write = MemoryUserDefaults::Write;
  EXPECT_THAT(defaults.writes(), testing::ElementsAre(Write{"a", 1.0}, Write{"b", true}, Write{"a", std::nullopt},
                                                      Write{"never there", std::nullopt}));
  EXPECT_EQ(defaults.writeCount("a"), 2);
  EXPECT_EQ(defaults.writeCount("c"), 0);
}

TEST(MemoryUserDefaults, ForgettingTheRecordKeepsTheValues) {
  MemoryUserDefaults defaults;
  defaults.set("a", 1.0);
  defaults.forgetWrites();
  EXPECT_THAT(defaults.writes(), testing::IsEmpty());
  EXPECT_EQ(defaults.real("a"), 1.0);
}

}  // namespace
}  // namespace quillmere
