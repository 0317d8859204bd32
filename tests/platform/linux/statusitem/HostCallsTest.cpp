// What panels call, read and answered without a bus.
#include "platform/linux/statusitem/HostCalls.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <utility>

#include "MenuSamples.h"

namespace quillmere::statusitem {
namespace {

using bus::owned;
using samples::printed;
using ::testing::IsEmpty;

class CallsOfPanels : public ::testing::Test {
 protected:
  CallsOfPanels() { menu.replace(samples::menu()); }
  [[nodiscard]] MenuCall call(const std::string& method, const char* arguments) const {
    return readMenuCall(menu, method, owned(g_variant_new_parsed(arguments)).get());
  }
  static ItemCall callItem(const std::string& method, const char* arguments) {
    return readItemCall(method, owned(g_variant_new_parsed(arguments)).get());
  }

  BusMenu menu;
};

TEST_F(CallsOfPanels, AClickOfWhichThePlaceIsNotKnownHasNone) {
  EXPECT_EQ(callItem("Activate", "(3, 4)").activation.value().point, (StatusItemPoint{3, 4}));
  EXPECT_FALSE(callItem("SecondaryActivate", "(0, 0)").activation.value().point.has_value());
  EXPECT_FALSE(callItem("ContextMenu", "(3, 4)").activation.has_value());
}

TEST_F(CallsOfPanels, AWheelThatMovesFartherThanAnyWheelIsLimited) {
  EXPECT_EQ(callItem("Scroll", "(2147483647, 'Vertical')").angleDelta, 12000);
  EXPECT_EQ(callItem("Scroll", "(-2147483648, 'vertical')").angleDelta, -12000);
  EXPECT_EQ(callItem("Scroll", "(1, 'vertical')").angleDelta, -120);
  EXPECT_FALSE(callItem("Scroll", "(1, 'horizontal')").angleDelta.has_value());
  EXPECT_FALSE(callItem("Scroll", "(0, 'Vertical')").angleDelta.has_value());
  EXPECT_FALSE(callItem("Scroll", "(1, '')").angleDelta.has_value());
}

TEST_F(CallsOfPanels, ATokenThatIsTooLongForOneIsForgotten) {
  EXPECT_EQ(callItem("ProvideXdgActivationToken", "('abc',)").activationToken, "abc");
  const auto longest = "('" + std::string(1025, 'a') + "',)";
  EXPECT_EQ(callItem("ProvideXdgActivationToken", longest.c_str()).activationToken, "");
}

TEST_F(CallsOfPanels, AnEntryThatIsNotThereIsRefusedAndChangesNothing) {
  for (const auto& [method, arguments] : {std::pair("GetLayout", "(77, 1, @as [])"),
                                          {"GetProperty", "(77, 'label')"},
                                          {"Event", "(77, 'clicked', <''>, uint32 0)"},
                                          {"AboutToShow", "(77,)"}}) {
    const auto answer = call(method, arguments);
    EXPECT_EQ(answer.kind, MenuCall::Kind::refused) << method;
    EXPECT_THAT(answer.events, IsEmpty());
  }
}

TEST_F(CallsOfPanels, OfSeveralEventsThoseOfUnknownEntriesComeBack) {
  const auto answer = call("EventGroup", "([(1, 'clicked', <''>, uint32 0), (77, 'clicked', <''>, 0)],)");
  ASSERT_EQ(answer.events.size(), 1U);
  EXPECT_EQ(answer.events[0].id, 1);
  EXPECT_EQ(answer.events[0].name, "clicked");
  EXPECT_EQ(printed(answer.reply), "([77],)");
}

TEST_F(CallsOfPanels, AQuestionForSeveralEntriesIsAnsweredForThoseThereAre) {
  const auto question = call("AboutToShowGroup", "([4, 77, 7],)");
  EXPECT_EQ(question.kind, MenuCall::Kind::question);
  EXPECT_EQ(printed(answerTo(question, true)), "([4, 7], [77])");
  EXPECT_EQ(printed(answerTo(question, false)), "([], [77])");
  EXPECT_EQ(printed(answerTo(call("AboutToShow", "(4,)"), true)), "(true,)");
}

}  // namespace
}  // namespace quillmere::statusitem
