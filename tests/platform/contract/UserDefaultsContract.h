// What every answer to the settings port must do, written once and run on each of them.
// A host offers `UserDefaults& defaults()` and `void restart()`: the program ends and starts again.
#pragma once

#include <gtest/gtest.h>

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <string>

#include "platform/UserDefaults.h"

namespace quillmere {

template <typename Host>
class UserDefaultsContract : public testing::Test {
 protected:
  UserDefaults& defaults() { return host_.defaults(); }
  void restart() { host_.restart(); }

  /// What is read of a written value, at once and after a restart.
  void expectKept(const std::string& key, const DefaultsValue& value) {
    defaults().set(key, value);
    EXPECT_EQ(defaults().object(key), value) << key;
    restart();
    EXPECT_EQ(defaults().object(key), value) << key << " after a restart";
  }

 private:
  Host host_;
};

TYPED_TEST_SUITE_P(UserDefaultsContract);

TYPED_TEST_P(UserDefaultsContract, AKeyThatWasNeverWrittenIsAbsent) {
  EXPECT_FALSE(this->defaults().object("key"));
  EXPECT_FALSE(this->defaults().boolean("key"));
  EXPECT_FALSE(this->defaults().real("key"));
  EXPECT_FALSE(this->defaults().string("key"));
  EXPECT_FALSE(this->defaults().data("key"));
}

TYPED_TEST_P(UserDefaultsContract, BooleansAreKept) {
  this->expectKept("yes", true);
  this->expectKept("no", false);
}

TYPED_TEST_P(UserDefaultsContract, DoublesAreKeptToTheLastBit) {
  for (const double value : {0.0, 1.0, -1.0, 0.1, 0.7, 1e300, 5e-324, std::numeric_limits<double>::infinity(),
                             -std::numeric_limits<double>::infinity(), 9007199254740993.0}) {
    this->expectKept("number", value);
  }
  this->expectKept("minus zero", -0.0);
  EXPECT_TRUE(std::signbit(this->defaults().real("minus zero").value_or(1.0)));
}

TYPED_TEST_P(UserDefaultsContract, NaNIsKept) {
  this->defaults().set("nan", std::numeric_limits<double>::quiet_NaN());
  EXPECT_TRUE(std::isnan(this->defaults().real("nan").value_or(0.0)));
  this->restart();
  EXPECT_TRUE(std::isnan(this->defaults().real("nan").value_or(0.0)));
}

TYPED_TEST_P(UserDefaultsContract, StringsAreKept) {
  this->expectKept("text", std::string("plain"));
  this->expectKept("text", std::string());
  this->expectKept("text", std::string("a \"quote\", a 'quote'; DROP TABLE defaults; --"));
  this->expectKept("text", std::string("nul \0 inside", 12));
  this->expectKept("text", std::string("漢字 😀"));
  this->expectKept("text", std::string("not utf-8 \xFF\xC0"));
  this->expectKept("text", std::string(100000, 'x'));
}

TYPED_TEST_P(UserDefaultsContract, DataIsKeptByteByByte) {
  Data all;
  for (int byte = 0; byte < 256; ++byte) all.push_back(static_cast<std::byte>(byte));
  this->expectKept("data", all);
  this->expectKept("data", Data{});
  this->expectKept("data", Data(1000000, std::byte{7}));
}

TYPED_TEST_P(UserDefaultsContract, ATypeIsNeverConverted) {
  this->defaults().set("flag", true);
  this->defaults().set("number", 1.0);
  this->defaults().set("text", std::string("1"));
  this->defaults().set("data", Data{std::byte{'1'}});
  for (int pass = 0; pass < 2; ++pass) {
    EXPECT_EQ(this->defaults().boolean("flag"), true);
    EXPECT_FALSE(this->defaults().real("flag"));
    EXPECT_FALSE(this->defaults().string("flag"));
    EXPECT_EQ(this->defaults().real("number"), 1.0);
    EXPECT_FALSE(this->defaults().boolean("number"));
    EXPECT_FALSE(this->defaults().string("number"));
    EXPECT_EQ(this->defaults().string("text"), "1");
    EXPECT_FALSE(this->defaults().real("text"));
    EXPECT_FALSE(this->defaults().data("text"));
    EXPECT_EQ(this->defaults().data("data"), Data{std::byte{'1'}});
    EXPECT_FALSE(this->defaults().string("data"));
    this->restart();
  }
}

TYPED_TEST_P(UserDefaultsContract, ALaterWriteReplacesAnEarlierOneOfAnyType) {
  this->expectKept("key", 0.5);
  this->expectKept("key", std::string("half"));
  this->expectKept("key", false);
  this->expectKept("key", Data{std::byte{1}});
}

TYPED_TEST_P(UserDefaultsContract, ARemovedKeyIsAbsent) {
  this->defaults().set("gone", true);
  this->defaults().set("kept", true);
  this->restart();
  this->defaults().remove("gone");
  this->defaults().remove("never there");
  EXPECT_FALSE(this->defaults().object("gone"));
  this->restart();
  EXPECT_FALSE(this->defaults().object("gone"));
  EXPECT_TRUE(this->defaults().object("kept"));
}

TYPED_TEST_P(UserDefaultsContract, ARemovedKeyCanBeWrittenAgain) {
  this->defaults().set("key", 1.0);
  this->defaults().remove("key");
  this->expectKept("key", 2.0);
}

TYPED_TEST_P(UserDefaultsContract, KeysAreComparedByteByByte) {
  this->defaults().set("key", 1.0);
  this->defaults().set("Key", 2.0);
  this->defaults().set("key ", 3.0);
  this->defaults().set("", 4.0);
  this->defaults().set(std::string("key\0", 4), 5.0);
  this->restart();
  EXPECT_EQ(this->defaults().real("key"), 1.0);
  EXPECT_EQ(this->defaults().real("Key"), 2.0);
  EXPECT_EQ(this->defaults().real("key "), 3.0);
  EXPECT_EQ(this->defaults().real(""), 4.0);
  EXPECT_EQ(this->defaults().real(std::string("key\0", 4)), 5.0);
}

TYPED_TEST_P(UserDefaultsContract, OfManyFastWritesTheLastCounts) {
  for (int step = 0; step <= 5000; ++step) this->defaults().set("slider", step / 5000.0);
  EXPECT_EQ(this->defaults().real("slider"), 1.0);
  this->restart();
  EXPECT_EQ(this->defaults().real("slider"), 1.0);
}

TYPED_TEST_P(UserDefaultsContract, ManyKeysAreKept) {
  for (int index = 0; index < 500; ++index) this->defaults().set("key" + std::to_string(index), index * 1.0);
  this->restart();
  for (int index = 0; index < 500; ++index) {
    EXPECT_EQ(this->defaults().real("key" + std::to_string(index)), index * 1.0);
  }
}

REGISTER_TYPED_TEST_SUITE_P(UserDefaultsContract, AKeyThatWasNeverWrittenIsAbsent, BooleansAreKept,
                            DoublesAreKeptToTheLastBit, NaNIsKept, StringsAreKept, DataIsKeptByteByByte,
                            ATypeIsNeverConverted, ALaterWriteReplacesAnEarlierOneOfAnyType, ARemovedKeyIsAbsent,
                            ARemovedKeyCanBeWrittenAgain, KeysAreComparedByteByByte, OfManyFastWritesTheLastCounts,
                            ManyKeysAreKept);

}  // namespace quillmere
