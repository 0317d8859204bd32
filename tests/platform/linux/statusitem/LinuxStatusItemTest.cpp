// The status item on a bus of the test's own, with a panel of all manners.
#include "platform/linux/LinuxStatusItem.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <atomic>
#include <thread>

#include "MenuSamples.h"
#include "support/FakePanel.h"
#include "support/PostBox.h"
#include "support/PrivateBus.h"
#include "support/RecordingLogSink.h"

namespace quillmere {
namespace {

using support::FakePanel;

constexpr const char* itemPath = "/StatusNotifierItem";
constexpr const char* itemInterface = "org.kde.StatusNotifierItem";
constexpr const char* menuPath = "/MenuBar";
constexpr const char* menuInterface = "com.canonical.dbusmenu";

std::string printed(const std::shared_ptr<GVariant>& value) {
  if (!value) return "null";
  char* text = g_variant_print(value.get(), FALSE);
  std::string copy = text;
  g_free(text);
  return copy;
}

class StatusItemOnABus : public ::testing::Test {
 protected:
  void make(std::optional<std::string> address = std::nullopt) {
    LinuxStatusItemOptions options;
    options.currentDesktop = "KDE";
    options.busAddress = address ? *address : bus_.address();
    options.firstAnswer = firstAnswer_;
    options.longestQuestion = longestQuestion_;
    options.retryPeriod = std::chrono::milliseconds(20);
    options.longestAnswer = longestAnswer_;
    item_ = std::make_unique<LinuxStatusItem>(main_, log_, options);
    item_->onAvailabilityChanged([this](bool isAvailable) { availability_.push_back(isAvailable); });
    item_->onActivated([this](const StatusItemActivation& activation) { activations_.push_back(activation); });
    item_->onMenuItemChosen([this](int id, const std::string& token) { chosen_.emplace_back(id, token); });
    item_->onScroll([this](int delta) { scrolled_.push_back(delta); });
    item_->setMenu(samples::menu());
  }
  /// An item in a panel.
  void show() {
    panel_.comeAsWatcher();
    make();
    item_->show();
    ASSERT_TRUE(becomes([&] { return panel_.registrations().size() == 1 && item_->isAvailable(); }));
  }
  bool becomes(const std::function<bool()>& condition) { return main_.becomes(condition); }
  /// What the host's calls so far have set off has reached the main thread: another call has gone all the way.
  void settle() {
    const auto before = activations_.size();
    panel_.callItem("Activate", "(7, 7)");
    ASSERT_TRUE(becomes([&] { return activations_.size() > before; }));
  }
  std::string labelOf(int id) {
    return printed(panel_.callMenu("GetProperty", "(" + std::to_string(id) + ", 'label')").value);
  }
  /// Of the first icon's most opaque pixel, which is one of the drawing and none of an outline: red.
  int iconInk() {
    const auto pixmaps = panel_.propertyValue(itemPath, itemInterface, "IconPixmap");
    GVariant* pixels = nullptr;
    g_variant_get_child(pixmaps.get(), 0, "(ii@ay)", nullptr, nullptr, &pixels);
    gsize size = 0;
    const auto* bytes = static_cast<const std::uint8_t*>(g_variant_get_fixed_array(pixels, &size, 1));
    int red = -1;
    int most = 0;
    for (gsize at = 0; at + 1 < size; at += 4) {
      if (bytes[at] > most) {
        most = bytes[at];
        red = bytes[at + 1];
      }
    }
    g_variant_unref(pixels);
    return red;
  }

