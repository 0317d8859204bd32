// The first run, step by step.
#include "views/onboarding/OnboardingPresenter.h"

#include <QSignalSpy>

#include "../ViewsFixture.h"
#include "views/preferences/PreferencesCanvasPresenter.h"

namespace quillmere {
namespace {

class FirstRun : public ViewsFixture {
 protected:
  void make() {
    startViews();
    onboarding = std::make_unique<OnboardingPresenter>(services());
    onboarding->setVisible(true);
    settle();
  }
  void TearDown() override { onboarding.reset(); }

  std::unique_ptr<OnboardingPresenter> onboarding;
};

TEST_F(FirstRun, BeginsWithTheGreetingAndNoWayBack) {
  make();
  EXPECT_EQ(onboarding->step(), OnboardingPresenter::Welcome);
  EXPECT_FALSE(onboarding->canGoBack());
  EXPECT_EQ(OnboardingPresenter::stepCount(), 2);
  onboarding->back();
  EXPECT_EQ(onboarding->step(), OnboardingPresenter::Welcome);
}

TEST_F(FirstRun, GoesForthAndBack) {
  make();
  onboarding->next();
  EXPECT_EQ(onboarding->step(), OnboardingPresenter::Permissions);
  EXPECT_TRUE(onboarding->canGoBack());
  onboarding->back();
  EXPECT_EQ(onboarding->step(), OnboardingPresenter::Welcome);
  EXPECT_FALSE(*state().hasCompletedOnboarding());
}

TEST_F(FirstRun, LastStepCompletesItAndTellsWhoeverWaits) {
  make();
  onboarding->next();
  EXPECT_EQ(onboardingsFinished, 0);
  onboarding->next();
  EXPECT_TRUE(*state().hasCompletedOnboarding());
  EXPECT_EQ(disk.boolean("quillmere.onboardingCompleted"), true);
  EXPECT_EQ(onboardingsFinished, 1);
}

TEST_F(FirstRun, FlagIsSetBeforeAnybodyIsTold) {
  startViews();
  auto told = services();
  bool wasComplete = false;
  told.intents.onboardingFinished = [&] { wasComplete = *state().hasCompletedOnboarding(); };
  OnboardingPresenter first(told);
  first.next();
  first.next();
  EXPECT_TRUE(wasComplete);
}

TEST_F(FirstRun, PermissionsAreOptional) {
  desktop.permissions.setFocus(FocusAuthorization::denied);
  make();
  onboarding->next();
  onboarding->next();
  EXPECT_EQ(onboardingsFinished, 1);
}

TEST_F(FirstRun, PermissionThatIsGivenMeanwhileIsSeen) {
  make();
  onboarding->next();
  EXPECT_FALSE(onboarding->permissions()->accessibility()->isGranted());
  desktop.permissions.setTrusted(true);
  box->advanceSeconds(0.6);
  EXPECT_TRUE(onboarding->permissions()->accessibility()->isGranted());
}

TEST_F(FirstRun, SettingsPageThatComesAndGoesMeanwhileLeavesTheCardsFollowing) {
  make();
  std::make_unique<PreferencesCanvasPresenter>(services()).reset();
  settle();
  desktop.permissions.setTrusted(true);
  box->advanceSeconds(0.6);
  EXPECT_TRUE(onboarding->permissions()->accessibility()->isGranted());
}

TEST_F(FirstRun, HiddenWindowAsksNobody) {
  make();
  onboarding->setVisible(false);
  const auto before = desktop.permissions.reads();
  box->advanceSeconds(5);
  EXPECT_EQ(desktop.permissions.reads(), before);
}

}  // namespace
}  // namespace quillmere
