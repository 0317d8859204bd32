// One instance a user, on a bus and by a lock file.
#include "platform/linux/LinuxSingleInstance.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <vector>

#include "platform/linux/bus/Handles.h"
#include "support/PostBox.h"
#include "support/PrivateBus.h"
#include "support/RecordingLogSink.h"

namespace quillmere {
namespace {

const ActivationRequest plain;

enum class Ground { bus, lockFile };

using support::PostBox;

/// Whether anybody has that name on the bus.
bool ownerOn(const std::string& address, const char* name) {
  const auto flags = static_cast<GDBusConnectionFlags>(G_DBUS_CONNECTION_FLAGS_AUTHENTICATION_CLIENT |
                                                       G_DBUS_CONNECTION_FLAGS_MESSAGE_BUS_CONNECTION);
  const bus::Object<GDBusConnection> connection(
      g_dbus_connection_new_for_address_sync(address.c_str(), flags, nullptr, nullptr, nullptr));
  if (!connection) return false;
  const bus::Variant reply(g_dbus_connection_call_sync(
      connection.get(), "org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus", "NameHasOwner",
      g_variant_new("(s)", name), G_VARIANT_TYPE("(b)"), G_DBUS_CALL_FLAGS_NONE, -1, nullptr, nullptr));
  gboolean hasOwner = FALSE;
  if (reply) g_variant_get(reply.get(), "(b)", &hasOwner);
  g_dbus_connection_close_sync(connection.get(), nullptr, nullptr);
  return hasOwner != FALSE;
}

class SingleInstanceOn : public ::testing::TestWithParam<Ground> {
 protected:
  std::unique_ptr<LinuxSingleInstance> make() {
    LinuxSingleInstanceOptions options;
    options.busAddress = GetParam() == Ground::bus ? bus_.address() : "";
    options.runtimeFolder = GetParam() == Ground::bus ? "" : folder_.path();
    return std::make_unique<LinuxSingleInstance>(main_, log_, options);
  }
  bool becomes(const std::function<bool()>& condition) { return main_.becomes(condition); }

  support::PrivateBus bus_;
  support::TemporaryFolder folder_;
  support::RecordingLogSink log_;
  PostBox main_;
};

TEST_P(SingleInstanceOn, TheFirstOneHasThePlace) {
  const auto first = make();
  EXPECT_TRUE(first->acquire(plain));
  EXPECT_TRUE(first->acquire(plain)) << "asking again changes nothing";
  EXPECT_TRUE(log_.lines().empty());
}

TEST_P(SingleInstanceOn, TheSecondAsksTheFirstToShowItself) {
  const auto first = make();
  int requests = 0;
  first->onActivationRequested([&](const ActivationRequest&) { ++requests; });
  ASSERT_TRUE(first->acquire(plain));
  const auto second = make();
  EXPECT_FALSE(second->acquire(plain));
  EXPECT_TRUE(becomes([&] { return requests == 1; }));
  EXPECT_FALSE(make()->acquire(plain));
  EXPECT_TRUE(becomes([&] { return requests == 2; }));
}

TEST_P(SingleInstanceOn, ThePlaceIsFreeOnceTheFirstHasEnded) {
  auto first = make();
  ASSERT_TRUE(first->acquire(plain));
  first.reset();
  // The bus hears of it a moment later.
  EXPECT_TRUE(becomes([&] { return make()->acquire(plain); }));
}

TEST_P(SingleInstanceOn, ARequestAfterTheEndReachesNobody) {
  auto first = make();
  int requests = 0;
  first->onActivationRequested([&](const ActivationRequest&) { ++requests; });
  ASSERT_TRUE(first->acquire(plain));
  ASSERT_FALSE(make()->acquire(plain));
  first.reset();
  main_.run();
  EXPECT_EQ(requests, 0);
}

TEST_P(SingleInstanceOn, TheSecondHandsOnWhatItWasAskedForAndItsToken) {
  const auto first = make();
  std::vector<ActivationRequest> requests;
  first->onActivationRequested([&](const ActivationRequest& request) { requests.push_back(request); });
  ASSERT_TRUE(first->acquire(plain));
  const ActivationRequest wish{"Settings", "a token_TIME42"};
  EXPECT_FALSE(make()->acquire(wish));
  EXPECT_TRUE(becomes([&] { return requests == std::vector{wish}; }));
  const ActivationRequest tokenOnly{std::nullopt, "another"};
  EXPECT_FALSE(make()->acquire(tokenOnly));
  EXPECT_TRUE(becomes([&] { return requests == std::vector{wish, tokenOnly}; }));
}

TEST_P(SingleInstanceOn, ASecondThatWishesForNothingAsksForNothing) {
  const auto first = make();
  std::vector<ActivationRequest> requests;
  first->onActivationRequested([&](const ActivationRequest& request) { requests.push_back(request); });
  ASSERT_TRUE(first->acquire(plain));
  EXPECT_FALSE(make()->acquire(std::nullopt));
  // Whatever that one had sent would be there before this.
  EXPECT_FALSE(make()->acquire(ActivationRequest{"Mixer", {}}));
  EXPECT_TRUE(becomes([&] { return !requests.empty(); }));
  EXPECT_EQ(requests, (std::vector{ActivationRequest{"Mixer", {}}}));
}

/// What desktops call: the desktop entry says that the program can be activated on the bus.
class DesktopActivation : public ::testing::Test {
 protected:
  DesktopActivation() {
    first_.onActivationRequested([this](const ActivationRequest& request) { requests_.push_back(request); });
    EXPECT_TRUE(first_.acquire(std::nullopt));
  }

