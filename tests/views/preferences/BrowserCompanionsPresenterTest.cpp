// The card of the browsers.
#include "views/preferences/BrowserCompanionsPresenter.h"

#include "../ViewsFixture.h"

namespace quillmere {
namespace {

class Browsers : public ViewsFixture {
 protected:
  void make() {
    card = std::make_unique<BrowserCompanionsPresenter>(services());
    settle();
  }
  void TearDown() override { card.reset(); }
  [[nodiscard]] QString text(int row, BrowserCompanionsPresenter::Role role) const {
    return card->data(card->index(row), role).toString();
  }
  [[nodiscard]] QString status(int row) const { return text(row, BrowserCompanionsPresenter::StatusRole); }
  [[nodiscard]] QString action(int row) const { return text(row, BrowserCompanionsPresenter::ActionRole); }
  [[nodiscard]] bool isConnected(int row) const {
    return card->data(card->index(row), BrowserCompanionsPresenter::ConnectedRole).toBool();
  }

  std::unique_ptr<BrowserCompanionsPresenter> card;
};

TEST_F(Browsers, WithoutABrowserThereIsNothing) {
  startViews();
  make();
  EXPECT_EQ(card->count(), 0);
  EXPECT_EQ(card->hint(), "");
}

TEST_F(Browsers, EachBrowserHasItsRow) {
  startViews();
  desktop.browserSetUp.setBrowsers({{"chrome", "Google Chrome", false}, {"chromium", "Chromium", true}});
  make();
  ASSERT_EQ(card->count(), 2);
  EXPECT_EQ(text(0, BrowserCompanionsPresenter::NameRole), "Google Chrome");
  EXPECT_EQ(status(0), "Not set up");
  EXPECT_EQ(action(0), "Set up");
  EXPECT_EQ(status(1), "Waits for its companion");
  EXPECT_EQ(action(1), "Remove");
  EXPECT_FALSE(isConnected(1));
}

TEST_F(Browsers, ACompanionThatIsConnectedIsShownAtItsOwnBrowser) {
  startViews();
  desktop.browserSetUp.setBrowsers({{"chrome", "Google Chrome", true}, {"chromium", "Chromium", true}});
  make();
  box->companions.set({{"chromium", "1.9.9", "1.9.9"}});
  EXPECT_EQ(status(1), "Connected");
  EXPECT_TRUE(isConnected(1));
  EXPECT_EQ(status(0), "Waits for its companion");
  box->companions.set({});
  EXPECT_EQ(status(1), "Waits for its companion");
}

TEST_F(Browsers, AnotherVersionOfEitherPartIsNamed) {
  startViews();
  desktop.browserSetUp.setBrowsers({{"chromium", "Chromium", true}});
  make();
  box->companions.set({{"chromium", "1.9.8", "1.9.9"}});
  EXPECT_EQ(status(0), "Connected, in another version: 1.9.8");
  box->companions.set({{"chromium", "1.9.9", "2.0"}});
  EXPECT_EQ(status(0), "Connected, in another version: 2.0");
  box->companions.set({{"chromium", "1.9.9", "1.9.9"}, {"chromium", "1.0", "1.9.9"}});
  EXPECT_EQ(status(0), "Connected, in another version: 1.0");
  EXPECT_TRUE(isConnected(0));
}

TEST_F(Browsers, TheButtonSetsUpAndTakesBack) {
  startViews();
  desktop.browserSetUp.setBrowsers({{"chromium", "Chromium", false}});
  make();
  card->act(0);
  settle();
  EXPECT_EQ(status(0), "Waits for its companion");
  card->act(0);
  settle();
  EXPECT_EQ(status(0), "Not set up");
  card->act(1);
  card->act(-1);
}

TEST_F(Browsers, WhatTheSystemHasSetUpHasNoButton) {
  startViews();
  desktop.browserSetUp.setBrowsers({{"chromium", "Chromium", true, true}});
  make();
  EXPECT_EQ(status(0), "Waits for its companion");
  EXPECT_EQ(action(0), "");
  card->act(0);
  settle();
  EXPECT_TRUE(desktop.browserSetUp.browsers().front().hasHost);
}

TEST_F(Browsers, TheWayToLoadTheCompanionIsToldWhileABrowserWaitsForIt) {
  startViews();
  desktop.browserSetUp.setBrowsers({{"chromium", "Chromium", false}});
  make();
  EXPECT_EQ(card->hint(), "");
  card->act(0);
  settle();
  EXPECT_TRUE(card->hint().contains("chrome://extensions"));
  EXPECT_TRUE(card->hint().contains("/usr/share/quillmere/extension"));
  box->companions.set({{"chromium", "1.9.9", "1.9.9"}});
  EXPECT_EQ(card->hint(), "");
}

TEST_F(Browsers, ARowThatChangesKeepsItsPlaceInTheView) {
  startViews();
  desktop.browserSetUp.setBrowsers({{"chromium", "Chromium", true}});
  make();
  int resets = 0;
  int changes = 0;
  QObject::connect(card.get(), &QAbstractItemModel::modelReset, card.get(), [&] { ++resets; });
  QObject::connect(card.get(), &QAbstractItemModel::dataChanged, card.get(), [&] { ++changes; });
  box->companions.set({{"chromium", "1.9.9", "1.9.9"}});
  EXPECT_EQ(resets, 0);
  EXPECT_EQ(changes, 1);
}

}  // namespace
}  // namespace quillmere
