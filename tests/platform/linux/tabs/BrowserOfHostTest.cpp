// The browser behind a host program, from a stand-in for /proc.
#include "platform/linux/tabs/BrowserOfHost.h"

#include <gtest/gtest.h>

#include <string>

#include "../support/TemporaryFolder.h"

namespace quillmere::tabs {
namespace {

TEST(BrowserOfAHost, IsItsParentWhateverTheHostIsCalled) {
  const support::TemporaryFolder proc;
  proc.write("7/stat", "7 (quillmere-tabs) S 42 7 7 0 -1");
  proc.write("8/stat", "8 (a) b) (c) S 1) R 43 8 8 0 -1");
  proc.write("9/stat", "9 (half");
  EXPECT_EQ(parentOf(proc.path(), 7), 42);
  EXPECT_EQ(parentOf(proc.path(), 8), 43);
  EXPECT_EQ(parentOf(proc.path(), 9), 0);
  EXPECT_EQ(parentOf(proc.path(), 10), 0);
}

TEST(BrowserOfAHost, IsNobodyWhereTheKernelsTextIsNoneOrNamesNoProcess) {
  for (const auto* text : {"", "7", ")", "7 (a) S", "7 (a) S x", "7 (a) S 99999999999999999999", "7 (a) S -1"}) {
    EXPECT_EQ(parentInStat(text), 0) << text;
  }
}

TEST(BrowserOfAHost, IsKnownByItsFileThoughAnUpdateHasRemovedThat) {
  const support::TemporaryFolder proc;
  proc.link("42/exe", "/usr/lib/chromium/chromium");
  proc.link("43/exe", "/opt/google/chrome/chrome (deleted)");
  EXPECT_EQ(programOf(proc.path(), 42), "chromium");
  EXPECT_EQ(programOf(proc.path(), 43), "chrome");
  EXPECT_EQ(programOf(proc.path(), 44), "");
}

}  // namespace
}  // namespace quillmere::tabs
