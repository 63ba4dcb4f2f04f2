#include <gtest/gtest.h>

#include "standalone/exchange/Errors.h"
#include "standalone/exchange/Netstrings.h"
#include "support/Thrown.h"

namespace exchange {
namespace {

using namespace std::string_view_literals;

std::string TakingRefusal(std::string_view bytes) {
  NetstringReader reader("The fact", bytes);
  return MessageOf<Malformed>([&] { reader.Take(); });
}

TEST(ANetstring, IsTheLengthAColonTheBytesAndAComma) {
  std::string out;

  AppendNetstring(out, "abc");
  AppendNetstring(out, "");
  AppendNetstring(out, "4:\0,,"sv);

  EXPECT_EQ(out, "3:abc,0:,5:4:\0,,,"sv);
}

TEST(Netstrings, AreReadOneBehindTheOther) {
  NetstringReader reader("The fact", "3:abc,0:,5:4:\0,,,"sv);

  EXPECT_EQ(reader.Take(), "abc");
  EXPECT_EQ(reader.Position(), 6);
  EXPECT_EQ(reader.Take(), "");
  EXPECT_FALSE(reader.AtEnd());
  EXPECT_EQ(reader.Take(), "4:\0,,"sv);
  EXPECT_TRUE(reader.AtEnd());
}

TEST(ANetstring, IsRefusedWhereverItIsCutOff) {
  const std::string whole = "12:twelve bytes,";

  for (std::size_t length = 0; length < whole.size(); ++length) {
    EXPECT_NE(TakingRefusal(whole.substr(0, length)).find("is cut off"), std::string::npos) << length;
  }
}

TEST(ANetstring, IsRefusedWithALengthInAnotherForm) {
  EXPECT_EQ(TakingRefusal("03:abc,"), "The fact has a length with leading zeros, at byte 2.");
  EXPECT_EQ(TakingRefusal("00:,"), "The fact has a length with leading zeros, at byte 2.");
  EXPECT_EQ(TakingRefusal("+3:abc,"), "The fact has no length and colon before a text, at byte 0.");
  EXPECT_EQ(TakingRefusal("-3:abc,"), "The fact has no length and colon before a text, at byte 0.");
  EXPECT_EQ(TakingRefusal(" 3:abc,"), "The fact has no length and colon before a text, at byte 0.");
  EXPECT_EQ(TakingRefusal("3 :abc,"), "The fact has no length and colon before a text, at byte 1.");
  EXPECT_EQ(TakingRefusal("0x3:abc,"), "The fact has no length and colon before a text, at byte 1.");
  EXPECT_EQ(TakingRefusal(":abc,"), "The fact has no length and colon before a text, at byte 0.");
}

TEST(ANetstring, IsRefusedWithAnotherLengthThanThatOfItsText) {
  EXPECT_EQ(TakingRefusal("2:abc,"), "The fact has no comma behind a text, at byte 4.");
  EXPECT_EQ(TakingRefusal("4:abc,"), "The fact is cut off before the comma of a text, at byte 6.");
  EXPECT_EQ(TakingRefusal("5:abc,"), "The fact is cut off within a text, at byte 2.");
}

TEST(ANetstring, WithALengthThatIsOnlyClaimedCostsNothing) {
  EXPECT_EQ(TakingRefusal("9999999:abc,"), "The fact is cut off within a text, at byte 8.");
  EXPECT_EQ(TakingRefusal("10000000:abc,"), "The fact has a length that is too long, at byte 7.");
  EXPECT_EQ(TakingRefusal("18446744073709551619:abc,"), "The fact has a length that is too long, at byte 7.");
}

}  // namespace
}  // namespace exchange
