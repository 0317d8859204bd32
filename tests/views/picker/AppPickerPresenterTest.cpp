// The picker of applications: what it lists, and what it hands on.
#include "views/picker/AppPickerPresenter.h"

#include <QSignalSpy>

#include "../ViewsFixture.h"

namespace quillmere {
namespace {

class AppPickerSheet : public ViewsFixture {
 protected:
  void make() {
    startViews();
    picker = std::make_unique<AppPickerPresenter>(services());
  }
  void show(std::set<std::string> existing = {}) {
    picker->show(std::move(existing), [this](const InstalledApp& app) { picked.push_back(app); });
  }
  void TearDown() override { picker.reset(); }
  void install(const std::string& bundleID, const std::string& name) {
    desktop.workspace.install(bundleID, name, "/apps/" + bundleID);
  }
  [[nodiscard]] QVariant value(int row, int role) const {
    return picker->apps()->data(picker->apps()->index(row), role);
  }
  /// "Running: Name" and "Installed: Name".
  [[nodiscard]] QStringList rows() const {
    QStringList shown;
    QString section;
    for (int row = 0; row < picker->apps()->count(); ++row) {
      const auto heading = value(row, AppPickerModel::HeadingRole).toString();
      // A section has one heading.
      if (!heading.isEmpty()) {
        EXPECT_NE(heading, section);
        section = heading;
      }
      shown.append(section + ": " + value(row, AppPickerModel::NameRole).toString());
    }
    return shown;
  }

