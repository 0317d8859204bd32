// Identities and their text form.
#include "core/Uuid.h"

#include <gtest/gtest.h>

#include <set>
#include <unordered_set>

namespace quillmere {
namespace {

TEST(Uuid, ReadsBothCasesAndWritesUpperCase) {
  const auto lower = Uuid::parse("0f9e2a47-1b3c-4d5e-8f60-718293a4b5c6");
  const auto upper = Uuid::parse("0F9E2A47-1B3C-4D5E-8F60-718293A4B5C6");
  ASSERT_TRUE(lower && upper);
  EXPECT_EQ(*lower, *upper);
  EXPECT_EQ(lower->text(), "0F9E2A47-1B3C-4D5E-8F60-718293A4B5C6");
}

TEST(Uuid, AnythingButTheCanonicalFormIsAbsent) {
  for (const char* text : {"", "hello", "0F9E2A471B3C4D5E8F60718293A4B5C6", "{0F9E2A47-1B3C-4D5E-8F60-718293A4B5C6}",
                           "0F9E2A47-1B3C-4D5E-8F60-718293A4B5C", "0F9E2A47-1B3C-4D5E-8F60-718293A4B5C6 ",
                           "0G9E2A47-1B3C-4D5E-8F60-718293A4B5C6", "0F9E2A4-71B3C-4D5E-8F60-718293A4B5C6",
                           "0F9E2A47+1B3C-4D5E-8F60-718293A4B5C6", "0F9E2A47-1B3C-4D5E-8F60-718293A4B5 6"}) {
    EXPECT_FALSE(Uuid::parse(text)) << text;
  }
}

TEST(Uuid, TextReadsBackAsTheSameIdentity) {
  const auto id = Uuid::random();
  EXPECT_EQ(Uuid::parse(id.text()), id);
}

TEST(Uuid, FreshOnesAreRandomOfVersionFour) {
  std::set<Uuid> seen;
  for (int count = 0; count < 1000; ++count) {
    const auto id = Uuid::random();
    EXPECT_EQ(id.bytes[6] >> 4U, 4U);
    EXPECT_EQ(id.bytes[8] >> 6U, 2U);
    EXPECT_TRUE(seen.insert(id).second);
  }
}

TEST(Uuid, HashesTellIdentitiesApart) {
  std::unordered_set<std::size_t> hashes;
  for (int count = 0; count < 1000; ++count) hashes.insert(std::hash<Uuid>{}(Uuid::random()));
  EXPECT_GT(hashes.size(), 990U);
  EXPECT_EQ(std::hash<Uuid>{}(Uuid{}), std::hash<Uuid>{}(*Uuid::parse("00000000-0000-0000-0000-000000000000")));
}

}  // namespace
}  // namespace quillmere