  support::PrivateBus bus_;
  FakePanel panel_{bus_.address()};
  support::RecordingLogSink log_;
  support::PostBox main_;
  /// Long, so that no test depends on how busy the machine is.
  Duration firstAnswer_ = std::chrono::minutes(5);
  Duration longestQuestion_ = std::chrono::minutes(5);
  Duration longestAnswer_ = std::chrono::minutes(5);
  std::vector<bool> availability_;
  std::vector<StatusItemActivation> activations_;
  std::vector<std::pair<int, std::string>> chosen_;
  std::vector<int> scrolled_;
  std::unique_ptr<LinuxStatusItem> item_;
};

TEST_F(StatusItemOnABus, RegistersWithThePanelAndShowsItself) {
  show();
  EXPECT_EQ(panel_.registrations()[0], "org.kde.StatusNotifierItem-" + std::to_string(::getpid()) + "-1");
  EXPECT_EQ(availability_, std::vector{true});
  const auto property = [&](const char* name) { return panel_.property(itemPath, itemInterface, name); };
  EXPECT_EQ(property("Category"), "'ApplicationStatus'");
  EXPECT_EQ(property("Id"), "'quillmere'");
  EXPECT_EQ(property("Title"), "'quillmere'");
  EXPECT_EQ(property("Status"), "'Active'");
  EXPECT_EQ(property("IconName"), "''");
  EXPECT_EQ(property("ItemIsMenu"), "false");
  EXPECT_EQ(property("WindowId"), "0");
  EXPECT_EQ(property("Menu"), "'/MenuBar'");
  EXPECT_EQ(property("ToolTip"), "('', [], 'quillmere', '')");
  EXPECT_EQ(property("AttentionIconPixmap"), "[]");
  EXPECT_EQ(panel_.property(menuPath, menuInterface, "Version"), "3");
  EXPECT_EQ(panel_.property(menuPath, menuInterface, "Status"), "'normal'");
  EXPECT_EQ(panel_.property(menuPath, menuInterface, "TextDirection"), "'ltr'");
  EXPECT_EQ(panel_.property(menuPath, menuInterface, "IconThemePath"), "[]");
  EXPECT_TRUE(log_.lines().empty());
}

TEST_F(StatusItemOnABus, AllPropertiesCanBeReadAtOnce) {
  show();
  for (const auto& [path, interface] : {std::pair(itemPath, itemInterface), std::pair(menuPath, menuInterface)}) {
    const auto answer =
        panel_.call(path, "org.freedesktop.DBus.Properties", "GetAll", "('" + std::string(interface) + "',)");
    EXPECT_EQ(answer.error, "");
  }
}

TEST_F(StatusItemOnABus, DoesNotRegisterBeforeItIsShown) {
  panel_.comeAsWatcher();
  make();
  ASSERT_TRUE(becomes([&] { return item_->isAvailable(); }));
  EXPECT_TRUE(panel_.registrations().empty());
  item_->show();
  EXPECT_TRUE(becomes([&] { return panel_.registrations().size() == 1; }));
  item_->show();
  settle();
  EXPECT_EQ(panel_.registrations().size(), 1U) << "shown is shown";
}

TEST_F(StatusItemOnABus, ThePanelThatComesLaterIsFound) {
  make();
  item_->show();
  ASSERT_TRUE(becomes([&] { return availability_ == std::vector{false}; }));
  panel_.comeAsWatcher();
  EXPECT_TRUE(becomes([&] { return availability_ == std::vector{false, true}; }));
  EXPECT_TRUE(becomes([&] { return panel_.registrations().size() == 1; }));
}

TEST_F(StatusItemOnABus, AWatcherWithoutAHostIsNoPanelUntilOneComes) {
  panel_.comeAsWatcher(false);
  make();
  item_->show();
  ASSERT_TRUE(becomes([&] { return availability_ == std::vector{false}; }));
  ASSERT_TRUE(becomes([&] { return panel_.registrations().size() == 1; })) << "the host is to find it there";
  panel_.setHost(true);
  ASSERT_TRUE(becomes([&] { return item_->isAvailable(); }));
  panel_.setHost(false);
  EXPECT_TRUE(becomes([&] { return availability_ == std::vector{false, true, false}; }));
  EXPECT_EQ(panel_.registrations().size(), 1U);
}

TEST_F(StatusItemOnABus, RegistersAnewWithEveryPanelThatTakesThePlace) {
  show();
  for (std::size_t round = 0; round < 3; ++round) {
    panel_.leaveAsWatcher();
    ASSERT_TRUE(becomes([&] { return !item_->isAvailable(); }));
    panel_.comeAsWatcher();
    ASSERT_TRUE(becomes([&] { return item_->isAvailable() && panel_.registrations().size() == 1; }));
  }
  EXPECT_EQ(availability_, (std::vector{true, false, true, false, true, false, true}));
  settle();
}

TEST_F(StatusItemOnABus, AnotherConnectionMayTakeThePlaceAtOnce) {
  show();
  FakePanel other(bus_.address());
  // Queued for the name: it gets it the moment the first one goes.
  other.comeAsWatcher();
  panel_.leaveAsWatcher();
  EXPECT_TRUE(becomes([&] { return other.registrations().size() == 1 && item_->isAvailable(); }));
}

TEST_F(StatusItemOnABus, ARefusalIsLoggedAndTriedAgainWithTheNextHost) {
  panel_.setRefuses(true);
  panel_.comeAsWatcher(false);
  make();
  item_->show();
  ASSERT_TRUE(becomes([&] { return log_.count("refused") == 1; }));
  panel_.setRefuses(false);
  panel_.setHost(true);
  EXPECT_TRUE(becomes([&] { return panel_.registrations().size() == 1; }));
}

TEST_F(StatusItemOnABus, AWatcherThatIsSlowToAnswerHasRefusedNothing) {
  panel_.setSilent();
  panel_.comeAsWatcher();
  longestAnswer_ = std::chrono::milliseconds(100);
  make();
  item_->show();
  ASSERT_TRUE(becomes([&] { return log_.count("is slow to answer") == 1; }));
  EXPECT_EQ(log_.count("refused"), 0);
  // Nor is it asked a second time by the next news of a host.
  panel_.setHost(true);
  ASSERT_TRUE(becomes([&] { return item_->isAvailable(); }));
  panel_.callItem("Activate", "(7, 7)");
  ASSERT_TRUE(becomes([&] { return !activations_.empty(); }));
  EXPECT_EQ(panel_.registrations().size(), 1U);
}

TEST_F(StatusItemOnABus, WhereItsNameIsTakenTheConnectionsOwnServes) {
  FakePanel namesake(bus_.address());
  namesake.takeName("org.kde.StatusNotifierItem-" + std::to_string(::getpid()) + "-1");
  show();
  EXPECT_TRUE(panel_.registrations()[0].starts_with(":"));
  settle();
}

TEST_F(StatusItemOnABus, AClickComesWithItsPlaceAndTheTokenThatWentBeforeIt) {
  show();
  panel_.callItem("ProvideXdgActivationToken", "('token-1',)");
  panel_.callItem("Activate", "(1180, 20)");
  panel_.callItem("SecondaryActivate", "(-5, 3)");
  panel_.callItem("ContextMenu", "(1, 2)");
  panel_.callItem("Activate", "(0, 0)");
  ASSERT_TRUE(becomes([&] { return activations_.size() == 3; }));
  EXPECT_EQ(activations_[0], (StatusItemActivation{StatusItemPoint{1180, 20}, "token-1"}));
  EXPECT_EQ(activations_[1], (StatusItemActivation{StatusItemPoint{-5, 3}, ""})) << "a token is good for one click";
  EXPECT_EQ(activations_[2], StatusItemActivation()) << "nought is no place";
}

TEST_F(StatusItemOnABus, ATokenNobodyCouldPassOnIsDropped) {
  show();
  panel_.callItem("ProvideXdgActivationToken", "('" + std::string(100000, 'x') + "',)");
  panel_.callItem("Activate", "(1, 1)");
  ASSERT_TRUE(becomes([&] { return activations_.size() == 1; }));
  EXPECT_EQ(activations_[0].activationToken, "");
}

TEST_F(StatusItemOnABus, TheWheelCountsUpAndDownButNotSideways) {
  show();
  panel_.callItem("Scroll", "(120, 'vertical')");
  panel_.callItem("Scroll", "(240, 'horizontal')");
  panel_.callItem("Scroll", "(-15, 'vertical')");
  panel_.callItem("Scroll", "(1, 'sideways')");
  panel_.callItem("Scroll", "(0, 'vertical')");
  settle();
  EXPECT_EQ(scrolled_, (std::vector{120, -15}));
}

TEST_F(StatusItemOnABus, TheWheelIsUnderstoodFromEveryKindOfPanel) {
  show();
  // Steps, positive towards the user.
  panel_.callItem("Scroll", "(-1, 'vertical')");
  panel_.callItem("Scroll", "(2, 'vertical')");
  // Angles, positive away from the user, fine ones too.
  panel_.callItem("Scroll", "(120, 'Vertical')");
  panel_.callItem("Scroll", "(-8, 'Vertical')");
  settle();
  EXPECT_EQ(scrolled_, (std::vector{120, -240, 120, -8}));
}

TEST_F(StatusItemOnABus, AWheelThatNobodyCanTurnSoFarIsHeldBack) {
  show();
  panel_.callItem("Scroll", "(2147483647, 'vertical')");
  panel_.callItem("Scroll", "(-2147483648, 'vertical')");
  settle();
  EXPECT_EQ(scrolled_, (std::vector{12000, -12000}));
}

TEST_F(StatusItemOnABus, TheToolTipIsToldWhenItChanges) {
  show();
  item_->setToolTip("50 %");
  ASSERT_TRUE(becomes([&] { return panel_.signalCount("NewToolTip") == 1; }));
  EXPECT_EQ(panel_.property(itemPath, itemInterface, "ToolTip"), "('', [], '50 %', '')");
  item_->setToolTip("50 %");
  item_->setToolTip("broken \xC3");
  ASSERT_TRUE(becomes([&] { return panel_.signalCount("NewToolTip") == 2; }));
  EXPECT_EQ(panel_.property(itemPath, itemInterface, "ToolTip"), "('', [], 'broken \xEF\xBF\xBD', '')");
}

TEST_F(StatusItemOnABus, TheMenuIsReadAsAHostReadsIt) {
  show();
  const auto answer = panel_.callMenu("GetLayout", "(0, -1, ['label', 'toggle-state'])");
  ASSERT_EQ(answer.error, "");
  const auto text = printed(answer.value);
  EXPECT_NE(text.find("(1, {'label': <'Open Window'>}"), std::string::npos) << text;
  EXPECT_NE(text.find("(8, {'label': <'Morning'>, 'toggle-state': <0>}"), std::string::npos) << text;
  EXPECT_NE(text.find("(9, {'label': <'Rock & Roll__2'>, 'toggle-state': <1>}"), std::string::npos) << text;
  EXPECT_EQ(printed(panel_.callMenu("GetLayout", "(4, 0, ['label'])").value),
            "(2, (4, {'label': <'Sleep Timer'>}, []))");
  EXPECT_EQ(printed(panel_.callMenu("GetGroupProperties", "([10, 99], ['label'])").value),
            "([(10, {'label': <'Quit'>})],)");
  EXPECT_EQ(printed(panel_.callMenu("GetProperty", "(1, 'shortcut')").value), "(<[['Control', '0']]>,)");
}

TEST_F(StatusItemOnABus, AnEntryThatIsClickedIsChosen) {
  show();
  panel_.callItem("ProvideXdgActivationToken", "('token-2',)");
  EXPECT_EQ(panel_.callMenu("Event", "(9, 'clicked', <''>, uint32 1234)").error, "");
  EXPECT_EQ(printed(panel_
                        .callMenu("EventGroup",
                                  "([(1, 'clicked', <0>, uint32 0), (77, 'clicked', <0>, 0), "
                                  "(10, 'hovered', <0>, 0)],)")
                        .value),
            "([77],)");
  settle();
  EXPECT_EQ(chosen_, (std::vector<std::pair<int, std::string>>{{9, "token-2"}, {1, ""}}));
}

TEST_F(StatusItemOnABus, WhatCannotBeChosenIsNot) {
  show();
  auto items = samples::menu();
  items[5].isEnabled = false;
  item_->setMenu(items);
  ASSERT_TRUE(becomes([&] { return panel_.signalCount("ItemsPropertiesUpdated") == 1; }));
  for (const int id : {0, 2, 4, 10}) {
    EXPECT_EQ(panel_.callMenu("Event", "(" + std::to_string(id) + ", 'clicked', <''>, uint32 0)").error, "");
  }
  settle();
  EXPECT_TRUE(chosen_.empty());
}

TEST_F(StatusItemOnABus, ATitleIsToldAsAPropertyAndAListAsALayout) {
  show();
  auto items = samples::menu();
  items[3].title = "Sleep Timer · 12:34";
  item_->setMenu(items);
  ASSERT_TRUE(becomes([&] { return panel_.signalCount("ItemsPropertiesUpdated") == 1; }));
  EXPECT_EQ(labelOf(4), "(<'Sleep Timer · 12:34'>,)");
  items[3].children = {samples::action(11, "Cancel sleep timer")};
  item_->setMenu(items);
  // Signals come in the order in which they were sent: had the title made a layout, there would be two by now.
  ASSERT_TRUE(becomes([&] { return panel_.signalCount("LayoutUpdated") >= 1; }));
  ASSERT_EQ(panel_.signals().size(), 2U);
  EXPECT_EQ(panel_.signals()[0].body, "([(4, {'label': <'Sleep Timer · 12:34'>})], [])");
  EXPECT_EQ(panel_.signals()[1].body, "(3, 4)");
  EXPECT_EQ(printed(panel_.callMenu("GetLayout", "(4, 1, ['label'])").value),
            "(3, (4, {'label': <'Sleep Timer · 12:34'>}, [<(11, {'label': <'Cancel sleep timer'>}, @av [])>]))");
}

TEST_F(StatusItemOnABus, TheMenuIsBroughtUpToDateBeforeTheHostIsAnswered) {
  show();
  int asked = 0;
  item_->onMenuAboutToShow([&] {
    auto items = samples::menu();
    items[3].title = "Sleep Timer · " + std::to_string(++asked);
    if (asked == 2) items.pop_back();
    item_->setMenu(items);
  });
  // The main loop runs beside the host's waiting call.
  std::atomic<bool> isOver = false;
  std::string first;
  std::string second;
  std::string label;
  std::thread host([&] {
    first = printed(panel_.callMenu("AboutToShow", "(0,)").value);
    label = labelOf(4);
    second = printed(panel_.callMenu("AboutToShowGroup", "([0, 4, 55],)").value);
    isOver = true;
  });
  EXPECT_TRUE(becomes([&] { return isOver.load(); }));
  host.join();
  EXPECT_EQ(asked, 2);
  EXPECT_EQ(label, "(<'Sleep Timer · 1'>,)");
  EXPECT_EQ(first, "(false,)") << "a title is told by a signal";
  EXPECT_EQ(second, "([0, 4], [55])") << "the list has changed";
}

TEST_F(StatusItemOnABus, AHostIsAnsweredThoughTheMainThreadIsBusy) {
  longestQuestion_ = std::chrono::milliseconds(10);
  show();
  // Nobody runs the main loop here.
  EXPECT_EQ(printed(panel_.callMenu("AboutToShow", "(0,)").value), "(false,)");
}

TEST_F(StatusItemOnABus, OpenedIsEnoughToHaveTheMenuBroughtUpToDate) {
  show();
  int asked = 0;
  item_->onMenuAboutToShow([&] { ++asked; });
  panel_.callMenu("Event", "(0, 'opened', <''>, uint32 0)");
  EXPECT_TRUE(becomes([&] { return asked == 1; }));
}

TEST_F(StatusItemOnABus, GarbageFromAHostIsRefusedAndForgotten) {
  show();
  const std::vector<std::pair<const char*, std::string>> calls{
      {"GetLayout", "(99, -1, @as [])"},
      {"GetLayout", "('nought', -1, @as [])"},
      {"GetLayout", "(-2147483648, -2147483648, ['label'])"},
      {"GetLayout", "@() ()"},
      {"GetGroupProperties", "(@ai [], 5)"},
      {"GetProperty", "(0, '')"},
      {"GetProperty", "(99, 'label')"},
      {"GetProperty", "(1, 'no such thing')"},
      {"Event", "(99, 'clicked', <''>, uint32 0)"},
      {"Event", "(-1, 'clicked', <''>, uint32 0)"},
      {"Event", "(9, 'clicked')"},
      {"Event", "('9', 'clicked', <''>, uint32 0)"},
      {"EventGroup", "(['clicked'],)"},
      {"AboutToShow", "(1234,)"},
      {"AboutToShow", "('0',)"},
      {"Explode", "@() ()"},
  };
  for (const auto& [method, arguments] : calls) {
    const auto answer = panel_.callMenu(method, arguments);
    EXPECT_FALSE(answer.value) << method << arguments;
    EXPECT_TRUE(answer.error.starts_with("org.freedesktop.DBus.Error.")) << answer.error;
  }
  EXPECT_EQ(panel_.callMenu("GetLayout", "(0, -99, ['no such thing'])").error, "");
  EXPECT_EQ(panel_.callMenu("Event", "(9, 'jumped upon', <(1, 'x')>, uint32 0)").error, "");
  for (const auto* arguments : {"('here', 'there')", "@() ()", "(1,)"}) {
    EXPECT_NE(panel_.callItem("Activate", arguments).error, "");
  }
  EXPECT_NE(panel_.callItem("Scroll", "('far', 'vertical')").error, "");
  settle();
  EXPECT_TRUE(chosen_.empty());
  EXPECT_TRUE(scrolled_.empty());
  EXPECT_EQ(activations_.size(), 1U) << "the one that settled it";
}

TEST_F(StatusItemOnABus, TheIconAndTheMarkFollowTheDesktop) {
  show();
  EXPECT_EQ(iconInk(), 0xF2) << "without a word the panel is likely to be dark";
  const auto mark = printed(panel_.callMenu("GetProperty", "(3, 'icon-data')").value);
  panel_.comeAsPortal(2);
  ASSERT_TRUE(becomes([&] { return panel_.signalCount("NewIcon") == 1; }));
  EXPECT_EQ(iconInk(), 0x24);
  panel_.changeColorScheme(1);
  ASSERT_TRUE(becomes([&] { return panel_.signalCount("NewIcon") == 2; }));
  EXPECT_EQ(iconInk(), 0xF2);
  ASSERT_TRUE(becomes([&] { return panel_.signalCount("ItemsPropertiesUpdated") == 2; }));
  EXPECT_NE(printed(panel_.callMenu("GetProperty", "(3, 'icon-data')").value), mark);
}

TEST_F(StatusItemOnABus, OnlyThePortalsOwnWordOnItsOwnSettingCounts) {
  show();
  panel_.comeAsPortal(2);
  ASSERT_TRUE(becomes([&] { return panel_.signalCount("NewIcon") == 1; }));
  FakePanel stranger(bus_.address());
  stranger.changeColorScheme(1);
  // Once the bus has answered this, the word before it is out.
  stranger.takeName("org.example.Stranger");
  panel_.emitSetting("org.freedesktop.appearance", "contrast", g_variant_new_uint32(1));
  panel_.emitSetting("org.gnome.desktop.interface", "color-scheme", g_variant_new_string("prefer-dark"));
  panel_.changeColorScheme(2);
  settle();
  EXPECT_EQ(iconInk(), 0x24);
  panel_.changeColorScheme(0);
  settle();
  EXPECT_EQ(panel_.signalCount("NewIcon"), 2);
  EXPECT_EQ(iconInk(), 0xF2);
}

TEST_F(StatusItemOnABus, WithoutABusThereIsNoPanel) {
  make("");
  item_->show();
  item_->setToolTip("quiet");
  EXPECT_TRUE(becomes([&] { return availability_ == std::vector{false}; }));
  EXPECT_EQ(log_.count("no panel can be reached"), 1);
}

TEST_F(StatusItemOnABus, ABusThatComesBackIsFoundAgain) {
  show();
  bus_.stop();
  ASSERT_TRUE(becomes([&] { return availability_ == std::vector{true, false}; }));
  bus_.start();
  FakePanel next(bus_.address());
  next.comeAsWatcher();
  EXPECT_TRUE(becomes([&] { return item_->isAvailable() && next.registrations().size() == 1; }));
  EXPECT_EQ(log_.count("no panel can be reached"), 1);
}

TEST_F(StatusItemOnABus, AWatcherThatHangsCountsAsNoneAndHoldsNothingUp) {
  panel_.hang();
  panel_.comeAsWatcher();
  firstAnswer_ = std::chrono::milliseconds(10);
  make();
  item_->show();
  EXPECT_TRUE(becomes([&] { return availability_ == std::vector{false}; }));
  item_.reset();
}

TEST_F(StatusItemOnABus, NothingIsToldAfterTheEnd) {
  show();
  panel_.callItem("Activate", "(1, 1)");
  panel_.callMenu("Event", "(9, 'clicked', <''>, uint32 0)");
  item_.reset();
  main_.run();
  EXPECT_TRUE(activations_.empty());
  EXPECT_TRUE(chosen_.empty());
  EXPECT_NE(panel_.callItem("Activate", "(1, 1)").error, "") << "the name has gone with it";
}

TEST_F(StatusItemOnABus, ACallbackMayEndIt) {
  show();
  item_->onMenuItemChosen([&](int, const std::string&) { item_.reset(); });
  panel_.callMenu("Event", "(10, 'clicked', <''>, uint32 0)");
  EXPECT_TRUE(becomes([&] { return item_ == nullptr; }));
}

TEST_F(StatusItemOnABus, AHostIsNotLeftWaitingWhenTheEndComesBetween) {
  show();
  int asked = 0;
  item_->onMenuAboutToShow([&] {
    ++asked;
    item_.reset();
  });
  std::atomic<bool> isOver = false;
  FakePanel::Answer answer;
  std::thread host([&] {
    answer = panel_.callMenu("AboutToShow", "(0,)");
    isOver = true;
  });
  EXPECT_TRUE(becomes([&] { return isOver.load(); }));
  host.join();
  // Either the answer still went out, or the bus says on our behalf that none will come.
  EXPECT_TRUE(printed(answer.value) == "(false,)" || answer.error == "org.freedesktop.DBus.Error.NoReply")
      << answer.error;
}

}  // namespace
}  // namespace quillmere
