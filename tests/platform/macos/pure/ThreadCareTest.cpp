// How urgent a thread is, by its name, and what is left of the name.
#include "platform/macos/pure/ThreadCare.h"

#include <gtest/gtest.h>

#include "platform/EngineQueue.h"

namespace quillmere::macos {
namespace {

TEST(ThreadCare, TheEnginesThreadWorksForSomebodyWhoListens) {
  EXPECT_EQ(urgencyOf("app.quillmere.engine"), Urgency::interactive);
  EXPECT_EQ(urgencyOf(engineQueueLabel), Urgency::interactive);
}

TEST(ThreadCare, OthersAreAsUsual) {
  for (const auto* name : {"quillmere-pool", "app.quillmere.engine2", "app.quillmere", ""}) {
    EXPECT_EQ(urgencyOf(name), Urgency::usual) << name;
  }
}

TEST(ThreadCare, ANameIsKeptWhereItIsNotTooLong) {
  EXPECT_EQ(keptName("app.quillmere.engine"), "app.quillmere.engine");
  EXPECT_EQ(keptName(std::string(63, 'x')), std::string(63, 'x'));
  EXPECT_EQ(keptName(std::string(64, 'x')), std::string(63, 'x'));
  EXPECT_EQ(keptName(""), "");
}

}  // namespace
}  // namespace quillmere::macos