  /// Whether the call was answered. `arguments` are written as texts of variants are.
  [[nodiscard]] bool isAnswered(const char* method, const char* arguments) {
    const auto flags = static_cast<GDBusConnectionFlags>(G_DBUS_CONNECTION_FLAGS_AUTHENTICATION_CLIENT |
                                                         G_DBUS_CONNECTION_FLAGS_MESSAGE_BUS_CONNECTION);
    const bus::Object<GDBusConnection> connection(
        g_dbus_connection_new_for_address_sync(bus_.address().c_str(), flags, nullptr, nullptr, nullptr));
    if (!connection) return false;
    const bus::Variant reply(g_dbus_connection_call_sync(
        connection.get(), "app.quillmere.host", "/app/quillmere/host", "org.freedesktop.Application", method,
        g_variant_new_parsed(arguments), G_VARIANT_TYPE("()"), G_DBUS_CALL_FLAGS_NONE, -1, nullptr, nullptr));
    g_dbus_connection_close_sync(connection.get(), nullptr, nullptr);
    return reply != nullptr;
  }
  /// What is asked for from now on, once it is there.
  std::optional<ActivationRequest> next() {
    if (!main_.becomes([this] { return !requests_.empty(); })) return std::nullopt;
    const auto request = requests_.front();
    requests_.erase(requests_.begin());
    return request;
  }

