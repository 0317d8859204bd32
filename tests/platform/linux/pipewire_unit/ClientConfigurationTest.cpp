// Which configuration a client asks for, by the version of the library that it runs with.
#include "platform/linux/pipewire/ClientConfiguration.h"

#include <gtest/gtest.h>

namespace quillmere::pipewire {
namespace {

TEST(ClientConfiguration, OldLibrariesHaveOneOfItsOwnForRealTimePriority) {
  EXPECT_STREQ(realTimeConfiguration("0.3.65"), "client-rt.conf");
  EXPECT_STREQ(realTimeConfiguration("1.0.5"), "client-rt.conf");
  EXPECT_STREQ(realTimeConfiguration("1.2.7"), "client-rt.conf");
}

TEST(ClientConfiguration, NewLibrariesHaveOneForAll) {
  EXPECT_STREQ(realTimeConfiguration("1.4.0"), "client.conf");
  EXPECT_STREQ(realTimeConfiguration("1.4.2"), "client.conf");
  EXPECT_STREQ(realTimeConfiguration("1.10.0"), "client.conf");
  EXPECT_STREQ(realTimeConfiguration("2.0.0"), "client.conf");
}

TEST(ClientConfiguration, AVersionThatCannotBeReadCountsAsNew) {
  EXPECT_STREQ(realTimeConfiguration(""), "client.conf");
  EXPECT_STREQ(realTimeConfiguration("1"), "client.conf");
  EXPECT_STREQ(realTimeConfiguration("unknown"), "client.conf");
}

}  // namespace
}  // namespace quillmere::pipewire
