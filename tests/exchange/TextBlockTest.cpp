#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "standalone/exchange/Errors.h"
#include "standalone/exchange/TextBlock.h"
#include "support/Thrown.h"

namespace exchange {
namespace {

using namespace std::string_view_literals;
using ::testing::HasSubstr;

constexpr const char* kLabel = "MULTIENTITY INVITATION";
constexpr const char* kBlock =
    "-----BEGIN MULTIENTITY INVITATION-----\n"
    "aGVsbG8=\n"
    "-----END MULTIENTITY INVITATION-----\n";

std::string AllBytes(std::size_t count) {
  std::string bytes;
  for (std::size_t i = 0; i < count; ++i) bytes += static_cast<char>(i);
  return bytes;
}

std::string BlockRefusal(std::string_view text) {
  return MessageOf<Malformed>([&] { BytesOfTextBlock(kLabel, text); });
}

TEST(ATextBlock, HasAFirstLineBase64AndALastLine) {
  EXPECT_EQ(TextBlockOf(kLabel, "hello"), kBlock);
}

TEST(ATextBlock, HasLinesOf64Characters) {
  const std::string block = TextBlockOf("X", AllBytes(100));

  EXPECT_EQ(block.substr(0, block.find('\n', 20) + 1),
            "-----BEGIN X-----\nAAECAwQFBgcICQoLDA0ODxAREhMUFRYXGBkaGxwdHh8gISIjJCUmJygpKissLS4v\n");
}

TEST(ATextBlock, IsReadAsItWasMadeWhateverItsLength) {
  for (std::size_t length = 0; length < 200; ++length) {
    EXPECT_EQ(BytesOfTextBlock(kLabel, TextBlockOf(kLabel, AllBytes(length))), AllBytes(length));
  }
}

TEST(ATextBlock, IsFoundWithinAMail) {
  const std::string mail = "Dear Birch,\n\nhere it is:\n" + std::string(kBlock) + "\n-- \nAlder\n";

  EXPECT_EQ(BytesOfTextBlock(kLabel, mail), "hello");
}

TEST(ATextBlock, IsReadWithTheLineEndsAndBlanksThatMailsAdd) {
  EXPECT_EQ(BytesOfTextBlock(kLabel,
                             "-----BEGIN MULTIENTITY INVITATION-----\r\naGVs \t\r\n\r\n  bG8=\r\n"
                             "-----END MULTIENTITY INVITATION----- \r\n"),
            "hello");
  EXPECT_EQ(BytesOfTextBlock(kLabel, std::string_view(kBlock).substr(0, std::string_view(kBlock).size() - 1)), "hello");
}

TEST(ATextBlock, OfAnotherLabelIsAnotherOne) {
  const std::string both = TextBlockOf("MULTIENTITY IDENTITY", "secret") + kBlock;

  EXPECT_EQ(BytesOfTextBlock(kLabel, both), "hello");
  EXPECT_EQ(BytesOfTextBlock("MULTIENTITY IDENTITY", both), "secret");
}

TEST(ATextBlock, IsRefusedWithoutItsFirstOrLastLine) {
  EXPECT_EQ(BlockRefusal("aGVsbG8=\n"), "The text has no line -----BEGIN MULTIENTITY INVITATION-----.");
  EXPECT_EQ(BlockRefusal(""), "The text has no line -----BEGIN MULTIENTITY INVITATION-----.");
  EXPECT_THAT(BlockRefusal("-----BEGIN MULTIENTITY INVITATION-----\naGVsbG8=\n"),
              HasSubstr("no line -----END MULTIENTITY INVITATION----- behind"));
}

TEST(ATextBlock, IsRefusedWhereverItIsCutOff) {
  const std::string block = TextBlockOf(kLabel, AllBytes(100));

  for (std::size_t length = 0; length + 1 < block.size(); ++length) {
    EXPECT_THROW(BytesOfTextBlock(kLabel, block.substr(0, length)), Malformed) << length;
  }
}

TEST(ATextBlock, IsRefusedBesideAnotherOneOfItsLabel) {
  EXPECT_THAT(BlockRefusal(std::string(kBlock) + kBlock), HasSubstr("has two lines"));
  EXPECT_THROW(BytesOfTextBlock(kLabel, "-----BEGIN MULTIENTITY INVITATION-----\n" + std::string(kBlock)), Malformed);
}

TEST(ATextBlock, IsRefusedWithWhatIsNoBase64) {
  for (const char* const digits : {"aGVsbG8", "aGVsbG8==", "aGVsbG9=", "aGVsbG8=aGVsbG8=", "aGVs bG8=", "aGVs-G8=", "a",
                                   "> aGVsbG8=", "=", "===="}) {
    const std::string text =
        "-----BEGIN MULTIENTITY INVITATION-----\n" + std::string(digits) + "\n-----END MULTIENTITY INVITATION-----\n";
    EXPECT_THAT(BlockRefusal(text), HasSubstr("is no base64")) << digits;
  }
}

TEST(ATextBlock, IsNotLookedForInMoreThan8Mebibytes) {
  EXPECT_EQ(BytesOfTextBlock(kLabel, std::string(kMostTextBytes - std::string_view(kBlock).size(), '\n') + kBlock),
            "hello");
  EXPECT_EQ(BlockRefusal(std::string(kMostTextBytes, '\n') + kBlock), "The text is larger than 8 MiB.");
}

}  // namespace
}  // namespace exchange
