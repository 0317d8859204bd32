// A test that runs in a private session and nowhere else.
#pragma once

#include <gtest/gtest.h>

#include "support/Session.h"

namespace quillmere::test {

class SessionTest : public ::testing::Test {
 protected:
  void SetUp() override {
    ASSERT_TRUE(session::isPrivate())
        << "these tests move streams and restart daemons: run them with scripts/private-session --no-display -- ...";
  }
};

}  // namespace quillmere::test
