// The browsers' tabs on their way to the windows, and a click on its way back.
#include <cstdint>
#include <nlohmann/json.hpp>
#include <string>
#include <utility>
#include <vector>

#include "RemoteFixture.h"
#include "platform/Channel.h"
#include "remote/wire/BoundedTabs.h"

namespace quillmere {
namespace {

using nlohmann::json;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::SizeIs;

class TabsAcross : public RemoteFixture {
 protected:
  TabsAcross() {
    box->launch(chrome, "Chrome");
    box->start();
    box->advanceSeconds(3);
    connect();
  }
  /// The browser has `count` tabs, each with this title and address, and a poll has found them. What it sent is kept in
  /// `bytes`.
  void open(int count, const std::string& title, const std::string& address = "https://example.org/") {
    std::string text;
    for (int tab = 1; tab <= count; ++tab) {
      text.append("1\t")
          .append(std::to_string(tab))
          .append("\t0\t")
          .append(title)
          .append("\t")
          .append(address)
          .append("\n");
    }
    box->browsers.setText(chrome, text);
    box->advanceSeconds(3);
    bytes = 0;
    for (const auto& message : toRemote) bytes += message.size();
    deliver();
  }
  [[nodiscard]] const std::vector<BrowserTab>& here() const { return state().browserTabs()->at(chrome); }
  [[nodiscard]] const std::vector<BrowserTab>& there() const { return remote->browserTabs()->at(chrome); }

