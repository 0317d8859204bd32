// The command line.
#include "shell/LaunchOptions.h"

#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <vector>

namespace quillmere {
namespace {

class CommandLine : public ::testing::Test {
 protected:
  std::optional<LaunchOptions> parse(std::vector<std::string> arguments) {
    arguments.insert(arguments.begin(), "quillmere");
    std::vector<char*> pointers;
    for (auto& argument : arguments) pointers.push_back(argument.data());
    pointers.push_back(nullptr);
    out.str({});
    problems.str({});
    return parseArguments(static_cast<int>(arguments.size()), pointers.data(), out, problems, exitCode);
  }

  std::ostringstream out;
  std::ostringstream problems;
  int exitCode = -1;
};

TEST_F(CommandLine, WithoutOptionsAWindowOpens) {
  const auto options = parse({});
  ASSERT_TRUE(options);
  EXPECT_FALSE(options->inBackground);
}

TEST_F(CommandLine, StartsInTheBackground) {
  const auto options = parse({"--background"});
  ASSERT_TRUE(options);
  EXPECT_TRUE(options->inBackground);
}

TEST_F(CommandLine, TheSessionBusStartsItInItsOwnWay) {
  const auto options = parse({"--activated"});
  ASSERT_TRUE(options);
  EXPECT_TRUE(options->isActivated);
  EXPECT_FALSE(options->inBackground);
  EXPECT_FALSE(parse({})->isActivated);
}

TEST_F(CommandLine, ASectionIsNamed) {
  for (const auto& arguments :
       {std::vector<std::string>{"--section=Settings"}, std::vector<std::string>{"--section", "Settings"}}) {
    const auto options = parse(arguments);
    ASSERT_TRUE(options);
    EXPECT_EQ(options->section, "Settings");
  }
  EXPECT_FALSE(parse({})->section);
}

TEST_F(CommandLine, HelpAndVersionAreToldAndNothingStarts) {
  for (const auto* option : {"-h", "--help"}) {
    EXPECT_FALSE(parse({option}));
    EXPECT_EQ(exitCode, 0);
    EXPECT_NE(out.str().find("--background"), std::string::npos);
  }
  for (const auto* option : {"-v", "--version"}) {
    EXPECT_FALSE(parse({option}));
    EXPECT_EQ(exitCode, 0);
    EXPECT_EQ(out.str().rfind("quillmere ", 0), 0U);
  }
}

TEST_F(CommandLine, WhatIsUnknownIsNamedAndNothingStarts) {
  for (const auto* argument : {"--loud", "-x", "song.ogg", "--background=yes"}) {
    EXPECT_FALSE(parse({argument}));
    EXPECT_EQ(exitCode, 1);
    EXPECT_NE(problems.str().find(argument), std::string::npos) << problems.str();
  }
}

}  // namespace
}  // namespace quillmere
