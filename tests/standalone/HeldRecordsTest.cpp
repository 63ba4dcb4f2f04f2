#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

#include "standalone/HeldRecords.h"

namespace standalone {
namespace {

using testing::IsNull;
using testing::Pointee;

constexpr std::uint64_t kSamePlace = 65'536;

TEST(HeldRecords, AreFoundByTheirNumbers) {
  HeldRecords<std::string> names;

  EXPECT_EQ(names.Hold(7, "Region"), "Region");
  names.Hold(3, "Branch");

  EXPECT_THAT(names.Find(7), Pointee(std::string("Region")));
  EXPECT_THAT(names.Find(3), Pointee(std::string("Branch")));
}

TEST(HeldRecords, AreNotMadeUp) {
  HeldRecords<std::string> names;
  EXPECT_THAT(names.Find(0), IsNull());

  names.Hold(7, "Region");

  EXPECT_THAT(names.Find(0), IsNull());
  EXPECT_THAT(names.Find(6), IsNull());
  EXPECT_THAT(names.Find(8), IsNull());
  EXPECT_THAT(names.Find(7 + kSamePlace), IsNull());
}

TEST(HeldRecords, GiveUpTheirPlaceToALaterOne) {
  HeldRecords<std::string> names;
  names.Hold(7, "Region");

  names.Hold(7 + kSamePlace, "Branch");

  EXPECT_THAT(names.Find(7), IsNull());
  EXPECT_THAT(names.Find(7 + kSamePlace), Pointee(std::string("Branch")));
}

}  // namespace
}  // namespace standalone