  std::size_t bytes = 0;
};

TEST_F(TabsAcross, TabsOfAnOrdinaryLengthArriveAsTheyAre) {
  open(500, "Example – שלום 🎧 <b>\t", "https://www.example.org/path?query=a|b#part");
  ASSERT_THAT(there(), SizeIs(500));
  EXPECT_EQ(there(), here());
}

TEST_F(TabsAcross, FiveHundredEndlessTitlesAreTakenShortenedAndTheLineStands) {
  const auto endless = "beginning " + std::string(100000, 'x') + " end";
  open(500, endless, "https://example.org/" + endless);
  ASSERT_THAT(here(), SizeIs(500));
  EXPECT_EQ(here().front().title, endless) << "the mixer's own list is the browser's";
  ASSERT_THAT(there(), SizeIs(500));
  EXPECT_LT(bytes, std::size_t{2} << 20U);
  for (std::size_t tab = 0; tab < 500; ++tab) {
    EXPECT_EQ(there()[tab].id, here()[tab].id);
    EXPECT_LE(there()[tab].title.size(), 1024U);
    EXPECT_TRUE(there()[tab].title.starts_with("beginning xxx"));
    EXPECT_TRUE(there()[tab].title.ends_with("xxx end"));
    EXPECT_LE(there()[tab].urlString.size(), 1024U);
    EXPECT_TRUE(there()[tab].urlString.starts_with("https://example.org/beginning"));
  }
}

TEST_F(TabsAcross, AnEndlessAddressUnderAShortTitleIsShortenedToo) {
  open(500, "Picture", "data:image/png;base64," + std::string(100000, 'A'));
  ASSERT_THAT(there(), SizeIs(500));
  EXPECT_LE(there().front().urlString.size(), 1024U);
  EXPECT_EQ(there().front().title, "Picture");
}

TEST_F(TabsAcross, OfVeryManyTabsEachTitleGetsItsShare) {
  open(10000, std::string(2000, 'x'));
  ASSERT_THAT(there(), SizeIs(10000));
  EXPECT_LT(bytes, Channel::largestMessage / 2);
  EXPECT_GT(there().front().title.size(), 100U);
}

TEST_F(TabsAcross, WhatIsBeyondAllMeasureStaysHere) {
  open(100000, std::string(2000, 'x'));
  EXPECT_THAT(here(), SizeIs(100000));
  ASSERT_THAT(there(), SizeIs(wire::mostTabs));
  EXPECT_EQ(there().back().id, here()[wire::mostTabs - 1].id);
  EXPECT_LT(bytes, Channel::largestMessage / 2);
}

TEST_F(TabsAcross, TheMeasureIsOfAllBrowsersTogether) {
  BrowserTabs tabs;
  for (const auto* bundleID : {"a", "b"}) {
    tabs[bundleID].resize(15000, BrowserTab{"id", bundleID, std::string(5000, 'x'), std::string(5000, 'y'), false});
  }
  const auto form = wire::boundedForm(tabs);
  EXPECT_EQ(form.at("a").size(), 15000U);
  EXPECT_EQ(form.at("b").size(), 5000U);
  EXPECT_LT(encodeMessage(form).size(), Channel::largestMessage / 2);
}

TEST_F(TabsAcross, AWindowThatComesLaterGetsThemInTheSameMeasure) {
  open(500, std::string(100000, 'x'));
  host.reset();
  connect();
  ASSERT_THAT(there(), SizeIs(500));
  EXPECT_LE(there().front().title.size(), 1024U);
}

TEST_F(TabsAcross, AWindowThatWasBehindGetsThemInTheSameMeasure) {
  isBehind = true;
  open(500, std::string(100000, 'x'));
  EXPECT_THAT(*remote->browserTabs(), ElementsAre(::testing::Key(chrome)));
  EXPECT_THAT(there(), IsEmpty());
  isBehind = false;
  host->catchUp();
  deliver();
  ASSERT_THAT(there(), SizeIs(500));
  EXPECT_LE(there().front().title.size(), 1024U);
}

TEST_F(TabsAcross, AClickInTheWindowsReachesTheBrowser) {
  open(3, "A");
  remote->activateTab(chrome, there()[1]);
  deliver();
  settle();
  ASSERT_THAT(box->browsers.activations(), SizeIs(1));
  const auto request = box->browsers.activations().front().request;
  EXPECT_EQ(request.bundleID, chrome);
  EXPECT_EQ(request.window, 1);
  EXPECT_EQ(request.tab, 2);
}

TEST_F(TabsAcross, AClickOnATabWithAnEndlessTitleReachesTheBrowser) {
  open(3, std::string(100000, 'x'));
  remote->activateTab(chrome, there()[2]);
  EXPECT_LT(toMixer.front().size(), 4096U);
  deliver();
  settle();
  ASSERT_THAT(box->browsers.activations(), SizeIs(1));
  EXPECT_EQ(box->browsers.activations().front().request.tab, 3);
}

TEST_F(TabsAcross, AClickInAnotherFormIsLoggedAndReachesNobody) {
  const json tab{{"id", "x:w1:t1"}, {"browserBundleID", chrome}, {"title", ""}, {"urlString", ""}, {"isActive", true}};
  auto withoutAnId = tab;
  withoutAnId.erase("id");
  auto withANumber = tab;
  withANumber["id"] = 7;
  for (const auto& arguments :
       {json::array(), json::array({chrome}), json::array({chrome, "x:w1:t1"}), json::array({7, tab}),
        json::array({chrome, withoutAnId}), json::array({chrome, withANumber}), json("none")}) {
    box->log.clear();
    EXPECT_TRUE(host->take({{"type", "call"}, {"name", "activateTab"}, {"arguments", arguments}})) << arguments;
    EXPECT_EQ(box->log.lines().size(), 1U) << arguments;
  }
  settle();
  EXPECT_THAT(box->browsers.activations(), IsEmpty());
  // Later clicks are not harmed.
  deliver();
  EXPECT_TRUE(host->take({{"type", "call"}, {"name", "activateTab"}, {"arguments", json::array({chrome, tab})}}));
  settle();
  EXPECT_THAT(box->browsers.activations(), SizeIs(1));
}

TEST_F(TabsAcross, AMemberThatIsNotKnownHereIsNoHindrance) {
  const json tab{{"id", "x:w1:t4"}, {"browserBundleID", chrome}, {"title", ""},
                 {"urlString", ""}, {"isActive", true},          {"favicon", json::array({1, 2})}};
  EXPECT_TRUE(host->take({{"type", "call"}, {"name", "activateTab"}, {"arguments", json::array({chrome, tab, 9})}}));
  settle();
  ASSERT_THAT(box->browsers.activations(), SizeIs(1));
  EXPECT_EQ(box->browsers.activations().front().request.tab, 4);
}

TEST_F(TabsAcross, TabsInAnotherFormAreLoggedAndThoseThatWereThereStay) {
  open(2, "A");
  const auto before = *remote->browserTabs();
  for (const auto& value : {json(7), json::array({1}), json{{chrome, "none"}}, json{{chrome, json::array({7})}},
                            json{{chrome, json::array({json{{"id", "x"}}})}}}) {
    box->log.clear();
    EXPECT_TRUE(remote->take({{"type", "field"}, {"name", "browserTabs"}, {"value", value}})) << value;
    EXPECT_EQ(box->log.lines().size(), 1U) << value;
    EXPECT_EQ(*remote->browserTabs(), before);
  }
}

TEST_F(TabsAcross, BytesThatAreNoUtf8Cross) {
  open(1, "broken \xC3\x28\xFF title");
  EXPECT_EQ(there(), here());
}

TEST_F(TabsAcross, APollLikeTheLastOneSendsNothing) {
  open(500, "A");
  box->advanceSeconds(30);
  EXPECT_TRUE(toRemote.empty());
}

}  // namespace
}  // namespace quillmere
