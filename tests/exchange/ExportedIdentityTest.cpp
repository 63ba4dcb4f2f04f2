#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

#include "exchange/IdentityFixture.h"
#include "standalone/exchange/Errors.h"
#include "standalone/exchange/ExportedIdentity.h"
#include "standalone/exchange/Netstrings.h"
#include "standalone/exchange/TextBlock.h"
#include "support/Thrown.h"

namespace exchange {
namespace {

using ::testing::AllOf;
using ::testing::EndsWith;
using ::testing::HasSubstr;
using ::testing::Not;
using ::testing::StartsWith;

constexpr const char* kPassphrase = "correct horse battery staple";
constexpr std::string_view kBlock = "MULTIENTITY IDENTITY";
constexpr Effort kLittle{.passes = 1, .memory = 8'192};

class AnExportedIdentity : public IdentityFixture {
 protected:
  AnExportedIdentity() { Write(begin_ + "left " + Digits("01") + "\nformer " + Digits("0b") + "\n"); }

  std::string Export() const { return ExportIdentity(file_, kPassphrase, kLittle); }
  void Import(std::string_view text) const { ImportIdentity(moved_, text, kPassphrase); }
  std::string Refusal(std::string_view text) const {
    return MessageOf<Malformed>([&] { Import(text); });
  }

  // A text like that of an export, whose parts are as they are given and whose digest fits them.
  static std::string TextOf(const std::vector<std::string>& parts) {
    std::string bytes;
    for (std::size_t at = 0; at < kBox; ++at) AppendNetstring(bytes, parts[at]);
    bytes += parts[kBox];
    bytes += HashOf(bytes).Bytes();
    return TextBlockOf(kBlock, bytes);
  }

  static std::vector<std::string> PartsOf(const std::string& text) {
    const std::string bytes = BytesOfTextBlock(kBlock, text);
    std::vector<std::string> parts;
    NetstringReader reader("The export", bytes);
    while (parts.size() < kBox) parts.emplace_back(reader.Take());
    parts.push_back(bytes.substr(reader.Position(), bytes.size() - reader.Position() - kOctets));
    return parts;
  }

  // Behind form, passes, memory, salt and nonce.
  static constexpr std::size_t kBox = 5;

  // Made by another program from salt 00 01 02 ... and nonce 00 01 02 ..., with one pass over 8 KiB.
  const std::string documented_ =
      "-----BEGIN MULTIENTITY IDENTITY-----\n"
      "MzE6bXVsdGllbnRpdHktZXhwb3J0ZWQtaWRlbnRpdHktMSwxOjEsNDo4MTkyLDE2\n"
      "OgABAgMEBQYHCAkKCwwNDg8sMjQ6AAECAwQFBgcICQoLDA0ODxAREhMUFRYXLCBB\n"
      "d9a6ZzsnWStvONJ04zii/h/G+JceES/gahzOa/+gaWYvudIrWwLSj+Fww6T4VAqs\n"
      "bFvd2zIHKn6cyU9h3FYrLQGkPHNlwv92xAqMDXl5N3SSN8QSlSZQaG/DOCv/oREw\n"
      "zi/DHyOVl/v1p9wA60v8yw6cCEzyR4E/U5OZUwtPev6HYMTSfmXU+mQWHPM0iuQW\n"
      "tOFgl2IvY0oGZOsXr6hNwwM5wFJC/T9vgnUU36CSA4+WXq0Rg9jhIzTRFrrCrn55\n"
      "fCMfLmtByGE/i4GdvY/fwUQ=\n"
      "-----END MULTIENTITY IDENTITY-----\n";
  const std::filesystem::path moved_ = folder_ / "moved.company.identity";
};

TEST_F(AnExportedIdentity, IsTheSameWhereItIsImported) {
  Import(Export());

  EXPECT_EQ(standalone::ReadFile(moved_), Content());
}

TEST_F(AnExportedIdentity, IsTheSameInTheFormInWhichItIsDocumented) {
  EXPECT_EQ(TextOf(PartsOf(documented_)), documented_);

  ImportIdentity(moved_, documented_, kPassphrase);

  EXPECT_EQ(standalone::ReadFile(moved_), begin_ + "left " + Digits("01") + '\n');
}

TEST_F(AnExportedIdentity, IsATextForMail) {
  EXPECT_THAT(Export(), AllOf(StartsWith("-----BEGIN MULTIENTITY IDENTITY-----\n"),
                              EndsWith("-----END MULTIENTITY IDENTITY-----\n")));
}

TEST_F(AnExportedIdentity, DiffersEachTime) {
  EXPECT_NE(Export(), Export());
}

TEST_F(AnExportedIdentity, LeavesOutWhatACrashLeft) {
  const std::string whole = Content();
  Write(whole + "left 02");

  Import(Export());

  EXPECT_EQ(standalone::ReadFile(moved_), whole);
}

TEST_F(AnExportedIdentity, TakesTheUsualEffortWhereNoneIsGiven) {
  const std::vector<std::string> parts = PartsOf(ExportIdentity(file_, kPassphrase));

  EXPECT_EQ(parts[1], "3");
  EXPECT_EQ(parts[2], "268435456");
}

TEST_F(AnExportedIdentity, NeedsAPassphraseThatIsNotSoonFound) {
  const auto message = MessageOf<standalone::InvalidInput>([this] { ExportIdentity(file_, "eleven byte", kLittle); });

  EXPECT_THAT(message, HasSubstr("at least 12"));
  EXPECT_NO_THROW(ExportIdentity(file_, "twelve bytes", kLittle));
}

TEST_F(AnExportedIdentity, IsNotOpenedByAnotherPassphrase) {
  const std::string text = Export();

  for (const char* const other : {"", "correct horse battery stapl", "Correct horse battery staple"}) {
    EXPECT_THAT(MessageOf<Malformed>([&] { ImportIdentity(moved_, text, other); }),
                HasSubstr("passphrase is not the one"));
  }

  EXPECT_FALSE(std::filesystem::exists(moved_));
}

TEST_F(AnExportedIdentity, ReplacesNone) {
  const std::string text = Export();
  standalone::WriteFile(moved_, "precious");

  EXPECT_THAT(MessageOf<IdentityError>([&] { Import(text); }),
              AllOf(HasSubstr("moved.company.identity"), HasSubstr("exists already")));

  EXPECT_EQ(standalone::ReadFile(moved_), "precious");
}

TEST_F(AnExportedIdentity, ThatWasChangedAnywhereIsRefusedWithoutTryingThePassphrase) {
  const std::string bytes = BytesOfTextBlock(kBlock, Export());
  for (std::size_t at = 0; at < bytes.size(); ++at) {
    std::string changed = bytes;
    changed[at] = static_cast<char>(changed[at] ^ 1);

    EXPECT_THAT(Refusal(TextBlockOf(kBlock, changed)), Not(HasSubstr("passphrase"))) << at;
  }

  EXPECT_FALSE(std::filesystem::exists(moved_));
}

TEST_F(AnExportedIdentity, ThatWasCutOffAnywhereIsRefused) {
  const std::string bytes = BytesOfTextBlock(kBlock, Export());

  for (std::size_t length = 0; length < bytes.size(); ++length) {
    EXPECT_THROW(Import(TextBlockOf(kBlock, std::string_view(bytes).substr(0, length))), Malformed) << length;
  }

  EXPECT_THAT(Refusal(TextBlockOf(kBlock, bytes + "a")), HasSubstr("was changed"));
  EXPECT_THROW(Import("no block at all"), Malformed);
  EXPECT_FALSE(std::filesystem::exists(moved_));
}

TEST_F(AnExportedIdentity, AsksNoMoreOfAMachineThanAnIdentityMay) {
  const std::vector<std::string> parts = PartsOf(Export());
  const auto with = [&](std::size_t at, const char* part) {
    std::vector<std::string> changed = parts;
    changed[at] = part;
    return TextOf(changed);
  };

  for (const char* const passes : {"0", "11", "01", "", "-1", "1e1", "99999999999999999999999"}) {
    EXPECT_THAT(Refusal(with(1, passes)), HasSubstr("passes beyond 1 to 10")) << passes;
  }
  for (const char* const memory : {"0", "8191", "1073741825", "99999999999999999999999", "8192 "}) {
    EXPECT_THAT(Refusal(with(2, memory)), HasSubstr("bytes of memory beyond 8192 to 1073741824")) << memory;
  }
  EXPECT_THAT(Refusal(with(3, "salt")), HasSubstr("salt of another length"));
  EXPECT_THAT(Refusal(with(4, "nonce")), HasSubstr("nonce of another length"));
  EXPECT_THAT(Refusal(with(5, "")), HasSubstr("is empty"));
}

TEST_F(AnExportedIdentity, OfALaterFormIsToldAsThat) {
  std::vector<std::string> parts = PartsOf(Export());
  parts[0] = "multientity-exported-identity-2";

  EXPECT_THAT(Refusal(TextOf(parts)), HasSubstr("a newer program"));
}

TEST_F(AnExportedIdentity, IsNotMadeOfOneThatIsDamaged) {
  Write(begin_ + "right\n");

  EXPECT_THAT(MessageOf<IdentityError>([this] { Export(); }), HasSubstr("line 3"));
}

TEST_F(AnExportedIdentity, MayHoldManyFactsThatLeft) {
  constexpr int kMany = 150'000;
  std::string text = begin_;
  for (int count = 0; count < kMany; ++count) text += "left " + Digits("01") + '\n';
  Write(text);

  Import(Export());

  EXPECT_EQ(standalone::ReadFile(moved_), text);
}

}  // namespace
}  // namespace exchange
