// What every answer to the audio port must do, written once and run on each of them. AudioHardwareFixture.h says what a
// host offers.
#pragma once

#include <algorithm>
#include <array>
#include <chrono>
#include <cmath>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "tests/platform/contract/AudioHardwareFixture.h"

namespace quillmere {

TYPED_TEST_SUITE_P(AudioHardwareContract);

// Changes -------------------------------------------------------------------------------------------------------------

TYPED_TEST_P(AudioHardwareContract, WhatASystemADeviceOrAProcessTellsAnewIsRaised) {
  const auto& changes = this->hardware().changes();
  if (&changes == &ChangeSignal::absent()) GTEST_SKIP() << "this host can't tell and has to be asked";
  const auto isRaisedBy = [&](const std::function<void()>& event) {
    const auto before = changes.raises();
    event();
    return this->eventually([&] { return changes.raises() > before; });
  };
  EXPECT_TRUE(isRaisedBy([&] { this->launch(this->app); })) << "a process";
  EXPECT_TRUE(isRaisedBy([&] {
    this->host_.pause(this->app);
    EXPECT_TRUE(this->eventually([&] { return !this->isRunning(this->app, audio::processIsRunningOutput); }));
  })) << "its flag";
  EXPECT_TRUE(isRaisedBy([&] { this->host_.quit(this->app); })) << "its end";
  EXPECT_TRUE(isRaisedBy([&] { this->plug("contract-another"); })) << "a device";
  EXPECT_TRUE(isRaisedBy([&] { this->host_.moveDefault("contract-another"); })) << "the default";
  EXPECT_TRUE(isRaisedBy([&] { this->host_.unplug("contract-another"); })) << "a device's end";
}

// Properties ----------------------------------------------------------------------------------------------------------

TYPED_TEST_P(AudioHardwareContract, AnObjectThatIsNotThereHasNothingAndLeavesEveryResultUntouched) {
  for (const AudioObjectID object : {AudioObjectID{0}, this->nobody}) {
    for (const auto selector : {audio::deviceUID, audio::processPID, audio::volumeScalar, audio::devices}) {
      const PropertyAddress address{selector, audio::scopeGlobal, 0};
      bool settable = true;
      std::uint32_t size = 77;
      std::uint32_t number = 78;
      std::int32_t pid = 79;
      float real = 0.75F;
      std::optional<std::string> text = "as it was";
      std::vector<AudioObjectID> ids{80};
      AudioStreamBasicDescription format;
      format.sampleRate = 81.0;
      EXPECT_FALSE(this->hardware().hasProperty(object, address));
      EXPECT_EQ(this->hardware().isPropertySettable(object, address, settable), badObjectError);
      EXPECT_EQ(this->hardware().propertyDataSize(object, address, size), badObjectError);
      EXPECT_EQ(this->hardware().readUInt32(object, address, number), badObjectError);
      EXPECT_EQ(this->hardware().readInt32(object, address, pid), badObjectError);
      EXPECT_EQ(this->hardware().readFloat32(object, address, real), badObjectError);
      EXPECT_EQ(this->hardware().readString(object, address, text), badObjectError);
      EXPECT_EQ(this->hardware().readObjectIDs(object, address, ids), badObjectError);
      EXPECT_EQ(this->hardware().readFormat(object, address, format), badObjectError);
      EXPECT_EQ(this->hardware().writeUInt32(object, address, 1), badObjectError);
      EXPECT_EQ(this->hardware().writeFloat32(object, address, 1.0F), badObjectError);
      EXPECT_TRUE(settable);
      EXPECT_EQ(size, 77U);
      EXPECT_EQ(number, 78U);
      EXPECT_EQ(pid, 79);
      EXPECT_EQ(real, 0.75F);
      EXPECT_EQ(text, "as it was");
      EXPECT_EQ(ids, std::vector<AudioObjectID>{80});
      EXPECT_EQ(format.sampleRate, 81.0);
    }
  }
}

TYPED_TEST_P(AudioHardwareContract, APropertyThatAnObjectHasNotIsAnErrorAndLeavesTheResultUntouched) {
  const auto speakers = this->device(this->host_.speakers());
  std::int32_t pid = 79;
  std::uint32_t number = 78;
  std::vector<AudioObjectID> ids{80};
  float real = 0.75F;
  EXPECT_FALSE(this->hardware().hasProperty(speakers, {audio::processPID}));
  EXPECT_EQ(this->hardware().readInt32(speakers, {audio::processPID}, pid), unknownPropertyError);
  EXPECT_EQ(this->hardware().readUInt32(speakers, {audio::processIsRunningOutput}, number), unknownPropertyError);
  EXPECT_EQ(this->hardware().readObjectIDs(speakers, {audio::processObjectList}, ids), unknownPropertyError);
  EXPECT_FALSE(this->hardware().hasProperty(systemObjectID, contractVolume));
  EXPECT_EQ(this->hardware().readFloat32(systemObjectID, contractVolume, real), unknownPropertyError);
  const auto microphone = this->device(this->host_.microphone());
  EXPECT_FALSE(this->hardware().hasProperty(microphone, contractVolume));
  EXPECT_EQ(this->hardware().readFloat32(microphone, contractVolume, real), unknownPropertyError);
  EXPECT_EQ(this->hardware().writeFloat32(microphone, contractVolume, 0.5F), unknownPropertyError);
  EXPECT_EQ(pid, 79);
  EXPECT_EQ(number, 78U);
  EXPECT_EQ(ids, std::vector<AudioObjectID>{80});
  EXPECT_EQ(real, 0.75F);
}

TYPED_TEST_P(AudioHardwareContract, AReadOfAnotherTypeIsAnErrorAndLeavesTheResultUntouched) {
  const auto speakers = this->device(this->host_.speakers());
  std::uint32_t number = 78;
  std::optional<std::string> text = "as it was";
  EXPECT_NE(this->hardware().readUInt32(speakers, {audio::deviceUID}, number), noErr);
  EXPECT_NE(this->hardware().readString(speakers, {audio::transportType}, text), noErr);
  EXPECT_EQ(number, 78U);
  EXPECT_EQ(text, "as it was");
}

TYPED_TEST_P(AudioHardwareContract, WhatThereIsSaysSo) {
  const auto speakers = this->device(this->host_.speakers());
  for (const auto selector : {audio::devices, audio::processObjectList, audio::defaultOutputDevice}) {
    EXPECT_TRUE(this->hardware().hasProperty(systemObjectID, {selector}));
  }
  for (const auto selector : {audio::deviceUID, audio::objectName, audio::deviceIsAlive, audio::transportType}) {
    EXPECT_TRUE(this->hardware().hasProperty(speakers, {selector}));
  }
  EXPECT_TRUE(this->hardware().hasProperty(speakers, {audio::streams, audio::scopeOutput}));
}

TYPED_TEST_P(AudioHardwareContract, AListIsFourBytesAnEntryAndNamesNothingTwice) {
  this->launch(this->app);
  for (const auto selector : {audio::devices, audio::processObjectList}) {
    const auto ids = this->list(selector);
    std::uint32_t size = 0;
    EXPECT_EQ(this->hardware().propertyDataSize(systemObjectID, {selector}, size), noErr);
    EXPECT_FALSE(ids.empty());
    EXPECT_EQ(size, 4 * ids.size());
    EXPECT_EQ(std::set<AudioObjectID>(ids.begin(), ids.end()).size(), ids.size());
    EXPECT_EQ(std::count(ids.begin(), ids.end(), AudioObjectID{0}), 0);
  }
}

TYPED_TEST_P(AudioHardwareContract, ADeviceTellsItsNamesThatItIsAliveAndHowItIsConnected) {
  CONTRACT_NEEDS(plugHeadset);
  const auto headset = this->plugHeadset("contract-headset");
  EXPECT_EQ(this->text(headset, audio::deviceUID), "contract-headset");
  EXPECT_NE(this->text(headset, audio::objectName), "");
  EXPECT_EQ(this->number(headset, audio::deviceIsAlive), 1U);
  // A host may know of a device a moment before it knows how it is connected.
  EXPECT_TRUE(this->eventually([&] { return this->number(headset, audio::transportType) == audio::transportUSB; }));
}

TYPED_TEST_P(AudioHardwareContract, OnlyOutputsHaveOutputStreams) {
  const PropertyAddress streams{audio::streams, audio::scopeOutput, 0};
  std::uint32_t size = 0;
  EXPECT_EQ(this->hardware().propertyDataSize(this->device(this->host_.speakers()), streams, size), noErr);
  EXPECT_GT(size, 0U);
  EXPECT_EQ(this->hardware().propertyDataSize(this->device(this->host_.microphone()), streams, size), noErr);
  EXPECT_EQ(size, 0U);
}

TYPED_TEST_P(AudioHardwareContract, TheDefaultOutputAndVolumesAreSettableAndNothingElseIs) {
  const auto speakers = this->device(this->host_.speakers());
  bool settable = false;
  EXPECT_EQ(this->hardware().isPropertySettable(systemObjectID, {audio::defaultOutputDevice}, settable), noErr);
  EXPECT_TRUE(settable);
  EXPECT_EQ(this->hardware().isPropertySettable(systemObjectID, {audio::devices}, settable), noErr);
  EXPECT_FALSE(settable);
  EXPECT_EQ(this->hardware().isPropertySettable(speakers, contractVolume, settable), noErr);
  EXPECT_TRUE(settable);
  EXPECT_EQ(this->hardware().isPropertySettable(speakers, {audio::deviceUID}, settable), noErr);
  EXPECT_FALSE(settable);
}

TYPED_TEST_P(AudioHardwareContract, AProcessComesWithItsSoundSaysWhetherItPlaysAndGoesWithItsProgram) {
  EXPECT_EQ(this->process(this->app), 0U);
  const auto id = this->launch(this->app);
  std::int32_t pid = 0;
  EXPECT_EQ(this->hardware().readInt32(id, {audio::processPID}, pid), noErr);
  EXPECT_GT(pid, 0);
  EXPECT_EQ(this->number(id, audio::processIsRunningInput), 0U);
  this->host_.pause(this->app);
  EXPECT_TRUE(this->eventually([&] { return !this->isRunning(this->app, audio::processIsRunningOutput); }));
  EXPECT_EQ(this->process(this->app), id);
  this->host_.resume(this->app);
  EXPECT_TRUE(this->eventually([&] { return this->isRunning(this->app, audio::processIsRunningOutput); }));
  this->host_.quit(this->app);
  EXPECT_TRUE(this->eventually([&] { return this->process(this->app) == 0; }));
  EXPECT_EQ(this->number(id, audio::processIsRunningOutput), std::nullopt);
}

// Ids -----------------------------------------------------------------------------------------------------------------

TYPED_TEST_P(AudioHardwareContract, AnIdIsNeverAnothersEvenWhenItsObjectHasGone) {
  std::set<AudioObjectID> ids{systemObjectID, 0};
  for (const auto id : this->list(audio::devices)) EXPECT_TRUE(ids.insert(id).second);
  const auto application = this->launch(this->app);
  EXPECT_TRUE(ids.insert(application).second);
  for (const std::string uid : {"contract-one", "contract-two", "contract-three"}) {
    EXPECT_TRUE(ids.insert(this->plug(uid)).second);
    this->host_.unplug(uid);
    EXPECT_TRUE(this->eventually([&] { return this->device(uid) == 0; }));
  }
  for (int round = 0; round < 3; ++round) {
    const auto path = this->build(application, 1.0F);
    EXPECT_TRUE(ids.insert(path.tap).second);
    EXPECT_TRUE(ids.insert(path.device).second);
    this->destroy(path);
  }
}

TYPED_TEST_P(AudioHardwareContract, AfterARestartEverythingHasTheIdItHad) {
  CONTRACT_NEEDS(restart);
  const auto speakers = this->device(this->host_.speakers());
  const auto microphone = this->device(this->host_.microphone());
  this->host_.restart();
  EXPECT_TRUE(this->eventually([&] { return this->number(speakers, audio::deviceIsAlive) == 1U; }));
  EXPECT_EQ(this->device(this->host_.speakers()), speakers);
  EXPECT_TRUE(this->eventually([&] { return this->device(this->host_.microphone()) == microphone; }));
  EXPECT_TRUE(this->eventually([&] { return this->defaultOutput() == speakers; }));
}

TYPED_TEST_P(AudioHardwareContract, ARestartIsNoChangeOfTheDevicesOrTheDefault) {
  CONTRACT_NEEDS(restart);
  CountedListener devices;
  CountedListener defaults;
  const auto speakers = this->device(this->host_.speakers());
  this->listen(systemObjectID, {audio::devices}, devices);
  this->listen(systemObjectID, {audio::defaultOutputDevice}, defaults);
  this->host_.restart();
  EXPECT_TRUE(this->eventually([&] { return this->number(speakers, audio::deviceIsAlive) == 1U; }));
  EXPECT_TRUE(this->eventually([&] { return this->defaultOutput() == speakers; }));
  EXPECT_EQ(devices.told, 0);
  EXPECT_EQ(defaults.told, 0);
  // And they still listen.
  this->plug("contract-extra");
  EXPECT_TRUE(this->eventually([&] { return devices.told > 0; }));
}

// Listeners -----------------------------------------------------------------------------------------------------------

TYPED_TEST_P(AudioHardwareContract, AListenerIsCalledWhereListenersAreRunAndNowhereElse) {
  CountedListener devices;
  this->listen(systemObjectID, {audio::devices}, devices);
  this->host_.plug("contract-extra");
  // Not through eventually(), which runs listeners.
  while (this->device("contract-extra") == 0) std::this_thread::yield();
  EXPECT_EQ(devices.told, 0);
  EXPECT_TRUE(this->eventually([&] { return devices.told > 0; }));
}

TYPED_TEST_P(AudioHardwareContract, SeveralChangesMayBeToldAsOneAndTheLastIsRead) {
  const auto extra = this->plug("contract-extra");
  this->host_.run();
  CountedListener defaults;
  this->listen(systemObjectID, {audio::defaultOutputDevice}, defaults);
  AudioObjectID seen = 0;
  const auto reader = std::make_shared<const std::function<void()>>([&] { seen = this->defaultOutput(); });
  this->hardware().addPropertyListener(systemObjectID, {audio::defaultOutputDevice}, reader);
  this->host_.moveDefault("contract-extra");
  this->host_.moveDefault(this->host_.speakers());
  this->host_.moveDefault("contract-extra");
  EXPECT_TRUE(this->eventually([&] { return seen == extra; }));
  EXPECT_GE(defaults.told, 1);
  EXPECT_LE(defaults.told, 3);
}

TYPED_TEST_P(AudioHardwareContract, AListenerThatWasRemovedIsNotCalledEvenIfItsTurnHadCome) {
  CountedListener removed;
  CountedListener kept;
  this->listen(systemObjectID, {audio::devices}, removed);
  this->listen(systemObjectID, {audio::devices}, kept);
  this->host_.plug("contract-extra");
  while (this->device("contract-extra") == 0) std::this_thread::yield();
  EXPECT_EQ(this->hardware().removePropertyListener(systemObjectID, {audio::devices}, removed.listener), noErr);
  EXPECT_TRUE(this->eventually([&] { return kept.told > 0; }));
  EXPECT_EQ(removed.told, 0);
}

TYPED_TEST_P(AudioHardwareContract, RemovingAStrangerDoesNothing) {
  CountedListener kept;
  this->listen(systemObjectID, {audio::devices}, kept);
  const auto stranger = std::make_shared<const std::function<void()>>([] {});
  EXPECT_EQ(this->hardware().removePropertyListener(systemObjectID, {audio::devices}, stranger), noErr);
  EXPECT_EQ(this->hardware().removePropertyListener(systemObjectID, {audio::defaultOutputDevice}, kept.listener),
            noErr);
  this->plug("contract-extra");
  EXPECT_TRUE(this->eventually([&] { return kept.told > 0; }));
}

TYPED_TEST_P(AudioHardwareContract, AListenerMayRemoveItselfAndOthersWhileItIsCalled) {
  CountedListener other;
  int told = 0;
  PropertyListener self;
  self = std::make_shared<const std::function<void()>>([&] {
    ++told;
    this->hardware().removePropertyListener(systemObjectID, {audio::devices}, self);
    this->hardware().removePropertyListener(systemObjectID, {audio::devices}, other.listener);
  });
  this->hardware().addPropertyListener(systemObjectID, {audio::devices}, self);
  this->listen(systemObjectID, {audio::devices}, other);
  CountedListener last;
  this->listen(systemObjectID, {audio::devices}, last);
  this->plug("contract-extra");
  EXPECT_TRUE(this->eventually([&] { return last.told > 0; }));
  EXPECT_EQ(told, 1);
  EXPECT_EQ(other.told, 0);
}

TYPED_TEST_P(AudioHardwareContract, OnlyListenersOfWhatHasChangedAreCalled) {
  CONTRACT_NEEDS(measureSpeakers);
  const auto extra = this->plug("contract-extra");
  const auto speakers = this->device(this->host_.speakers());
  // Some machines tell nobody of the volume of a device that has never sounded.
  this->launch(this->app);
  ASSERT_TRUE(this->levelIs(this->host_.speakers(), 1.0F));
  this->host_.run();
  CountedListener ofIt;
  CountedListener ofAnother;
  CountedListener ofTheSystem;
  this->listen(speakers, contractVolume, ofIt);
  this->listen(extra, contractVolume, ofAnother);
  this->listen(systemObjectID, {audio::devices}, ofTheSystem);
  this->host_.moveVolume(this->host_.speakers(), 0.3F);
  EXPECT_TRUE(this->eventually([&] { return ofIt.told > 0; }));
  EXPECT_EQ(ofAnother.told, 0);
  EXPECT_EQ(ofTheSystem.told, 0);
}

// The default output --------------------------------------------------------------------------------------------------

TYPED_TEST_P(AudioHardwareContract, ADefaultOutputThatIsWrittenIsReadBackAtOnceAndToldOnce) {
  const auto extra = this->plug("contract-extra");
  this->host_.run();
  CountedListener defaults;
  this->listen(systemObjectID, {audio::defaultOutputDevice}, defaults);
  EXPECT_EQ(this->setDefaultOutput(extra), noErr);
  EXPECT_EQ(this->defaultOutput(), extra);
  // Whatever is told of the write itself is told now, and not together with the answer to it.
  this->host_.run();
  EXPECT_TRUE(this->eventually([&] { return defaults.told > 0; }));
  this->plug("contract-later");
  EXPECT_EQ(this->defaultOutput(), extra);
  EXPECT_EQ(defaults.told, 1);
}

TYPED_TEST_P(AudioHardwareContract, WhatIsNoOutputIsNotTakenAsTheDefault) {
  const auto before = this->defaultOutput();
  EXPECT_NE(before, 0U);
  EXPECT_EQ(this->setDefaultOutput(this->nobody), badObjectError);
  EXPECT_EQ(this->setDefaultOutput(0), badObjectError);
  EXPECT_EQ(this->setDefaultOutput(this->device(this->host_.microphone())), illegalOperationError);
  EXPECT_EQ(this->defaultOutput(), before);
}

TYPED_TEST_P(AudioHardwareContract, ADefaultThatAnotherProgramMovesIsTold) {
  const auto extra = this->plug("contract-extra");
  this->host_.run();
  CountedListener defaults;
  this->listen(systemObjectID, {audio::defaultOutputDevice}, defaults);
  this->host_.moveDefault("contract-extra");
  EXPECT_TRUE(this->eventually([&] { return defaults.told > 0; }));
  EXPECT_EQ(this->defaultOutput(), extra);
}

TYPED_TEST_P(AudioHardwareContract, ADefaultThatGoesIsNamedUntilAnotherHasTakenItsPlace) {
  CONTRACT_NEEDS(plugHeadset);
  const auto earbuds = this->plugHeadset("contract-earbuds");
  const auto headset = this->plugHeadset("contract-headset");
  this->host_.moveDefault("contract-headset");
  ASSERT_TRUE(this->eventually([&] { return this->defaultOutput() == headset; }));
  this->host_.run();
  CountedListener defaults;
  this->listen(systemObjectID, {audio::defaultOutputDevice}, defaults);
  this->host_.unplugForAGap("contract-headset");
  EXPECT_TRUE(this->eventually([&] { return this->device("contract-headset") == 0; })) << "what has gone is not listed";
  EXPECT_EQ(this->defaultOutput(), headset);
  EXPECT_EQ(this->text(headset, audio::deviceUID), "contract-headset");
  EXPECT_EQ(this->number(headset, audio::transportType), audio::transportUSB);
  EXPECT_EQ(this->number(headset, audio::deviceIsAlive), 0U);
  EXPECT_NE(this->setVolume(headset, 0.5F), noErr);
  EXPECT_EQ(defaults.told, 0);
  this->host_.moveDefault("contract-earbuds");
  EXPECT_TRUE(this->eventually([&] { return this->defaultOutput() == earbuds; }));
  EXPECT_TRUE(this->eventually([&] { return defaults.told > 0; }));
  EXPECT_EQ(this->text(headset, audio::deviceUID), "") << "it has been replaced";
}

TYPED_TEST_P(AudioHardwareContract, ADeviceThatGoesIsToldAndUnknownAfterwards) {
  const auto extra = this->plug("contract-extra");
  this->host_.run();
  CountedListener devices;
  this->listen(systemObjectID, {audio::devices}, devices);
  this->host_.unplug("contract-extra");
  EXPECT_TRUE(this->eventually([&] { return devices.told > 0 && this->device("contract-extra") == 0; }));
  std::uint32_t alive = 7;
  EXPECT_EQ(this->hardware().readUInt32(extra, {audio::deviceIsAlive}, alive), badObjectError);
  EXPECT_EQ(alive, 7U);
  EXPECT_EQ(this->setDefaultOutput(extra), badObjectError);
}

// Volumes -------------------------------------------------------------------------------------------------------------

TYPED_TEST_P(AudioHardwareContract, AVolumeThatIsWrittenIsReadBackAtOnceByElement) {
  CONTRACT_NEEDS(moveVolumeOfPlugged);
  const auto extra = this->plug("contract-extra");
  ASSERT_TRUE(this->eventually([&] { return this->volume(extra).has_value(); }));
  EXPECT_EQ(this->setVolume(extra, 0.5F), noErr);
  EXPECT_NEAR(this->volume(extra).value_or(-1.0F), 0.5F, 1e-4F);
  EXPECT_EQ(this->setVolume(extra, 0.4F, 1), noErr);
  EXPECT_EQ(this->setVolume(extra, 0.3F, 2), noErr);
  EXPECT_NEAR(this->volume(extra, 1).value_or(-1.0F), 0.4F, 1e-4F);
  EXPECT_NEAR(this->volume(extra, 2).value_or(-1.0F), 0.3F, 1e-4F);
}

TYPED_TEST_P(AudioHardwareContract, AnElementThatADeviceHasNotCannotBeReadOrWritten) {
  CONTRACT_NEEDS(moveVolumeOfPlugged);
  const auto extra = this->plug("contract-extra");
  ASSERT_TRUE(this->eventually([&] { return this->volume(extra).has_value(); }));
  EXPECT_FALSE(this->hardware().hasProperty(extra, {audio::volumeScalar, audio::scopeOutput, 99}));
  EXPECT_EQ(this->setVolume(extra, 0.5F, 99), unknownPropertyError);
  EXPECT_EQ(this->volume(extra, 99), std::nullopt);
}

TYPED_TEST_P(AudioHardwareContract, AVolumeThatAnotherProgramMovesIsTold) {
  CONTRACT_NEEDS(measureSpeakers);
  const auto speakers = this->device(this->host_.speakers());
  ASSERT_TRUE(this->eventually([&] { return this->volume(speakers).has_value(); }));
  // As above: it has sounded.
  this->launch(this->app);
  ASSERT_TRUE(this->levelIs(this->host_.speakers(), 1.0F));
  this->host_.run();
  CountedListener volumes;
  this->listen(speakers, contractVolume, volumes);
  this->host_.moveVolume(this->host_.speakers(), 0.3F);
  EXPECT_TRUE(this->eventually([&] { return std::fabs(this->volume(speakers).value_or(-1.0F) - 0.3F) < 0.005F; }));
  EXPECT_TRUE(this->eventually([&] { return volumes.told > 0; }));
}

// Taps ----------------------------------------------------------------------------------------------------------------

TYPED_TEST_P(AudioHardwareContract, WhatTheBlockMakesOfAnApplicationIsWhatIsHeard) {
  CONTRACT_NEEDS(measureSpeakers);
  const auto application = this->launch(this->app);
  ASSERT_TRUE(this->levelIs(this->host_.speakers(), 1.0F));
  auto path = this->build(application, 0.25F);
  this->start(path);
  EXPECT_TRUE(this->levelIs(this->host_.speakers(), 0.25F));
  path.block.setGain(0.5F);
  EXPECT_TRUE(this->levelIs(this->host_.speakers(), 0.5F));
  EXPECT_TRUE(path.block.formsAreRight());
  this->stop(path);
  this->destroy(path);
  EXPECT_TRUE(this->levelIs(this->host_.speakers(), 1.0F));
  EXPECT_FALSE(path.block.wasCalledWrongly());
}

TYPED_TEST_P(AudioHardwareContract, OtherApplicationsAreNotTouched) {
  CONTRACT_NEEDS(measureSpeakers);
  const auto application = this->launch(this->app);
  this->launch("org.example.other");
  auto path = this->build(application, 0.0F);
  this->start(path);
  EXPECT_TRUE(this->levelIs(this->host_.speakers(), 1.0F));
  this->stop(path);
  this->destroy(path);
}

TYPED_TEST_P(AudioHardwareContract, ARouteIsHeardOnItsDeviceAlone) {
  CONTRACT_NEEDS(measureSpeakers);
  CONTRACT_NEEDS(measurePlugged);
  this->plug("contract-extra");
  const auto application = this->launch(this->app);
  auto path = this->build(application, 0.5F, "contract-extra");
  this->start(path);
  EXPECT_TRUE(this->levelIs("contract-extra", 0.5F));
  EXPECT_TRUE(this->levelIs(this->host_.speakers(), 0.0F));
  this->stop(path);
  this->destroy(path);
  EXPECT_TRUE(this->levelIs(this->host_.speakers(), 1.0F));
}

TYPED_TEST_P(AudioHardwareContract, ATapIsStereoFloatAtARate) {
  const auto application = this->launch(this->app);
  AudioObjectID tap = 0;
  ASSERT_EQ(this->hardware().createProcessTap(this->tapOver(application), tap), noErr);
  AudioStreamBasicDescription format;
  EXPECT_EQ(this->hardware().readFormat(tap, {audio::tapFormat}, format), noErr);
  EXPECT_GE(format.sampleRate, 8000.0);
  EXPECT_EQ(format.channelsPerFrame, 2U);
  EXPECT_EQ(format.bitsPerChannel, 32U);
  EXPECT_EQ(this->hardware().destroyProcessTap(tap), noErr);
  format.sampleRate = 7.0;
  EXPECT_EQ(this->hardware().readFormat(tap, {audio::tapFormat}, format), badObjectError);
  EXPECT_EQ(format.sampleRate, 7.0);
}

TYPED_TEST_P(AudioHardwareContract, TheBlockRunsOnlyBetweenStartAndStop) {
  CONTRACT_NEEDS(measureSpeakers);
  const auto application = this->launch(this->app);
  auto path = this->build(application, 0.5F);
  for (int round = 0; round < 3; ++round) {
    this->start(path);
    EXPECT_TRUE(this->isCalled(path));
    this->stop(path);
    EXPECT_TRUE(this->levelIs(this->host_.speakers(), 1.0F));
  }
  this->destroy(path);
  EXPECT_FALSE(path.block.wasCalledWrongly());
}

TYPED_TEST_P(AudioHardwareContract, AStopWaitsForACallThatIsUnderWay) {
  const auto application = this->launch(this->app);
  auto path = this->build(application, 0.5F);
  path.block.setLength(std::chrono::milliseconds(4));
  for (int round = 0; round < 5; ++round) {
    this->start(path);
    ASSERT_TRUE(this->eventually([&] { return path.block.isInside(); }));
    this->stop(path);
    ASSERT_FALSE(path.block.wasCalledWrongly());
  }
  this->destroy(path);
  EXPECT_FALSE(path.block.wasCalledWrongly());
}

TYPED_TEST_P(AudioHardwareContract, EachStepOnSomethingThatIsNotThereIsAnErrorAndMakesNothing) {
  auto& hardware = this->hardware();
  IOProcID proc = 77;
  EXPECT_EQ(hardware.createIOProc(this->nobody, "contract", BlockUnderContract().block(), proc), badObjectError);
  EXPECT_EQ(proc, 77U);
  EXPECT_EQ(hardware.destroyIOProc(this->nobody, 1), badObjectError);
  EXPECT_EQ(hardware.startDevice(this->nobody, 1), badObjectError);
  EXPECT_EQ(hardware.stopDevice(this->nobody, 1, 1.0F), badObjectError);
  EXPECT_EQ(hardware.destroyAggregateDevice(this->nobody), badObjectError);
  EXPECT_EQ(hardware.destroyProcessTap(this->nobody), badObjectError);
  AudioObjectID device = 78;
  const auto unmade = this->tapOver(this->nobody);
  EXPECT_EQ(hardware.createAggregateDevice(this->aggregateOf(unmade, this->host_.speakers(), false), device),
            badObjectError);
  EXPECT_EQ(device, 78U);
}

TYPED_TEST_P(AudioHardwareContract, EachStepInTheWrongOrderIsAnErrorAndHurtsNothing) {
  CONTRACT_NEEDS(measureSpeakers);
  const auto application = this->launch(this->app);
  auto& hardware = this->hardware();
  auto path = this->build(application, 0.5F);
  IOProcID proc = 77;
  EXPECT_EQ(hardware.createIOProc(path.device, "contract", IOBlock(), proc), illegalOperationError);
  EXPECT_EQ(proc, 77U);
  EXPECT_EQ(hardware.startDevice(path.device, path.proc + 1), badObjectError);
  // A stop before the start, and a second one, do nothing; nor does a second start.
  EXPECT_EQ(hardware.stopDevice(path.device, path.proc, 1.0F), noErr);
  this->start(path);
  EXPECT_EQ(hardware.startDevice(path.device, path.proc), noErr);
  EXPECT_TRUE(this->isCalled(path));
  this->stop(path);
  EXPECT_EQ(hardware.stopDevice(path.device, path.proc, 1.0F), noErr);
  EXPECT_EQ(hardware.destroyIOProc(path.device, path.proc), noErr);
  EXPECT_EQ(hardware.destroyIOProc(path.device, path.proc), badObjectError);
  EXPECT_EQ(hardware.startDevice(path.device, path.proc), badObjectError);
  EXPECT_EQ(hardware.stopDevice(path.device, path.proc, 1.0F), badObjectError);
  EXPECT_EQ(hardware.destroyAggregateDevice(path.device), noErr);
  EXPECT_EQ(hardware.destroyAggregateDevice(path.device), badObjectError);
  std::uint32_t alive = 7;
  EXPECT_EQ(hardware.readUInt32(path.device, {audio::deviceIsAlive}, alive), badObjectError);
  EXPECT_EQ(hardware.destroyProcessTap(path.tap), noErr);
  EXPECT_EQ(hardware.destroyProcessTap(path.tap), badObjectError);
  EXPECT_TRUE(this->levelIs(this->host_.speakers(), 1.0F));
  EXPECT_FALSE(path.block.wasCalledWrongly());
}

TYPED_TEST_P(AudioHardwareContract, TornDownInAnyOrderTheApplicationIsHeardAsItIs) {
  CONTRACT_NEEDS(measureSpeakers);
  const auto application = this->launch(this->app);
  std::array<int, 4> order{0, 1, 2, 3};
  do {
    auto path = this->build(application, 0.5F);
    this->start(path);
    ASSERT_TRUE(this->isCalled(path));
    std::string told;
    for (const int step : order) {
      told += std::to_string(step);
      this->tearDown(path, step);
    }
    ASSERT_TRUE(this->levelIs(this->host_.speakers(), 1.0F)) << told;
    ASSERT_FALSE(path.block.wasCalledWrongly()) << told;
  } while (std::next_permutation(order.begin(), order.end()));
}

TYPED_TEST_P(AudioHardwareContract, ADeviceThatGoesUnderATapHurtsNothing) {
  CONTRACT_NEEDS(measureSpeakers);
  CONTRACT_NEEDS(measurePlugged);
  this->plug("contract-extra");
  const auto application = this->launch(this->app);
  auto path = this->build(application, 0.5F, "contract-extra");
  this->start(path);
  ASSERT_TRUE(this->levelIs("contract-extra", 0.5F));
  this->host_.unplug("contract-extra");
  EXPECT_TRUE(this->eventually([&] { return this->device("contract-extra") == 0; }));
  this->stop(path);
  this->destroy(path);
  EXPECT_TRUE(this->levelIs(this->host_.speakers(), 1.0F));
  EXPECT_FALSE(path.block.wasCalledWrongly());
}

TYPED_TEST_P(AudioHardwareContract, AnApplicationThatQuitsUnderATapHurtsNothing) {
  const auto application = this->launch(this->app);
  auto path = this->build(application, 0.5F);
  this->start(path);
  ASSERT_TRUE(this->isCalled(path));
  this->host_.quit(this->app);
  EXPECT_TRUE(this->eventually([&] { return this->process(this->app) == 0; }));
  this->stop(path);
  this->destroy(path);
  EXPECT_FALSE(path.block.wasCalledWrongly());
}

REGISTER_TYPED_TEST_SUITE_P(
    AudioHardwareContract, WhatASystemADeviceOrAProcessTellsAnewIsRaised,
    AnObjectThatIsNotThereHasNothingAndLeavesEveryResultUntouched,
    APropertyThatAnObjectHasNotIsAnErrorAndLeavesTheResultUntouched,
    AReadOfAnotherTypeIsAnErrorAndLeavesTheResultUntouched, WhatThereIsSaysSo,
    AListIsFourBytesAnEntryAndNamesNothingTwice, ADeviceTellsItsNamesThatItIsAliveAndHowItIsConnected,
    OnlyOutputsHaveOutputStreams, TheDefaultOutputAndVolumesAreSettableAndNothingElseIs,
    AProcessComesWithItsSoundSaysWhetherItPlaysAndGoesWithItsProgram, AnIdIsNeverAnothersEvenWhenItsObjectHasGone,
    AfterARestartEverythingHasTheIdItHad, ARestartIsNoChangeOfTheDevicesOrTheDefault,
    AListenerIsCalledWhereListenersAreRunAndNowhereElse, SeveralChangesMayBeToldAsOneAndTheLastIsRead,
    AListenerThatWasRemovedIsNotCalledEvenIfItsTurnHadCome, RemovingAStrangerDoesNothing,
    AListenerMayRemoveItselfAndOthersWhileItIsCalled, OnlyListenersOfWhatHasChangedAreCalled,
    ADefaultOutputThatIsWrittenIsReadBackAtOnceAndToldOnce, WhatIsNoOutputIsNotTakenAsTheDefault,
    ADefaultThatAnotherProgramMovesIsTold, ADefaultThatGoesIsNamedUntilAnotherHasTakenItsPlace,
    ADeviceThatGoesIsToldAndUnknownAfterwards, AVolumeThatIsWrittenIsReadBackAtOnceByElement,
    AnElementThatADeviceHasNotCannotBeReadOrWritten, AVolumeThatAnotherProgramMovesIsTold,
    WhatTheBlockMakesOfAnApplicationIsWhatIsHeard, OtherApplicationsAreNotTouched, ARouteIsHeardOnItsDeviceAlone,
    ATapIsStereoFloatAtARate, TheBlockRunsOnlyBetweenStartAndStop, AStopWaitsForACallThatIsUnderWay,
    EachStepOnSomethingThatIsNotThereIsAnErrorAndMakesNothing, EachStepInTheWrongOrderIsAnErrorAndHurtsNothing,
    TornDownInAnyOrderTheApplicationIsHeardAsItIs, ADeviceThatGoesUnderATapHurtsNothing,
    AnApplicationThatQuitsUnderATapHurtsNothing);

}  // namespace quillmere
