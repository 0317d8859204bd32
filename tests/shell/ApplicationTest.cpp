// What a start does before there is a program.
#include "shell/Application.h"

#include <gtest/gtest.h>

#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "platform/Channel.h"
#include "platform/Machine.h"
#include "platform/SessionWatch.h"
#include "platform/SingleInstance.h"
#include "platform/StatusItem.h"
#include "platform/memory/RecordingLogSink.h"

namespace quillmere {
namespace {

using Requests = std::vector<std::optional<ActivationRequest>>;

/// Another instance has the place, and is asked.
class Taken final : public SingleInstance {
 public:
  explicit Taken(Requests& requests) : requests_(requests) {}
  void onActivationRequested(std::function<void(const ActivationRequest&)> /*callback*/) override {}
  bool acquire(const std::optional<ActivationRequest>& request) override {
    requests_.push_back(request);
    return false;
  }

 private:
  Requests& requests_;
};

class SecondStart : public ::testing::Test {
 protected:
  int start(std::vector<std::string> arguments) {
    Host host;
    host.makeLogSink = [] { return std::make_unique<RecordingLogSink>(); };
    host.makeSingleInstance = [this](const Runtime&) { return std::make_unique<Taken>(requests); };
    host.takeActivationToken = [this] { return std::exchange(token, {}); };
    host.makeMachine = [this](const Runtime&) {
      made.emplace_back("machine");
      return Machine{};
    };
    host.makeStatusItem = [this](const Runtime&) {
      made.emplace_back("status item");
      return nullptr;
    };
    host.makeWindowsLauncher = [this](const Runtime&) {
      made.emplace_back("launcher");
      return nullptr;
    };
    arguments.insert(arguments.begin(), "quillmere");
    std::vector<char*> pointers;
    for (auto& argument : arguments) pointers.push_back(argument.data());
    pointers.push_back(nullptr);
    return runApplication(static_cast<int>(arguments.size()), pointers.data(), host);
  }

  std::string token = "token";
  Requests requests;
  std::vector<std::string> made;
};

TEST_F(SecondStart, AsksTheFirstAndEndsBeforeAnythingTouchesTheSound) {
  EXPECT_EQ(start({}), 0);
  EXPECT_TRUE(made.empty());
  EXPECT_EQ(requests, (Requests{ActivationRequest{std::nullopt, "token"}}));
}

TEST_F(SecondStart, HandsOnTheSectionItWasAskedFor) {
  EXPECT_EQ(start({"--section=Settings"}), 0);
  EXPECT_EQ(requests, (Requests{ActivationRequest{"Settings", "token"}}));
}

TEST_F(SecondStart, InTheBackgroundWishesForNothing) {
  EXPECT_EQ(start({"--background", "--section=Settings"}), 0);
  EXPECT_EQ(requests, (Requests{std::nullopt}));
  EXPECT_TRUE(token.empty()) << "no child may take it for its own";
}

// The instance that has the lock may be off the bus, and is who the user means.
TEST_F(SecondStart, ByTheSessionBusAsksTheFirstToShowItself) {
  EXPECT_EQ(start({"--activated"}), 0);
  EXPECT_EQ(requests, (Requests{ActivationRequest{std::nullopt, "token"}}));
}

TEST_F(SecondStart, ThatOnlyAsksForHelpAsksNobody) {
  EXPECT_EQ(start({"--help"}), 0);
  EXPECT_TRUE(requests.empty());
}

}  // namespace
}  // namespace quillmere
