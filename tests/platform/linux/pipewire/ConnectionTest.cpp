// Ends of the connection that are no end of the daemon.
#include <gtest/gtest.h>

#include <array>
#include <cerrno>
#include <cstddef>
#include <string>

#include "support/Machine.h"
#include "support/Relay.h"
#include "support/Session.h"
#include "support/SessionTest.h"

namespace quillmere::test {
namespace {

constexpr const char* relayName = "test-relay";
/// The first, the one that looks, the one that has the nodes, the last.
constexpr int clients = 4;

class ConnectionEnds : public SessionTest {
 protected:
  static PipeWireOptions throughTheRelay() {
    PipeWireOptions options;
    options.remote = relayName;
    return options;
  }
};

/// Of each client that the program is.
class ConnectionOf : public ConnectionEnds, public ::testing::WithParamInterface<std::size_t> {};

TEST_P(ConnectionOf, AnyClientThatBreaksOnSomethingUnreadableIsMadeAgain) {
  Relay relay(relayName);
  const Machine machine(throughTheRelay());
  ASSERT_TRUE(eventually([&] { return machine.defaultOutput() == session::sinkA; })) << machine.log.all();
  ASSERT_EQ(relay.accepted(), clients);
  relay.say(garbage(), GetParam());
  EXPECT_TRUE(eventually([&] { return relay.accepted() == 2 * clients; })) << machine.log.all();
  session::addSink("test_extra");
  EXPECT_TRUE(eventually([&] { return machine.device("test_extra") != 0; })) << "deaf";
  EXPECT_EQ(machine.defaultOutput(), session::sinkA);
  EXPECT_EQ(relay.standing(), clients) << "the broken ones are closed";
  EXPECT_TRUE(machine.log.contains("reports -71 for 0")) << machine.log.all();
}

TEST_F(ConnectionEnds, ASocketOnWhichNobodyMakesSenseIsTriedUntilADaemonAnswers) {
  Relay relay(relayName);
  relay.answerEverybodyWith(garbage());
  const Machine machine(throughTheRelay());
  ASSERT_TRUE(eventually([&] { return relay.accepted() > 2 * clients; }, std::chrono::seconds(10)));
  EXPECT_TRUE(machine.list(audio::devices).empty());
  // Before the daemon answers one of the two clients: what is gone after that has been there.
  const auto log = machine.log.all();
  EXPECT_EQ(log.find("is gone"), log.rfind("is gone")) << "said once\n" << log;
  relay.answerEverybodyWith({});
  EXPECT_TRUE(eventually([&] { return machine.defaultOutput() == session::sinkA; }, std::chrono::seconds(10)));
}

TEST_P(ConnectionOf, AnyClientThatIsToldAnErrorIsKeptWhereTheDaemonGoesOn) {
  Relay relay(relayName);
  Machine machine(throughTheRelay());
  ASSERT_TRUE(eventually([&] { return machine.defaultOutput() == session::sinkA; }));
  relay.say(reportOfError(-EACCES), GetParam());
  ASSERT_TRUE(eventually([&] { return machine.log.contains("reports -13 for 0: not for you"); })) << machine.log.all();
  // That it stays has no event: a second is twice as long as an answer is waited for.
  EXPECT_FALSE(eventually([&] { return relay.accepted() > clients; }, std::chrono::seconds(1))) << machine.log.all();
  session::addSink("test_extra");
  EXPECT_TRUE(eventually([&] { return machine.device("test_extra") != 0; }));
}

std::string nameOf(const ::testing::TestParamInfo<std::size_t>& place) {
  constexpr std::array names{"ThatIsFirst", "ThatLooks", "ThatHasTheNodes", "ThatIsLast"};
  return names.at(place.param);
}

INSTANTIATE_TEST_SUITE_P(Clients, ConnectionOf, ::testing::Range(std::size_t{0}, std::size_t{clients}), nameOf);

}  // namespace
}  // namespace quillmere::test
