// The mixer followed and driven from another process, without the process.
#include "remote/RemoteState.h"

#include <algorithm>
#include <limits>
#include <nlohmann/json.hpp>

#include "RemoteFixture.h"

namespace quillmere {
namespace {

using nlohmann::json;

class Remote : public RemoteFixture {};

TEST_F(Remote, KnowsEveryFieldFromTheStart) {
  startWithThree();
  state().setGain(0.3F, spotify);
  state().toggleMute(zoom);
  state().setRouting("speakers", editor);
  state().addProfile("Evening");
  state().startSleepTimer(30);
  state().startPomodoroFocus();
  microphone(zoom, true);
  connect();
  EXPECT_FALSE(remote->apps()->empty());
  EXPECT_FALSE(remote->outputDevices()->empty());
  EXPECT_NE(remote->pomodoroPhase()->kind, PomodoroPhase::Kind::idle);
  expectSame(state(), *remote);
}

TEST_F(Remote, FollowsEveryChange) {
  startWithThree();
  connect();
  int told = 0;
  const auto subscription = remote->apps().observe([&](const auto&) { ++told; });
  state().setGain(0.3F, spotify);
  state().setMasterGain(0.25F);
  state().toggleWhisperMode();
  microphone(zoom, true);
  deliver();
  EXPECT_GT(told, 0);
  expectSame(state(), *remote);
}

TEST_F(Remote, NothingIsSentWhileNothingChanges) {
  startWithThree();
  connect();
  box->advanceSeconds(30.0);
  EXPECT_TRUE(toRemote.empty());
}

TEST_F(Remote, ProcessesThatHaveComeAndGoneLeaveNothingBehind) {
  startWithThree();
  connect();
  const auto held = [this] {
    std::size_t count = 0;
    state().visitFields([&](const char*, const auto& field) { count += field.heldObservers(); });
    return count;
  };
  const auto heldByOne = held();
  for (int process = 0; process < 100; ++process) {
    host.reset();
    connect();
  }
  EXPECT_EQ(held(), heldByOne);
}

TEST_F(Remote, EveryOperationReachesTheMixer) {
  startWithThree();
  const auto profilesBefore = state().profiles()->size();
  connect();
  remote->setGain(0.5F, spotify);
  remote->toggleMute(zoom);
  remote->setRouting("headphones", editor);
  remote->setRouting(std::nullopt, editor);
  remote->setRouting("speakers", zoom);
  remote->setMasterGain(0.4F);
  remote->completeOnboarding();
  remote->setOutputDeviceUID("speakers");
  auto rule = *remote->duckRule();
  rule.targetGain = 0.125F;
  rule.triggerBundleIDs = {editor};
  remote->setDuckRule(rule);
  remote->setFocusCandidateBundleIDs({spotify, zoom});
  remote->setPauseOnHeadphoneDisconnect(false);
  remote->setPomodoroFocusMinutes(45);
  remote->setPomodoroBreakMinutes(7);
  remote->setPomodoroFocusBundleID(spotify);
  remote->addProfile("Evening");
  remote->startSleepTimer(30);
  remote->toggleWhisperMode();
  remote->startPomodoroFocus();
  deliver();
  expectSame(state(), *remote);
  EXPECT_TRUE(app(state(), zoom).muted);
  EXPECT_EQ(app(state(), zoom).routedDeviceUID, "speakers");
  EXPECT_FALSE(app(state(), editor).routedDeviceUID);
  EXPECT_TRUE(*state().hasCompletedOnboarding());
  EXPECT_EQ(*state().outputDeviceUID(), "speakers");
  EXPECT_EQ(*state().duckRule(), rule);
  EXPECT_EQ(*state().focusCandidateBundleIDs(), (std::set<std::string>{spotify, zoom}));
  EXPECT_FALSE(*state().pauseOnHeadphoneDisconnect());
  EXPECT_EQ(*state().pomodoroFocusMinutes(), 45);
  EXPECT_EQ(*state().pomodoroBreakMinutes(), 7);
  EXPECT_EQ(*state().pomodoroFocusBundleID(), spotify);
  EXPECT_TRUE(*state().isWhisperMode());
  EXPECT_TRUE(state().sleepTimerEndsAt()->has_value());
  EXPECT_EQ(state().pomodoroPhase()->kind, PomodoroPhase::Kind::focus);
  ASSERT_EQ(state().profiles()->size(), profilesBefore + 1);

  auto profile = state().profiles()->back();
  remote->applyProfile(profile.id);
  remote->duplicateProfile(profile.id);
  profile.name = "Late evening";
  remote->updateProfile(profile);
  remote->cancelSleepTimer();
  remote->skipPomodoroToBreak();
  deliver();
  EXPECT_EQ(*state().activeProfileID(), profile.id);
  EXPECT_EQ(state().profiles()->size(), profilesBefore + 2);
  EXPECT_EQ(std::count_if(state().profiles()->begin(), state().profiles()->end(),
                          [](const Profile& each) { return each.name == "Late evening"; }),
            1);
  EXPECT_FALSE(state().sleepTimerEndsAt()->has_value());
  box->advanceSeconds(1.0);
  EXPECT_EQ(state().pomodoroPhase()->kind, PomodoroPhase::Kind::rest);
  remote->skipPomodoroToIdle();
  remote->deleteProfile(profile.id);
  deliver();
  box->advanceSeconds(1.0);
  deliver();
  EXPECT_EQ(state().pomodoroPhase()->kind, PomodoroPhase::Kind::idle);
  EXPECT_EQ(state().profiles()->size(), profilesBefore + 1);
  remote->startPomodoroFocus();
  remote->cancelPomodoro(true);
  deliver();
  EXPECT_EQ(state().pomodoroPhase()->kind, PomodoroPhase::Kind::idle);
  expectSame(state(), *remote);
}

TEST_F(Remote, ALevelMovesAtOnce) {
  startWithThree();
  connect();
  remote->setGain(0.5F, spotify);
  remote->setMasterGain(0.25F);
  EXPECT_EQ(app(*remote, spotify).gain, 0.5F);
  EXPECT_EQ(*remote->masterGain(), 0.25F);
}

TEST_F(Remote, AnEarlierLevelThatComesLateDoesNotPullTheSliderBack) {
  startWithThree();
  connect();
  std::vector<float> seen;
  const auto subscription = remote->apps().observe([&](const auto&) { seen.push_back(app(*remote, spotify).gain); });
  remote->setGain(0.5F, spotify);
  performOne();
  remote->setGain(0.6F, spotify);
  while (!toRemote.empty()) takeOne();
  deliver();
  EXPECT_EQ(seen, (std::vector<float>{0.5F, 0.6F}));
  EXPECT_EQ(app(state(), spotify).gain, 0.6F);
}

TEST_F(Remote, WhatIsHeldBackWhileALevelIsOnItsWayArrivesWithIt) {
  startWithThree();
  connect();
  remote->setGain(0.5F, spotify);
  // The same moment, elsewhere: someone else moves another level.
  state().setGain(0.9F, zoom);
  while (!toRemote.empty()) takeOne();
  EXPECT_EQ(app(*remote, spotify).gain, 0.5F);
  deliver();
  EXPECT_EQ(app(*remote, spotify).gain, 0.5F);
  EXPECT_EQ(app(*remote, zoom).gain, 0.9F);
  expectSame(state(), *remote);
}

TEST_F(Remote, ALevelThatChangesNothingStillLetsLaterNewsThrough) {
  startWithThree();
  connect();
  const auto gain = app(state(), spotify).gain;
  remote->setGain(gain, spotify);
  state().setGain(0.2F, zoom);
  deliver();
  EXPECT_EQ(app(*remote, zoom).gain, 0.2F);
}

TEST_F(Remote, WhatIsAssignedIsSoAtOnce) {
  startWithThree();
  connect();
  auto rule = *remote->duckRule();
  rule.targetGain = 0.125F;
  remote->setDuckRule(rule);
  remote->setFocusCandidateBundleIDs({spotify});
  remote->setPauseOnHeadphoneDisconnect(false);
  remote->setPomodoroFocusMinutes(45);
  remote->setPomodoroBreakMinutes(7);
  remote->setPomodoroFocusBundleID(zoom);
  remote->setScrollOverRowAdjustsVolume(false);
  remote->setShowDuckBanner(false);
  remote->setOutputDeviceUID("speakers");
  EXPECT_EQ(*remote->duckRule(), rule);
  EXPECT_EQ(*remote->focusCandidateBundleIDs(), std::set<std::string>{spotify});
  EXPECT_FALSE(*remote->pauseOnHeadphoneDisconnect());
  EXPECT_EQ(*remote->pomodoroFocusMinutes(), 45);
  EXPECT_EQ(*remote->pomodoroBreakMinutes(), 7);
  EXPECT_EQ(*remote->pomodoroFocusBundleID(), zoom);
  EXPECT_FALSE(*remote->scrollOverRowAdjustsVolume());
  EXPECT_FALSE(*remote->showDuckBanner());
  EXPECT_EQ(*remote->outputDeviceUID(), "speakers");
  deliver();
  expectSame(state(), *remote);
}

TEST_F(Remote, OfTwoChangesOfTheRuleInOneMomentNeitherUndoesTheOther) {
  startWithThree();
  connect();
  for (const auto& bundleID : {spotify, editor}) {
    auto rule = *remote->duckRule();
    rule.triggerBundleIDs.insert(bundleID);
    remote->setDuckRule(rule);
  }
  deliver();
  EXPECT_TRUE(state().duckRule()->triggerBundleIDs.contains(spotify));
  EXPECT_TRUE(state().duckRule()->triggerBundleIDs.contains(editor));
  expectSame(state(), *remote);
}

TEST_F(Remote, AnEarlierAssignmentThatComesLateDoesNotPullALaterOneBack) {
  startWithThree();
  connect();
  std::vector<int> seen;
  const auto subscription = remote->pomodoroFocusMinutes().observe([&](int minutes) { seen.push_back(minutes); });
  remote->setPomodoroFocusMinutes(30);
  performOne();
  remote->setPomodoroFocusMinutes(31);
  while (!toRemote.empty()) takeOne();
  deliver();
  EXPECT_EQ(seen, (std::vector<int>{30, 31}));
  EXPECT_EQ(*state().pomodoroFocusMinutes(), 31);
}

TEST_F(Remote, WhatIsNotBeingSetIsToldWhileSomethingElseIs) {
  startWithThree();
  connect();
  remote->setPomodoroFocusMinutes(30);
  state().setMasterGain(0.25F);
  while (!toRemote.empty()) takeOne();
  EXPECT_EQ(*remote->masterGain(), 0.25F);
  EXPECT_EQ(*remote->pomodoroFocusMinutes(), 30);
}

TEST_F(Remote, AnUnknownApplicationsLevelIsNobodys) {
  startWithThree();
  connect();
  const auto before = *remote->apps();
  remote->setGain(0.5F, "org.example.gone");
  deliver();
  EXPECT_EQ(*remote->apps(), before);
}

TEST_F(Remote, NumbersAndTextsArriveAsTheyWere) {
  const std::string odd = "broken \xFF\xFE utf";
  box->launch(odd, odd);
  startWithThree();
  state().setGain(0.1F, spotify);
  connect();
  EXPECT_EQ(app(*remote, odd).name, odd);
  EXPECT_EQ(app(*remote, spotify).gain, 0.1F);
  remote->setGain(std::numeric_limits<float>::infinity(), odd);
  deliver();
  EXPECT_EQ(app(state(), odd).gain, std::numeric_limits<float>::infinity());
}

TEST_F(Remote, BadMessagesAreLoggedAndChangeNothing) {
  startWithThree();
  connect();
  const auto before = *state().apps();
  for (const auto& bad : {
           json{{"type", "call"}},
           json{{"type", "call"}, {"name", 7}, {"arguments", json::array()}},
           json{{"type", "call"}, {"name", "explode"}, {"arguments", json::array()}},
           json{{"type", "call"}, {"name", "setGain"}, {"arguments", json::array({0.5})}},
           json{{"type", "call"}, {"name", "setGain"}, {"arguments", json::array({"loud", spotify})}},
           json{{"type", "call"}, {"name", "deleteProfile"}, {"arguments", json::array({"not an identity"})}},
       }) {
    box->log.clear();
    EXPECT_TRUE(host->take(bad)) << bad;
    EXPECT_EQ(box->log.lines().size(), 1U) << bad;
  }
  for (const auto& notOurs : {json(), json(7), json::array(), json{{"type", 7}}, json{{"type", "other"}}}) {
    EXPECT_FALSE(host->take(notOurs)) << notOurs;
    EXPECT_FALSE(remote->take(notOurs)) << notOurs;
  }
  for (const auto& bad : {
           json{{"type", "fields"}},
           json{{"type", "fields"}, {"values", {{"apps", "none"}}}},
           json{{"type", "field"}, {"name", "pomodoroPhase"}, {"value", json::array({9, 0.0})}},
           json{{"type", "field"}, {"name", "masterGain"}},
           json{{"type", "field"}, {"name", "colour"}, {"value", 1}},
       }) {
    box->log.clear();
    EXPECT_TRUE(remote->take(bad)) << bad;
    EXPECT_EQ(box->log.lines().size(), 1U) << bad;
  }
  EXPECT_EQ(*state().apps(), before);
  EXPECT_EQ(*remote->apps(), before);
}

TEST_F(Remote, AMessageWithOneUnreadableValueLosesThatValueOnly) {
  startWithThree();
  connect();
  auto values = json::object();
  values["apps"] = json::array({{{"bundleID", 7}}});
  values["isDucking"] = true;
  values["pomodoroPhase"] = "soon";
  values["whisperLevel"] = 0.25;
  const auto before = *remote->apps();
  box->log.clear();
  EXPECT_TRUE(remote->take({{"type", "fields"}, {"values", values}}));
  EXPECT_EQ(*remote->apps(), before);
  EXPECT_TRUE(*remote->isDucking());
  EXPECT_EQ(*remote->whisperLevel(), 0.25F);
  EXPECT_EQ(remote->pomodoroPhase()->kind, PomodoroPhase::Kind::idle);
  EXPECT_EQ(box->log.lines().size(), 2U);
}

TEST_F(Remote, AnUnreadableValueThatWasHeldBackLosesNoOtherOne) {
  startWithThree();
  connect();
  remote->setMasterGain(0.5F);
  EXPECT_TRUE(remote->take({{"type", "field"}, {"name", "apps"}, {"value", "none"}}));
  EXPECT_TRUE(remote->take({{"type", "field"}, {"name", "masterGain"}, {"value", 0.75}}));
  EXPECT_TRUE(remote->take({{"type", "performed"}}));
  EXPECT_EQ(*remote->masterGain(), 0.75F);
  EXPECT_FALSE(remote->apps()->empty());
}

TEST_F(Remote, OneThatIsBehindIsToldOnlyHowThingsHaveComeToBe) {
  startWithThree();
  connect();
  isBehind = true;
  for (int step = 0; step < 1000; ++step) {
    state().setGain(0.001F * static_cast<float>(step), spotify);
    state().setMasterGain(0.001F * static_cast<float>(step));
  }
  state().toggleWhisperMode();
  EXPECT_TRUE(toRemote.empty());
  isBehind = false;
  host->catchUp();
  EXPECT_LE(toRemote.size(), 4U);
  deliver();
  expectSame(state(), *remote);
  state().setMasterGain(0.75F);
  EXPECT_EQ(toRemote.size(), 1U) << "all is as before";
}

TEST_F(Remote, OneThatFallsBehindAgainWhileItCatchesUpGetsTheRestLater) {
  startWithThree();
  connect();
  isBehind = true;
  state().setGain(0.25F, spotify);
  state().setMasterGain(0.5F);
  host->catchUp();
  EXPECT_TRUE(toRemote.empty());
  isBehind = false;
  host->catchUp();
  deliver();
  expectSame(state(), *remote);
}

TEST_F(Remote, ALevelOfOneThatIsBehindIsNotPulledBackByAnOlderOne) {
  startWithThree();
  connect();
  isBehind = true;
  state().setGain(0.25F, zoom);
  remote->setGain(0.5F, spotify);
  performOne();
  EXPECT_TRUE(toRemote.empty()) << "not even that the call is over";
  isBehind = false;
  host->catchUp();
  ASSERT_EQ(toRemote.size(), 2U);
  EXPECT_EQ(decodeMessage(toRemote.back()).value().at("type"), "performed") << "after what it has changed";
  deliver();
  expectSame(state(), *remote);
}

TEST_F(Remote, BytesThatAreNoMessageAreNone) {
  EXPECT_FALSE(decodeMessage(""));
  EXPECT_FALSE(decodeMessage("\xFF\xFF\xFF"));
  EXPECT_FALSE(decodeMessage(encodeMessage(json{{"type", "call"}}).substr(0, 5)));
}

TEST_F(Remote, BytesMadeToTakeAReadersStackAreNoMessage) {
  constexpr std::size_t many = std::size_t{1} << 20U;
  EXPECT_FALSE(decodeMessage(std::string(many, '\x81')).has_value()) << "lists in one another";
  EXPECT_FALSE(decodeMessage(std::string(many, '\x7F')).has_value()) << "texts in pieces, in one another";
  EXPECT_FALSE(decodeMessage(std::string(many, '\xC0')).has_value()) << "tags of tags";
  EXPECT_FALSE(decodeMessage(std::string("\x9B\xFF\xFF\xFF\xFF\xFF\xFF\xFF\xFF", 9)).has_value()) << "an endless list";
  EXPECT_FALSE(decodeMessage(std::string("\x01\x01", 2)).has_value()) << "two messages";
  auto deep = json::array();
  for (int level = 0; level < 40; ++level) deep = json::array({deep});
  EXPECT_EQ(decodeMessage(encodeMessage(deep)), deep);
}

TEST_F(Remote, ANumberOfAnotherKindIsRefusedAndNotTakenForAnother) {
  startWithThree();
  connect();
  const auto call = [this](const char* name, const json& value) {
    EXPECT_TRUE(host->take({{"type", "call"}, {"name", name}, {"arguments", {value}}}));
  };
  for (const json& minutes : {json(true), json(1.5), json(1e300), json(std::int64_t{1} << 40), json("9")}) {
    call("setPomodoroFocusMinutes", minutes);
    EXPECT_EQ(*state().pomodoroFocusMinutes(), 25) << minutes;
  }
  for (const json& pauses : {json(0), json(nullptr)}) {
    call("setPauseOnHeadphoneDisconnect", pauses);
    EXPECT_TRUE(*state().pauseOnHeadphoneDisconnect()) << pauses;
  }
  call("setMasterGain", true);
  EXPECT_NE(*state().masterGain(), 1.0F);
  call("setPomodoroFocusMinutes", 9);
  EXPECT_EQ(*state().pomodoroFocusMinutes(), 9);
}

TEST_F(Remote, AProfileThatHoldsAnApplicationTwiceIsRefusedAtTheBorder) {
  startWithThree();
  state().addProfile("Evening");
  connect();
  auto profile = state().profiles()->back();
  profile.apps.push_back(profile.apps.front());
  remote->updateProfile(profile);
  deliver();
  EXPECT_EQ(state().profiles()->back().apps.size(), 3U);
  remote->applyProfile(profile.id);
  deliver();
  EXPECT_EQ(*state().activeProfileID(), profile.id) << "the mixer is still there";
}

TEST_F(Remote, AMixerThatEndsMoreCallsThanWereSentDoesNotUndoTheNextOne) {
  startWithThree();
  connect();
  for (int time = 0; time < 3; ++time) EXPECT_TRUE(remote->take({{"type", "performed"}}));
  remote->setMasterGain(0.25F);
  EXPECT_TRUE(remote->take({{"type", "field"}, {"name", "masterGain"}, {"value", 0.5}}));
  EXPECT_EQ(*remote->masterGain(), 0.25F) << "older news";
  deliver();
  EXPECT_EQ(*remote->masterGain(), 0.25F);
}

}  // namespace
}  // namespace quillmere