  std::unique_ptr<AppPickerPresenter> picker;
  std::vector<InstalledApp> picked;
};

TEST_F(AppPickerSheet, RunningApplicationsAreThereAtOnceAndInstalledOnesFollow) {
  desktop.workspace.launch("org.example.b", "Beta", 1);
  desktop.workspace.launch("org.example.a", "Alpha", 2);
  install("org.example.d", "Delta");
  install("org.example.c", "Gamma");
  make();
  show();
  EXPECT_TRUE(picker->isOpen());
  EXPECT_EQ(rows(), QStringList({"Running: Beta", "Running: Alpha"}));
  settle();
  EXPECT_EQ(rows(), QStringList({"Running: Beta", "Running: Alpha", "Installed: Delta", "Installed: Gamma"}));
}

TEST_F(AppPickerSheet, WhatRunsIsNotListedAsInstalledToo) {
  desktop.workspace.launch("org.example.a", "Alpha", 1);
  install("org.example.a", "Alpha");
  make();
  show();
  settle();
  EXPECT_EQ(rows(), QStringList({"Running: Alpha"}));
  EXPECT_EQ(picker->resultText(), "1 result");
}

TEST_F(AppPickerSheet, RunningProcessWithoutAnIdentifierIsNotListed) {
  desktop.workspace.setRunningApplications({{std::nullopt, "Nameless", 1}, {"org.example.a", "Alpha", 2}});
  make();
  show();
  EXPECT_EQ(rows(), QStringList({"Running: Alpha"}));
}

TEST_F(AppPickerSheet, FilterLooksInNamesAndIdentifiersIgnoringCase) {
  desktop.workspace.launch("com.acme.player", "Player", 1);
  install("org.example.Sound", "Noise");
  install("org.example.other", "Music Box");
  make();
  show();
  settle();
  picker->setQuery("MUSIC");
  EXPECT_EQ(rows(), QStringList({"Installed: Music Box"}));
  picker->setQuery("com.acme");
  EXPECT_EQ(rows(), QStringList({"Running: Player"}));
  picker->setQuery("sound");
  EXPECT_EQ(rows(), QStringList({"Installed: Noise"}));
  picker->setQuery("");
  EXPECT_EQ(picker->apps()->count(), 3);
}

TEST_F(AppPickerSheet, FilterFindsNamesInOtherScripts) {
  install("org.example.a", "ÖLÜM Müzik");
  install("org.example.b", "Ωmega");
  make();
  show();
  settle();
  picker->setQuery("öLÜm");
  EXPECT_EQ(rows(), QStringList({"Installed: ÖLÜM Müzik"}));
  picker->setQuery("ω");
  EXPECT_EQ(rows(), QStringList({"Installed: Ωmega"}));
}

TEST_F(AppPickerSheet, WhatRunsButDoesNotMatchIsNotListedAsInstalled) {
  desktop.workspace.launch("org.example.a", "Runs as this", 1);
  install("org.example.a", "Installed as that");
  make();
  show();
  settle();
  picker->setQuery("installed as");
  EXPECT_EQ(rows(), QStringList());
}

TEST_F(AppPickerSheet, ResultsAreCountedInTheRightNumber) {
  install("org.example.a", "Alpha");
  install("org.example.b", "Beta");
  make();
  show();
  EXPECT_EQ(picker->resultText(), "0 results");
  settle();
  EXPECT_EQ(picker->resultText(), "2 results");
  picker->setQuery("alpha");
  EXPECT_EQ(picker->resultText(), "1 result");
}

TEST_F(AppPickerSheet, EmptyListSaysWhetherItIsStillBeingFilled) {
  make();
  show();
  EXPECT_EQ(picker->emptyText(), "Scanning Applications…");
  settle();
  EXPECT_EQ(picker->emptyText(), "No apps match.");
}

TEST_F(AppPickerSheet, PickedApplicationIsHandedOnAndTheSheetCloses) {
  install("org.example.a", "Alpha");
  make();
  show();
  settle();
  picker->pick(0);
  ASSERT_EQ(picked.size(), 1U);
  EXPECT_EQ(picked[0], (InstalledApp{"org.example.a", "Alpha", "/apps/org.example.a", false}));
  EXPECT_FALSE(picker->isOpen());
}

TEST_F(AppPickerSheet, ApplicationThatIsThereAlreadyStaysListedMarkedAndDead) {
  install("org.example.a", "Alpha");
  make();
  show({"org.example.a"});
  settle();
  EXPECT_TRUE(value(0, AppPickerModel::AddedRole).toBool());
  picker->pick(0);
  EXPECT_TRUE(picked.empty());
  EXPECT_TRUE(picker->isOpen());
}

TEST_F(AppPickerSheet, RowThatIsNotThereIsNotPicked) {
  make();
  show();
  settle();
  picker->pick(-1);
  picker->pick(0);
  EXPECT_TRUE(picked.empty());
  EXPECT_TRUE(picker->isOpen());
}

TEST_F(AppPickerSheet, ClosingDropsTheScan) {
  install("org.example.a", "Alpha");
  make();
  show();
  picker->close();
  settle();
  EXPECT_EQ(picker->apps()->count(), 0);
  EXPECT_FALSE(picker->isOpen());
}

TEST_F(AppPickerSheet, PickerThatGoesWhileItScansIsForgotten) {
  install("org.example.a", "Alpha");
  make();
  show();
  picker.reset();
  settle();
  EXPECT_TRUE(picked.empty());
}

TEST_F(AppPickerSheet, OpensAnewWithAnEmptyFilterAndOtherMarks) {
  install("org.example.a", "Alpha");
  install("org.example.b", "Beta");
  make();
  show({"org.example.a"});
  settle();
  picker->setQuery("beta");
  picker->close();
  show();
  EXPECT_EQ(picker->query(), "");
  settle();
  EXPECT_EQ(rows(), QStringList({"Installed: Alpha", "Installed: Beta"}));
  EXPECT_FALSE(value(0, AppPickerModel::AddedRole).toBool());
}

TEST_F(AppPickerSheet, ApplicationThatStartsMeanwhileMovesToTheRunningOnes) {
  install("org.example.a", "Alpha");
  make();
  show();
  settle();
  desktop.workspace.launch("org.example.a", "Alpha", 1);
  desktop.workspace.tellApplicationsChanged();
  EXPECT_EQ(rows(), QStringList({"Running: Alpha"}));
}

TEST_F(AppPickerSheet, BrowsedFileOfAnApplicationIsHandedOn) {
  make();
  show();
  settle();
  // Installed where nobody looks.
  install("org.example.hidden", "Hidden");
  picker->browse();
  settle();
  ASSERT_TRUE(desktop.chooser.isOpen());
  desktop.chooser.answer("/apps/org.example.hidden");
  settle();
  ASSERT_EQ(picked.size(), 1U);
  EXPECT_EQ(picked[0], (InstalledApp{"org.example.hidden", "Hidden", "/apps/org.example.hidden", false}));
  EXPECT_FALSE(picker->isOpen());
}

TEST_F(AppPickerSheet, CancelledDialogueChangesNothing) {
  make();
  show();
  picker->browse();
  settle();
  desktop.chooser.answer(std::nullopt);
  settle();
  EXPECT_TRUE(picked.empty());
  EXPECT_TRUE(picker->isOpen());
}

TEST_F(AppPickerSheet, BrowsedFileThatIsNoApplicationChangesNothing) {
  make();
  show();
  picker->browse();
  settle();
  desktop.chooser.answer("/etc/passwd");
  settle();
  EXPECT_TRUE(picked.empty());
  EXPECT_TRUE(picker->isOpen());
}

TEST_F(AppPickerSheet, FileThatIsChosenAfterTheSheetHasGoneIsDropped) {
  make();
  install("org.example.hidden", "Hidden");
  show();
  picker->browse();
  settle();
  picker->close();
  desktop.chooser.answer("/apps/org.example.hidden");
  settle();
  EXPECT_TRUE(picked.empty());
}

TEST_F(AppPickerSheet, DialogueThatWasLeftOpenIsTheNextSheets) {
  make();
  install("org.example.hidden", "Hidden");
  show();
  picker->browse();
  settle();
  picker->close();
  show();
  picker->browse();
  settle();
  ASSERT_TRUE(desktop.chooser.isOpen());
  desktop.chooser.answer("/apps/org.example.hidden");
  settle();
  ASSERT_EQ(picked.size(), 1U);
  EXPECT_FALSE(picker->isOpen());
}

TEST_F(AppPickerSheet, RowsThatStayAreToldOfNothing) {
  desktop.workspace.launch("org.example.a", "Alpha", 1);
  install("org.example.b", "Beta");
  make();
  show();
  QSignalSpy resets(picker->apps(), &QAbstractItemModel::modelReset);
  QSignalSpy removals(picker->apps(), &QAbstractItemModel::rowsRemoved);
  settle();
  EXPECT_EQ(resets.count(), 0);
  EXPECT_EQ(removals.count(), 0);
}

}  // namespace
}  // namespace quillmere
