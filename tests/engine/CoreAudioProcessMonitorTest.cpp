// The poll of audio processes: what is read, what a failed read means, when it happens.
#include "engine/CoreAudioProcessMonitor.h"

#include <gmock/gmock.h>

#include <unordered_set>

#include "EngineFixture.h"

namespace quillmere {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using Snapshot = CoreAudioProcessMonitor::Snapshot;

struct CoreAudioProcessMonitorTest : EngineFixture {
  std::vector<Snapshot> snapshots() const { return CoreAudioProcessMonitor::snapshots(hardware); }
};

TEST_F(CoreAudioProcessMonitorTest, EachProcessObjectIsReadWhole) {
  const auto playing = hardware.addProcess({.bundleID = "org.example.Player", .pid = 42, .isRunningOutput = true});
  const auto listening = hardware.addProcess({.bundleID = "org.example.Call", .pid = 43, .isRunningInput = true});
  EXPECT_THAT(snapshots(), ElementsAre(Snapshot{"org.example.Player", 42, playing, true, false},
                                       Snapshot{"org.example.Call", 43, listening, false, true}));
}

TEST_F(CoreAudioProcessMonitorTest, NoProcessesGiveAnEmptyList) { EXPECT_THAT(snapshots(), IsEmpty()); }

TEST_F(CoreAudioProcessMonitorTest, AListThatCannotBeReadIsEmptyForThatPollOnly) {
  hardware.addProcess({.bundleID = "a"});
  hardware.fail({.method = Method::propertyDataSize, .object = systemObjectID}, unspecifiedError);
  EXPECT_THAT(snapshots(), IsEmpty());
  hardware.fail({.method = Method::readObjectIDs}, unspecifiedError);
  EXPECT_THAT(snapshots(), IsEmpty());
  EXPECT_EQ(snapshots().size(), 1U);
  EXPECT_THAT(log.lines(), IsEmpty());
}

TEST_F(CoreAudioProcessMonitorTest, AnObjectWhoseIdentifierCannotBeReadIsLeftOut) {
  const auto unreadable = hardware.addProcess({.bundleID = "a"});
  hardware.addProcess({.bundleID = std::nullopt});
  hardware.addProcess({.bundleID = "b"});
  hardware.fail({.method = Method::readString, .object = unreadable}, unspecifiedError);
  const auto list = snapshots();
  ASSERT_EQ(list.size(), 1U);
  EXPECT_EQ(list[0].bundleID, "b");
  EXPECT_EQ(snapshots().size(), 2U);
}

TEST_F(CoreAudioProcessMonitorTest, AnEmptyIdentifierIsKept) {
  hardware.addProcess({.bundleID = ""});
  ASSERT_EQ(snapshots().size(), 1U);
  EXPECT_EQ(snapshots()[0].bundleID, "");
}

TEST_F(CoreAudioProcessMonitorTest, FailedReadsOfPidAndFlagsGiveZeroAndFalse) {
  const auto object =
      hardware.addProcess({.bundleID = "a", .pid = 42, .isRunningOutput = true, .isRunningInput = true});
  hardware.fail({.method = Method::readInt32}, unspecifiedError);
  hardware.fail({.method = Method::readUInt32}, unspecifiedError, 2);
  EXPECT_THAT(snapshots(), ElementsAre(Snapshot{"a", 0, object, false, false}));
}

TEST_F(CoreAudioProcessMonitorTest, AbsurdProcessIDsPassAsTheyAre) {
  hardware.addProcess({.bundleID = "a", .pid = -7});
  EXPECT_EQ(snapshots()[0].pid, -7);
}

TEST_F(CoreAudioProcessMonitorTest, TheStreamTellsTheListEvery150MillisecondsChangedOrNot) {
  const CoreAudioProcessMonitor monitor(hardware, time.background());
  auto stream = monitor.stream();
  std::vector<std::size_t> sizes;
  startTask(time.main(), [&](TaskContext&) -> Async<void> {
    while (auto list = co_await stream.next()) sizes.push_back(list->size());
  });
  time.runUntilIdle();
  EXPECT_THAT(sizes, ElementsAre(0));
  time.advance(149ms);
  EXPECT_EQ(sizes.size(), 1U);
  hardware.addProcess({.bundleID = "a"});
  time.advance(1ms);
  EXPECT_THAT(sizes, ElementsAre(0, 1));
  time.advance(300ms);
  EXPECT_THAT(sizes, ElementsAre(0, 1, 1, 1));
}

TEST_F(CoreAudioProcessMonitorTest, AStreamThatIsLetGoPollsNoMore) {
  {
    const CoreAudioProcessMonitor monitor(hardware, time.background());
    const auto stream = monitor.stream();
    time.advance(1s);
  }
  time.advance(150ms);
  hardware.clearCalls();
  time.advance(1min);
  EXPECT_THAT(hardware.calls(), IsEmpty());
}

TEST(CoreAudioProcessSnapshot, EqualsAndHashesByAllFields) {
  const Snapshot base{"a", 1, 2, true, false};
  std::unordered_set<Snapshot> set{base, base};
  for (const auto& other :
       {Snapshot{"b", 1, 2, true, false}, Snapshot{"a", 3, 2, true, false}, Snapshot{"a", 1, 3, true, false},
        Snapshot{"a", 1, 2, false, false}, Snapshot{"a", 1, 2, true, true}}) {
    EXPECT_NE(base, other);
    set.insert(other);
  }
  EXPECT_EQ(set.size(), 6U);
}

}  // namespace
}  // namespace quillmere
