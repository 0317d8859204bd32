// The tabs of the listed browsers, and the way to one of them.
#include <utility>

#include "StateFixture.h"
#include "core/DuckRule.h"

namespace quillmere {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::Key;
using ::testing::SizeIs;

constexpr const char* safari = "com.apple.Safari";
constexpr const char* firefox = "org.mozilla.firefox";
constexpr const char* oneTab = "1\t1\t1\tExample\thttps://example.org\n";

class BrowserTabStream : public StateFixture {
 protected:
  /// The browsers that were asked since the last call, each as often as it was.
  std::vector<std::string> asked() {
    std::vector<std::string> bundleIDs;
    for (const auto& script : box->browsers.executed()) bundleIDs.push_back(script.request.bundleID);
    box->browsers.clearRecords();
    return bundleIDs;
  }
  /// One more poll.
  void poll() const { box->advanceSeconds(3); }
};

TEST_F(BrowserTabStream, TabsOfAListedBrowserShowWithTheFirstPollThatFindsItAndFollowItsOwn) {
  box->browsers.setText(chrome, oneTab);
  box->launch(chrome, "Chrome");
  box->start();
  poll();
  ASSERT_THAT(*state().browserTabs(), ElementsAre(Key(chrome)));
  EXPECT_THAT(state().browserTabs()->at(chrome),
              ElementsAre(BrowserTab{"com.google.Chrome:w1:t1", chrome, "Example", "https://example.org", true}));
  box->browsers.setText(chrome, "");
  poll();
  ASSERT_THAT(*state().browserTabs(), ElementsAre(Key(chrome)));
  EXPECT_THAT(state().browserTabs()->at(chrome), IsEmpty());
}

TEST_F(BrowserTabStream, AllFiveBrowsersAreAskedOnceEveryThreeSeconds) {
  for (const auto* bundleID :
       {chrome, "com.brave.Browser", "company.thebrowser.Browser", "com.microsoft.edgemac", safari}) {
    box->launch(bundleID, bundleID);
  }
  box->browsers.setTellsChanges(false);
  box->start();
  poll();
  asked();
  box->advanceSeconds(2.9);
  EXPECT_THAT(asked(), IsEmpty());
  box->advanceSeconds(0.1);
  EXPECT_THAT(asked(), ::testing::UnorderedElementsAre(chrome, "com.brave.Browser", "company.thebrowser.Browser",
                                                       "com.microsoft.edgemac", safari));
}

TEST_F(BrowserTabStream, ABrowserWhoseTabsStayIsNotAskedAgainUntilOneChanges) {
  box->browsers.setText(safari, oneTab);
  box->launch(safari, "Safari");
  box->start();
  poll();
  poll();
  asked();
  box->advanceSeconds(60.0);
  EXPECT_THAT(asked(), IsEmpty());
  box->browsers.setText(safari, "");
  poll();
  EXPECT_THAT(asked(), ElementsAre(safari));
}

TEST_F(BrowserTabStream, ABrowserOfAutoDuckThatHasNoScriptIsNotAsked) {
  EXPECT_TRUE(DuckRule::browserApps().contains(firefox));
  EXPECT_THAT(DuckRule::browserApps(), SizeIs(6));
  box->browsers.setText(firefox, oneTab);
  box->launch(firefox, "Firefox");
  box->start();
  poll();
  EXPECT_THAT(asked(), IsEmpty());
  EXPECT_THAT(*state().browserTabs(), IsEmpty());
}

TEST_F(BrowserTabStream, ABrowserThatIsNotListedIsNotAsked) {
  box->browsers.setText(safari, oneTab);
  box->start();
  poll();
  EXPECT_THAT(asked(), IsEmpty());
  EXPECT_THAT(*state().browserTabs(), IsEmpty());
}

TEST_F(BrowserTabStream, ABrowserThatQuitsTakesItsTabsWithinTwoPolls) {
  box->browsers.setText(chrome, oneTab);
  box->launch(chrome, "Chrome");
  box->start();
  poll();
  ASSERT_THAT(*state().browserTabs(), SizeIs(1));
  box->quit(chrome);
  poll();
  poll();
  EXPECT_THAT(*state().browserTabs(), IsEmpty());
}

TEST_F(BrowserTabStream, ABrowserThatFailsLosesItsTabsUntilItAnswersAgainAndTheOthersKeepTheirs) {
  box->browsers.setText(chrome, oneTab);
  box->browsers.setText(safari, oneTab);
  box->launch(chrome, "Chrome");
  box->launch(safari, "Safari");
  box->start();
  poll();
  ASSERT_THAT(*state().browserTabs(), SizeIs(2));
  box->browsers.failToExecute({std::nullopt, chrome}, {"Busy.", "", -1712});
  poll();
  EXPECT_THAT(*state().browserTabs(), ElementsAre(Key(safari)));
  poll();
  EXPECT_THAT(*state().browserTabs(), SizeIs(2));
}

TEST_F(BrowserTabStream, APollLikeTheLastOneTellsNobody) {
  box->browsers.setText(chrome, oneTab);
  box->launch(chrome, "Chrome");
  box->start();
  poll();
  int told = 0;
  const auto watch = state().browserTabs().observe([&](const auto&) { ++told; });
  poll();
  poll();
  EXPECT_EQ(told, 0);
  box->browsers.setText(chrome, "1\t1\t1\tAnother\thttps://example.org\n");
  poll();
  EXPECT_EQ(told, 1);
}

TEST_F(BrowserTabStream, TabsAreNotStoredAndTheEngineHearsNothingOfThem) {
  box->browsers.setText(chrome, oneTab);
  box->launch(chrome, "Chrome");
  box->start();
  forget();
  poll();
  EXPECT_THAT(disk.written(), IsEmpty());
  EXPECT_THAT(engineCalls(), IsEmpty());
}

TEST_F(BrowserTabStream, OnAMachineThatSpeaksToNoBrowserThereAreNoTabsAndNothingElseIsMissing) {
  box->machine.tabScripting.reset();
  box->launch(chrome, "Chrome");
  box->start();
  poll();
  EXPECT_THAT(*state().browserTabs(), IsEmpty());
  EXPECT_THAT(*state().apps(), SizeIs(1));
  state().activateTab(chrome, {});
  settle();
}

TEST_F(BrowserTabStream, AClickOnATabReachesItsBrowserAndChangesNothingHere) {
  box->browsers.setText(chrome, "1\t1\t1\tA\tu\n2\t5\t0\tB\tv\n");
  box->launch(chrome, "Chrome");
  box->start();
  poll();
  forget();
  const auto tabs = *state().browserTabs();
  state().activateTab(chrome, tabs.at(chrome).back());
  EXPECT_THAT(box->browsers.activations(), IsEmpty()) << "the main thread does not speak to the browser";
  settle();
  ASSERT_THAT(box->browsers.activations(), SizeIs(1));
  const auto request = box->browsers.activations().front().request;
  EXPECT_EQ(request.bundleID, chrome);
  EXPECT_EQ(request.window, 2);
  EXPECT_EQ(request.tab, 5);
  EXPECT_EQ(*state().browserTabs(), tabs);
  EXPECT_THAT(disk.written(), IsEmpty());
}

TEST_F(BrowserTabStream, ATabThatIsInNoListIsAskedForAllTheSame) {
  box->start();
  BrowserTab gone;
  gone.id = "com.google.Chrome:w3:t4";
  state().activateTab(chrome, gone);
  settle();
  ASSERT_THAT(box->browsers.activations(), SizeIs(1));
  EXPECT_EQ(box->browsers.activations().front().request.window, 3);
}

TEST_F(BrowserTabStream, TabsAreAskedForOnTheMainThreadAlone) {
  // A browser that notices on which thread it is asked.
  class Asking final : public TabScripting {
   public:
    Asking(Executor& main, int& queries) : main_(main), queries_(queries) {}
    std::unique_ptr<TabScript> compile(const TabRequest& /*request*/, std::string_view /*source*/) override {
      EXPECT_TRUE(main_.isCurrent());
      ++queries_;
      return nullptr;
    }

   private:
    Executor& main_;
    int& queries_;
  };
  int queries = 0;
  box->machine.tabScripting = std::make_unique<Asking>(box->time.main(), queries);
  box->launch(chrome, "Chrome");
  box->start();
  poll();
  poll();
  EXPECT_EQ(queries, 2);
}

}  // namespace
}  // namespace quillmere
