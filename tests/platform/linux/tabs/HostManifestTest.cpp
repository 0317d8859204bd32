// Manifests of our own, and those that somebody else has written.
#include "platform/linux/tabs/HostManifest.h"

#include <gtest/gtest.h>

#include <string>

namespace quillmere::tabs {
namespace {

constexpr const char* origin = "chrome-extension://ofdbjeondmijpognfmoldoglkjejkcal/";

std::string manifest(const std::string& path, const std::string& allowed = origin) {
  return R"({"path":")" + path + R"(","allowed_origins":[")" + allowed + R"("]})";
}

TEST(ManifestOfAHost, SaysWhichProgramItStarts) {
  EXPECT_EQ(programInManifest(manifestText("/usr/lib/quillmere/quillmere-tabs")), "/usr/lib/quillmere/quillmere-tabs");
}

TEST(ManifestOfAHost, ThatLetsAnotherExtensionInIsNoneOfOurs) {
  EXPECT_FALSE(programInManifest(manifest("/bin/sh", "chrome-extension://abc/")).has_value());
}

TEST(ManifestOfAHost, WithAPathThatIsNoneStartsNothing) {
  EXPECT_TRUE(programInManifest(manifest("/bin/sh")).has_value());
  EXPECT_FALSE(programInManifest(manifest("sh")).has_value());
  EXPECT_FALSE(programInManifest(manifest("")).has_value());
  EXPECT_FALSE(programInManifest(manifest("/bin/sh\\u0000x")).has_value()) << "what stands before it is another file";
}

TEST(ManifestOfAHost, ThatIsDamagedStartsNothing) {
  for (const auto* text : {"", "[]", "{", R"({"path":7,"allowed_origins":[]})", R"({"path":"/bin/sh"})"}) {
    EXPECT_FALSE(programInManifest(text).has_value()) << text;
  }
}

}  // namespace
}  // namespace quillmere::tabs
