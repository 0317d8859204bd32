// Where the sound of JACK clients is led, and when it is let go where it goes by itself.
#include "platform/linux/pipewire/JackFeeder.h"

#include <gtest/gtest.h>

#include <set>

#include "Graph.h"

namespace quillmere::pipewire::test {
namespace {

using Part = DetourLink::Part;

/// A detour whose links stand when the test says so.
struct FakeDetour final : Detour {
  explicit FakeDetour(std::set<FakeDetour*>& alive) : alive_(alive) { alive_.insert(this); }
  ~FakeDetour() override { alive_.erase(this); }
  FakeDetour(const FakeDetour&) = delete;
  FakeDetour& operator=(const FakeDetour&) = delete;

  [[nodiscard]] std::optional<GlobalID> node() const override { return id; }
  [[nodiscard]] bool hasFailed() const override { return failed; }
  void link(const std::vector<DetourLink>& wanted) override {
    links.clear();
    for (const auto& each : wanted) links.emplace(each.part, std::pair(each.output.id, each.input.id));
  }
  [[nodiscard]] bool isLinked() const override { return areStanding; }
  void setOpen(bool isNowOpen) override { isOpen = isNowOpen; }
  [[nodiscard]] bool isClosed() const override { return !isOpen && isSilent; }

  std::optional<GlobalID> id;
  std::set<std::pair<Part, std::pair<GlobalID, GlobalID>>> links;
  bool areStanding = false;
  bool isOpen = false;
  bool isSilent = false;
  bool failed = false;

 private:
  std::set<FakeDetour*>& alive_;
};

struct JackFeederTest : ::testing::Test {
  static constexpr GlobalID client = 10;
  static constexpr GlobalID jack = 20;
  static constexpr GlobalID desk = 30;
  static constexpr GlobalID phones = 31;
  static constexpr GlobalID tap = 40;
  static constexpr GlobalID otherTap = 41;
  const std::string deskSerial = "1030";
  const std::string phonesSerial = "1031";
  const std::string tapSerial = "1040";
  const std::string otherTapSerial = "1041";

  Graph graph;
  std::set<FakeDetour*> alive;
  std::vector<std::vector<std::string>> asked;
  JackFeeder feeder{graph.model,
                    [this](const std::vector<std::string>& channels) {
                      asked.push_back(channels);
                      return std::make_unique<FakeDetour>(alive);
                    },
                    Logger(graph.log, "PipeWire")};