 private:
  support::PrivateBus bus_;
  support::RecordingLogSink log_;
  PostBox main_;
  std::vector<ActivationRequest> requests_;
  LinuxSingleInstance first_{main_, log_, {bus_.address(), ""}};
};

TEST_F(DesktopActivation, ShowsTheProgramWithTheTokenOfTheLaunch) {
  EXPECT_TRUE(isAnswered("Activate", "({'activation-token': <'token'>},)"));
  EXPECT_EQ(next(), (ActivationRequest{std::nullopt, "token"}));
  EXPECT_TRUE(isAnswered("Activate", "({'desktop-startup-id': <'older'>},)"));
  EXPECT_EQ(next(), (ActivationRequest{std::nullopt, "older"}));
}

TEST_F(DesktopActivation, WithFilesShowsTheProgram) {
  EXPECT_TRUE(isAnswered("Open", "(['file:///tmp/a.ogg'], {'activation-token': <'token'>})"));
  EXPECT_EQ(next(), (ActivationRequest{std::nullopt, "token"}));
}

TEST_F(DesktopActivation, OfTheEntrysActionShowsTheSettings) {
  EXPECT_TRUE(isAnswered("ActivateAction", "('show-settings', @av [], {'activation-token': <'token'>})"));
  EXPECT_EQ(next(), (ActivationRequest{"Settings", "token"}));
}

TEST_F(DesktopActivation, OfAnActionThatNobodyKnowsShowsTheProgram) {
  EXPECT_TRUE(isAnswered("ActivateAction", "('dance', [<1>], @a{sv} {})"));
  EXPECT_EQ(next(), ActivationRequest{});
}

INSTANTIATE_TEST_SUITE_P(Grounds, SingleInstanceOn, ::testing::Values(Ground::bus, Ground::lockFile));

TEST(SingleInstance, ABusThatIsGoneLeavesTheLockFile) {
  support::TemporaryFolder folder;
  support::RecordingLogSink log;
  PostBox main;
  const LinuxSingleInstanceOptions options{"unix:path=/nowhere/bus", folder.path()};
  LinuxSingleInstance first(main, log, options);
  LinuxSingleInstance second(main, log, options);
  EXPECT_TRUE(first.acquire(plain));
  EXPECT_FALSE(second.acquire(plain));
  EXPECT_EQ(log.count("does not answer"), 2);
}

TEST(SingleInstance, ThePlaceIsTakenAgainAfterARestartOfTheBus) {
  support::PrivateBus bus;
  support::RecordingLogSink log;
  PostBox main;
  const LinuxSingleInstanceOptions options{bus.address(), ""};
  LinuxSingleInstance first(main, log, options);
  int requests = 0;
  first.onActivationRequested([&](const ActivationRequest&) { ++requests; });
  ASSERT_TRUE(first.acquire(plain));
  for (int restart = 1; restart <= 2; ++restart) {
    bus.stop();
    bus.start();
    // Not by another instance, which would take it for itself.
    ASSERT_TRUE(main.becomes([&] { return ownerOn(bus.address(), "app.quillmere.host"); })) << restart;
    EXPECT_FALSE(LinuxSingleInstance(main, log, options).acquire(plain));
    EXPECT_TRUE(main.becomes([&] { return requests == restart; }));
  }
}

TEST(SingleInstance, AnInstanceWhoseBusIsAwayKeepsThePlace) {
  support::PrivateBus bus;
  support::TemporaryFolder folder;
  support::RecordingLogSink log;
  PostBox main;
  const LinuxSingleInstanceOptions options{bus.address(), folder.path()};
  LinuxSingleInstance first(main, log, options);
  int requests = 0;
  first.onActivationRequested([&](const ActivationRequest&) { ++requests; });
  ASSERT_TRUE(first.acquire(plain));
  bus.stop();
  EXPECT_FALSE(LinuxSingleInstance(main, log, options).acquire(plain));
  EXPECT_TRUE(main.becomes([&] { return requests == 1; }));
}

TEST(SingleInstance, ABusThatComesBackWithoutItsNamesIsNobodysYet) {
  support::PrivateBus bus;
  support::PrivateBus other;
  support::TemporaryFolder folder;
  support::RecordingLogSink log;
  PostBox main;
  LinuxSingleInstance first(main, log, {bus.address(), folder.path()});
  int requests = 0;
  first.onActivationRequested([&](const ActivationRequest&) { ++requests; });
  ASSERT_TRUE(first.acquire(plain));
  // The name is free there, and the user has one instance all the same.
  EXPECT_FALSE(LinuxSingleInstance(main, log, {other.address(), folder.path()}).acquire(plain));
  EXPECT_TRUE(main.becomes([&] { return requests == 1; }));
  EXPECT_FALSE(ownerOn(other.address(), "app.quillmere.host"));
}

TEST(SingleInstance, WithNothingToTellInstancesApartEverybodyMayRun) {
  support::RecordingLogSink log;
  PostBox main;
  LinuxSingleInstance first(main, log, {"", ""});
  LinuxSingleInstance second(main, log, {"", "/nowhere/run"});
  EXPECT_TRUE(first.acquire(plain));
  EXPECT_TRUE(second.acquire(plain));
  EXPECT_EQ(log.count("cannot be told apart"), 2);
}

}  // namespace
}  // namespace quillmere
