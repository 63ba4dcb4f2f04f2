#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>

#include "standalone/values/HeldRecords.h"

namespace standalone {
namespace {

using testing::IsNull;
using testing::Pointee;

constexpr std::uint64_t kSamePlace = 65'536;

// Counts the values that were made without being given one.
struct Counted {
  Counted() { ++made; }
  static inline std::size_t made = 0;
};

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
  EXPECT_THAT(names.Find(60'007), IsNull());
  EXPECT_THAT(names.Find(7 + kSamePlace), IsNull());
}

TEST(HeldRecords, AreFoundHoweverFarApartTheirNumbersAre) {
  HeldRecords<std::string> names;
  names.Hold(60'000, "Branch");
  names.Hold(1, "Region");
  names.Hold(65'535, "Last");
  names.Hold(2'147'483'646, "Beyond");

  EXPECT_THAT(names.Find(1), Pointee(std::string("Region")));
  EXPECT_THAT(names.Find(60'000), Pointee(std::string("Branch")));
  EXPECT_THAT(names.Find(65'535), Pointee(std::string("Last")));
  EXPECT_THAT(names.Find(2'147'483'646), Pointee(std::string("Beyond")));
  EXPECT_THAT(names.Find(30'000), IsNull());
  EXPECT_THAT(names.Find(59'999), IsNull());
}

TEST(HeldRecords, AreToldFromTheirNeighbours) {
  HeldRecords<std::string> names;
  names.Hold(255, "Region");
  names.Hold(256, "Branch");

  EXPECT_THAT(names.Find(255), Pointee(std::string("Region")));
  EXPECT_THAT(names.Find(256), Pointee(std::string("Branch")));
  EXPECT_THAT(names.Find(0), IsNull());
  EXPECT_THAT(names.Find(511), IsNull());
}

TEST(HeldRecords, TakeRoomForWhatWasReadOnly) {
  HeldRecords<Counted> records;
  Counted::made = 0;

  records.Hold(60'000, {});

  EXPECT_LT(Counted::made, 1'000U);
}

TEST(HeldRecords, AreGoneOnceTheyAreForgotten) {
  const auto region = std::make_shared<std::string>("Region");
  HeldRecords<std::shared_ptr<std::string>> names;
  names.Hold(7, region);
  names.Hold(60'000, region);
  ASSERT_EQ(region.use_count(), 3);

  names = {};

  EXPECT_THAT(names.Find(7), IsNull());
  EXPECT_THAT(names.Find(60'000), IsNull());
  EXPECT_EQ(region.use_count(), 1);
}

TEST(HeldRecords, GiveUpTheirPlaceToALaterOne) {
  HeldRecords<std::string> names;
  names.Hold(7, "Region");

  names.Hold(7 + kSamePlace, "Branch");

  EXPECT_THAT(names.Find(7), IsNull());
  EXPECT_THAT(names.Find(7 + kSamePlace), Pointee(std::string("Branch")));
  EXPECT_THAT(names.Find(7 + 2 * kSamePlace), IsNull());
}

}  // namespace
}  // namespace standalone