  JackFeederTest() {
    device(desk, "desk");
    device(phones, "phones");
    graph.model.setMetadata(0, "default.audio.sink", R"({"name":"desk"})");
    graph.client(client, "studio");
    graph.jack(jack, client);
    port(jack * 10, jack, 0, false);
    port(jack * 10 + 1, jack, 1, false);
    for (const auto node : {tap, otherTap}) {
      graph.node(node, "Stream/Input/Audio/Internal", 0, {{"node.name", "app.quillmere.tap-" + std::to_string(node)}});
      port(node * 10, node, 0, true, "MONO");
      port(node * 10 + 1, node, 1, true, "FL");
      port(node * 10 + 2, node, 2, true, "FR");
    }
    plugIn(desk);
  }
  void port(GlobalID id, GlobalID node, std::uint32_t index, bool isInput, const std::string& channel = {},
            const std::string& serial = {}) {
    graph.model.updatePort(id, {{"node.id", std::to_string(node)},
                                {"port.id", std::to_string(index)},
                                {"port.direction", isInput ? "in" : "out"},
                                {"audio.channel", channel},
                                {"object.serial", serial.empty() ? "p" + std::to_string(id) : serial}});
  }
  void device(GlobalID id, const std::string& name) {
    graph.sink(id, name);
    port(id * 10 + 1, id, 1, true, "FR");
    port(id * 10, id, 0, true, "FL");
    graph.model.updatePort(id * 10 + 2, {{"node.id", std::to_string(id)},
                                         {"port.id", "0"},
                                         {"port.direction", "out"},
                                         {"port.monitor", "true"},
                                         {"object.serial", "m" + std::to_string(id)}});
  }
  /// The client links itself to a device, left and right.
  void plugIn(GlobalID id) {
    graph.link(id * 100, jack, id, jack * 10, id * 10);
    graph.link(id * 100 + 1, jack, id, jack * 10 + 1, id * 10 + 1);
  }
  void unplug(GlobalID id) {
    graph.model.remove(id * 100);
    graph.model.remove(id * 100 + 1);
  }
  /// The daemon knows the node of the newest detour, with its ports.
  FakeDetour& appear(GlobalID id = 50) {
    auto& detour = only();
    detour.id = id;
    graph.node(id, "", 0, {{"node.name", "app.quillmere.detour-" + std::to_string(id)}});
    for (std::uint32_t place = 0; place < 2; ++place) {
      port(id * 10 + place, id, place, true);
      port(id * 10 + 2 + place, id, place, false);
    }
    port(id * 10 + 4, id, 2, false, "FL");
    port(id * 10 + 5, id, 3, false, "FR");
    feeder.settle();
    return detour;
  }
  FakeDetour& only() {
    EXPECT_EQ(alive.size(), 1U);
    return **alive.begin();
  }
  /// Claimed, linked, open.
  FakeDetour& lead() {
    feeder.claim("studio", {}, {}, tapSerial);
    auto& detour = appear();
    detour.areStanding = true;
    feeder.settle();
    EXPECT_TRUE(detour.isOpen);
    return detour;
  }
};

TEST_F(JackFeederTest, AClaimedClientGetsADetourAroundItsDevice) {
  feeder.claim("studio", {}, {}, tapSerial);
  ASSERT_EQ(alive.size(), 1U);
  EXPECT_EQ(asked, (std::vector<std::vector<std::string>>{{"FL", "FR"}}));
  const auto& detour = appear();
  EXPECT_EQ(detour.links, (std::set<std::pair<Part, std::pair<GlobalID, GlobalID>>>{{Part::source, {200, 500}},
                                                                                    {Part::source, {201, 501}},
                                                                                    {Part::inverse, {502, 300}},
                                                                                    {Part::inverse, {503, 301}},
                                                                                    {Part::tap, {504, 401}},
                                                                                    {Part::tap, {505, 402}}}));
}

TEST_F(JackFeederTest, ItOpensOnceAllItsLinksStand) {
  feeder.claim("studio", {}, {}, tapSerial);
  auto& detour = appear();
  EXPECT_FALSE(detour.isOpen);
  EXPECT_FALSE(feeder.hasTappedStream("studio", {}, {}));
  detour.areStanding = true;
  feeder.settle();
  EXPECT_TRUE(detour.isOpen);
  EXPECT_TRUE(feeder.hasTappedStream("studio", {}, {}));
}

TEST_F(JackFeederTest, SomebodyElsesClientIsLeftAlone) {
  feeder.claim("another", {}, {}, tapSerial);
  EXPECT_TRUE(alive.empty());
}

TEST_F(JackFeederTest, NothingIsLinkedWhileTheTapHasNoInputs) {
  graph.model.remove(401);
  feeder.claim("studio", {}, {}, tapSerial);
  EXPECT_TRUE(appear().links.empty());
}

TEST_F(JackFeederTest, OnePortMayPlayOnBothSides) {
  unplug(desk);
  graph.link(700, jack, desk, 200, 300);
  graph.link(701, jack, desk, 200, 301);
  feeder.claim("studio", {}, {}, tapSerial);
  const auto& detour = appear();
  EXPECT_TRUE(detour.links.contains({Part::source, {200, 500}}));
  EXPECT_TRUE(detour.links.contains({Part::source, {200, 501}}));
}

TEST_F(JackFeederTest, OnlyPortsThatAreUsedAreCancelled) {
  graph.model.remove(desk * 100 + 1);
  feeder.claim("studio", {}, {}, tapSerial);
  const auto& detour = appear();
  EXPECT_TRUE(detour.links.contains({Part::inverse, {502, 300}}));
  EXPECT_FALSE(detour.links.contains({Part::inverse, {503, 301}}));
}

TEST_F(JackFeederTest, APortThatIsLinkedLaterIsLedToo) {
  graph.model.remove(desk * 100 + 1);
  auto& detour = lead();
  graph.link(desk * 100 + 1, jack, desk, 201, 301);
  detour.areStanding = false;
  feeder.settle();
  EXPECT_TRUE(detour.links.contains({Part::source, {201, 501}}));
  // What stands goes on meanwhile.
  EXPECT_TRUE(detour.isOpen);
}

TEST_F(JackFeederTest, AReleasedClientIsLetGoOnceTheGlideBackHasArrived) {
  auto& detour = lead();
  feeder.release("studio", {});
  EXPECT_FALSE(detour.isOpen);
  ASSERT_EQ(alive.size(), 1U);
  detour.isSilent = true;
  feeder.settle();
  EXPECT_TRUE(alive.empty());
}

TEST_F(JackFeederTest, AReleaseBeforeItHasOpenedLeavesNothing) {
  feeder.claim("studio", {}, {}, tapSerial);
  appear();
  feeder.release("studio", {});
  EXPECT_TRUE(alive.empty());
}

TEST_F(JackFeederTest, AClientThatUnplugsItselfIsNotCancelledForAnotherMoment) {
  lead();
  unplug(desk);
  feeder.settle();
  EXPECT_TRUE(alive.empty());
}

TEST_F(JackFeederTest, NeitherIsOneThatUnplugsItselfWhileItIsLetGo) {
  lead();
  feeder.release("studio", {});
  unplug(desk);
  feeder.settle();
  EXPECT_TRUE(alive.empty());
}

TEST_F(JackFeederTest, AClientThatQuitsLeavesNothing) {
  lead();
  unplug(desk);
  graph.model.remove(jack);
  feeder.settle();
  EXPECT_TRUE(alive.empty());
}

TEST_F(JackFeederTest, AnotherTapTakesOverTheDetourThatStands) {
  auto& detour = lead();
  detour.areStanding = false;
  feeder.claim("studio", {}, {}, otherTapSerial);
  EXPECT_TRUE(detour.links.contains({Part::tap, {504, 411}}));
  EXPECT_TRUE(detour.isOpen);
  EXPECT_EQ(asked.size(), 1U);
}

TEST_F(JackFeederTest, ATapThatIsGoneGivesTheSoundBack) {
  auto& detour = lead();
  graph.model.remove(tap);
  feeder.settle();
  EXPECT_FALSE(detour.isOpen);
}

TEST_F(JackFeederTest, ADetourThatFailsIsMadeAgainAFewTimesAndThenLeftAlone) {
  feeder.claim("studio", {}, {}, tapSerial);
  for (int cut = 0; cut < 10; ++cut) {
    for (auto* detour : alive) detour->failed = true;
    feeder.settle();
  }
  EXPECT_EQ(asked.size(), 5U);
  EXPECT_TRUE(alive.empty());
  EXPECT_EQ(graph.log.lines.size(), 1U);
  // Another tap is another trial.
  feeder.claim("studio", {}, {}, otherTapSerial);
  EXPECT_EQ(alive.size(), 1U);
}

TEST_F(JackFeederTest, ADeviceThatMakesItsPortsAnewGetsAnotherDetour) {
  lead();
  port(300, desk, 0, true, "FL", "anew");
  feeder.settle();
  EXPECT_EQ(asked.size(), 2U);
  EXPECT_EQ(alive.size(), 1U);
}

TEST_F(JackFeederTest, OnTheDefaultOutputItIsBoundThereAndElsewhereForTheDeviceItself) {
  EXPECT_EQ(feeder.destinations("studio", {}), std::set<Destination>{std::nullopt});
  EXPECT_TRUE(feeder.hasRunningStream("studio", {}, {}));
  unplug(desk);
  EXPECT_TRUE(feeder.destinations("studio", {}).empty());
  EXPECT_FALSE(feeder.hasRunningStream("studio", {}, {}));
  plugIn(phones);
  EXPECT_EQ(feeder.destinations("studio", {}), std::set<Destination>{phonesSerial});
  EXPECT_TRUE(feeder.hasRunningStream("studio", {}, phonesSerial));
  EXPECT_FALSE(feeder.hasRunningStream("studio", {}, {}));
}

TEST_F(JackFeederTest, ARouteGoesBeforeWhereItIsLinked) {
  EXPECT_EQ(feeder.destinations("studio", "phones"), std::set<Destination>{"phones"});
  feeder.claim("studio", "phones", "phones", tapSerial);
  // What it plays on its own device is cancelled there.
  EXPECT_TRUE(appear().links.contains({Part::inverse, {502, 300}}));
}

TEST_F(JackFeederTest, OneOnTwoDevicesIsLedFromEachToTheTapForIt) {
  plugIn(phones);
  feeder.claim("studio", {}, {}, tapSerial);
  EXPECT_EQ(alive.size(), 1U);
  feeder.claim("studio", {}, phonesSerial, otherTapSerial);
  EXPECT_EQ(alive.size(), 2U);
  feeder.release("studio", phonesSerial);
  EXPECT_EQ(alive.size(), 1U);
}

TEST_F(JackFeederTest, ItStaysOnItsTapUntilTheOneForItsNewBoundIsThere) {
  auto& detour = lead();
  graph.model.setMetadata(0, "default.audio.sink", R"({"name":"phones"})");
  feeder.settle();
  EXPECT_EQ(feeder.destinations("studio", {}), std::set<Destination>{deskSerial});
  EXPECT_TRUE(detour.isOpen);
  EXPECT_TRUE(detour.links.contains({Part::tap, {504, 401}}));
  feeder.claim("studio", {}, deskSerial, otherTapSerial);
  EXPECT_TRUE(detour.links.contains({Part::tap, {504, 411}}));
  feeder.release("studio", {});
  EXPECT_TRUE(detour.isOpen);
}

TEST_F(JackFeederTest, TwoClientsOfOneApplicationShareTheDetour) {
  graph.client(11, "studio");
  graph.jack(21, 11);
  port(210, 21, 0, false);
  graph.link(702, 21, desk, 210, 300);
  feeder.claim("studio", {}, {}, tapSerial);
  const auto& detour = appear();
  EXPECT_TRUE(detour.links.contains({Part::source, {200, 500}}));
  EXPECT_TRUE(detour.links.contains({Part::source, {210, 500}}));
}

TEST_F(JackFeederTest, AForgottenClientIsFreeAtOnce) {
  lead();
  feeder.forget();
  EXPECT_TRUE(alive.empty());
  feeder.settle();
  EXPECT_TRUE(alive.empty());
}

TEST_F(JackFeederTest, WhatClientsPlayIntoEachOtherIsNotLed) {
  unplug(desk);
  graph.client(11, "mixer");
  graph.jack(21, 11);
  graph.link(702, jack, 21, 200, 210);
  feeder.claim("studio", {}, {}, tapSerial);
  EXPECT_TRUE(alive.empty());
}

}  // namespace
}  // namespace quillmere::pipewire::test
