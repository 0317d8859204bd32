// What every answer to the workspace port must do, written once and run on each of them.
// A host offers `Workspace& workspace()`, `void launch(id, name, iconName, pid)`, which installs what it starts,
// `void terminate(id)`, and `void look()`; all return once the workspace can know and has told.
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "platform/Workspace.h"

namespace quillmere {

template <typename Host>
class WorkspaceContract : public ::testing::Test {
 protected:
  std::vector<std::string> identifiers() {
    std::vector<std::string> identifiers;
    for (const auto& application : host_.workspace().runningApplications()) {
      identifiers.push_back(application.bundleID.value_or("(none)"));
    }
    return identifiers;
  }

  Host host_;
};

TYPED_TEST_SUITE_P(WorkspaceContract);

TYPED_TEST_P(WorkspaceContract, NothingRunsWhereNothingWasLaunched) {
  EXPECT_TRUE(this->host_.workspace().runningApplications().empty());
}

TYPED_TEST_P(WorkspaceContract, AnApplicationIsToldWithIdentifierNameAndProcess) {
  this->host_.launch("org.example.Player", "Player", "player", 321);
  EXPECT_EQ(this->host_.workspace().runningApplications(),
            (std::vector<RunningApplication>{{"org.example.Player", "Player", 321}}));
}

TYPED_TEST_P(WorkspaceContract, TheOrderIsStableAndThatOfAppearance) {
  this->host_.launch("org.example.Zebra", "Zebra", "z", 900);
  this->host_.launch("org.example.Ant", "Ant", "a", 100);
  this->host_.launch("org.example.Mole", "Mole", "m", 500);
  const std::vector<std::string> expected{"org.example.Zebra", "org.example.Ant", "org.example.Mole"};
  EXPECT_EQ(this->identifiers(), expected);
  EXPECT_EQ(this->identifiers(), expected);
}

TYPED_TEST_P(WorkspaceContract, WhatHasEndedIsGone) {
  this->host_.launch("org.example.Player", "Player", "player", 321);
  this->host_.launch("org.example.Other", "Other", "other", 322);
  this->host_.terminate("org.example.Player");
  EXPECT_EQ(this->identifiers(), std::vector<std::string>{"org.example.Other"});
}

TYPED_TEST_P(WorkspaceContract, WhatComesAndWhatGoesIsRaisedOrHasToBeAskedFor) {
  const auto& changes = this->host_.workspace().changes();
  if (&changes == &ChangeSignal::absent()) GTEST_SKIP() << "this workspace can't tell and has to be asked";
  static_cast<void>(this->identifiers());
  auto before = changes.raises();
  this->host_.launch("org.example.Player", "Player", "player", 321);
  static_cast<void>(this->identifiers());
  EXPECT_GT(changes.raises(), before);
  before = changes.raises();
  this->host_.terminate("org.example.Player");
  static_cast<void>(this->identifiers());
  EXPECT_GT(changes.raises(), before);
}

TYPED_TEST_P(WorkspaceContract, IconsAreToldByIdentifier) {
  this->host_.launch("org.example.Player", "Player", "player", 321);
  EXPECT_EQ(this->host_.workspace().icon("org.example.Player"), IconReference(ThemedIcon{"player"}));
  EXPECT_EQ(this->host_.workspace().icon("org.example.None"), std::nullopt);
  EXPECT_EQ(this->host_.workspace().icon(""), std::nullopt);
}

TYPED_TEST_P(WorkspaceContract, WhatIsInstalledIsListedWithNameAndPlaceWhetherItRunsOrNot) {
  this->host_.launch("org.example.Player", "Player", "player", 321);
  this->host_.terminate("org.example.Player");
  const auto installed = this->host_.workspace().installedApplications();
  ASSERT_EQ(installed.size(), 1U);
  EXPECT_EQ(installed[0].bundleID, "org.example.Player");
  EXPECT_EQ(installed[0].name, "Player");
  EXPECT_FALSE(installed[0].path.empty());
}

TYPED_TEST_P(WorkspaceContract, AnInstalledApplicationIsFoundByIdentifierAndByPlace) {
  this->host_.launch("org.example.Player", "Player", "player", 321);
  this->host_.terminate("org.example.Player");
  const auto installed = this->host_.workspace().installedApplications();
  ASSERT_EQ(installed.size(), 1U);
  EXPECT_EQ(this->host_.workspace().installedApplication("org.example.Player"), installed[0]);
  EXPECT_EQ(this->host_.workspace().applicationAt(installed[0].path), installed[0]);
  EXPECT_EQ(this->host_.workspace().installedApplication("org.example.None"), std::nullopt);
  EXPECT_EQ(this->host_.workspace().installedApplication(""), std::nullopt);
  for (const auto* nothing : {"", "/", "/nowhere/at/all.desktop", "relative.desktop"}) {
    EXPECT_EQ(this->host_.workspace().applicationAt(nothing), std::nullopt) << nothing;
  }
}

TYPED_TEST_P(WorkspaceContract, ChangesAreToldOnceEach) {
  int told = 0;
  this->host_.launch("org.example.Player", "Player", "player", 321);
  this->host_.workspace().onApplicationsChanged([&] { ++told; });
  this->host_.look();
  EXPECT_EQ(told, 0) << "nothing has changed";
  this->host_.terminate("org.example.Player");
  EXPECT_EQ(told, 1);
  this->host_.look();
  EXPECT_EQ(told, 1);
  this->host_.workspace().onApplicationsChanged({});
  this->host_.launch("org.example.Player", "Player", "player", 322);
  EXPECT_EQ(told, 1) << "nobody listens any more";
}

TYPED_TEST_P(WorkspaceContract, AnEmptyAddressIsNotOpened) { EXPECT_FALSE(this->host_.workspace().openURL("")); }

REGISTER_TYPED_TEST_SUITE_P(WorkspaceContract, NothingRunsWhereNothingWasLaunched,
                            AnApplicationIsToldWithIdentifierNameAndProcess, TheOrderIsStableAndThatOfAppearance,
                            WhatHasEndedIsGone, WhatComesAndWhatGoesIsRaisedOrHasToBeAskedFor, IconsAreToldByIdentifier,
                            WhatIsInstalledIsListedWithNameAndPlaceWhetherItRunsOrNot,
                            AnInstalledApplicationIsFoundByIdentifierAndByPlace, ChangesAreToldOnceEach,
                            AnEmptyAddressIsNotOpened);

}  // namespace quillmere
