#include <gtest/gtest.h>

#include <string>

#include "standalone/exchange/EnvelopeFile.h"

namespace exchange {
namespace {

using namespace std::string_view_literals;

TEST(AnEnvelopesFile, HasItsBytesBetweenTheirNumberAndAComma) {
  const EnvelopeFile read = ReadEnvelopeFile("5:hello,");

  EXPECT_EQ(read.completeness, Completeness::kComplete);
  EXPECT_EQ(read.bytes, "hello");
}

TEST(AnEnvelopesFile, MayHoldNothing) {
  const EnvelopeFile read = ReadEnvelopeFile("0:,");

  EXPECT_EQ(read.completeness, Completeness::kComplete);
  EXPECT_EQ(read.bytes, "");
}

TEST(AnEnvelopesFile, IsIncompleteWhereverItEnds) {
  const std::string whole = HeadOf(12) + "twelve bytes" + kTail;

  for (std::size_t bytes = 0; bytes < whole.size(); ++bytes) {
    const EnvelopeFile read = ReadEnvelopeFile(std::string_view(whole).substr(0, bytes));
    EXPECT_EQ(read.completeness, Completeness::kIncomplete) << bytes;
    EXPECT_EQ(read.bytes, "") << bytes;
  }
  EXPECT_EQ(ReadEnvelopeFile(whole).completeness, Completeness::kComplete);
}

TEST(AnEnvelopesFile, IsIncompleteWhereverOnlyItsLengthIsSetBehind) {
  const std::string whole = HeadOf(12) + "twelve bytes" + kTail;

  for (std::size_t bytes = 0; bytes < whole.size(); ++bytes) {
    const std::string reserved = whole.substr(0, bytes) + std::string(whole.size() - bytes, '\0');
    EXPECT_EQ(ReadEnvelopeFile(reserved).completeness, Completeness::kIncomplete) << bytes;
  }
}

TEST(AnEnvelopesFile, CanNeverBecomeWholeWhenItBeginsOrEndsOtherwise) {
  for (const std::string_view file :
       {"hello"sv, ":,"sv, "-1:,"sv, " 5:hello,"sv, "05:hello,"sv, "5;hello,"sv, "5:hello;"sv, "5:hello,,"sv,
        "5:hello world,"sv, "00:,"sv, "12345678901"sv, "99999999999999999999999:a,"sv}) {
    EXPECT_EQ(ReadEnvelopeFile(file).completeness, Completeness::kNever) << file;
  }
}

}  // namespace
}  // namespace exchange
