// Which companions are connected, as the port says it.
#include "StateFixture.h"

namespace quillmere {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

const BrowserCompanion chromium{"chromium", "1.0", "1.0"};
const BrowserCompanion edge{"edge", "0.9", "1.0"};

class Companions : public StateFixture {};

TEST_F(Companions, ThoseThatCameBeforeTheStateAreKnown) {
  box->companions.set({chromium});
  box->start();
  EXPECT_THAT(state().browserCompanions().get(), ElementsAre(chromium));
}

TEST_F(Companions, OneThatComesOrGoesIsFollowed) {
  box->start();
  EXPECT_THAT(state().browserCompanions().get(), IsEmpty());
  box->companions.set({chromium, edge});
  EXPECT_THAT(state().browserCompanions().get(), ElementsAre(chromium, edge));
  box->companions.set({edge});
  EXPECT_THAT(state().browserCompanions().get(), ElementsAre(edge));
}

TEST_F(Companions, OneThatComesAfterTheStateHasGoneIsNobodys) {
  box->start();
  box->state.reset();
  box->companions.set({chromium});
}

TEST_F(Companions, AMachineWithoutThemHasNone) {
  box->machine.browserCompanions.reset();
  box->start();
  EXPECT_THAT(state().browserCompanions().get(), IsEmpty());
}

}  // namespace
}  // namespace quillmere
