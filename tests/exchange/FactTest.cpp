#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "exchange/Companies.h"
#include "standalone/exchange/Errors.h"
#include "standalone/exchange/Netstrings.h"
#include "support/Thrown.h"

namespace exchange {
namespace {

using namespace std::string_view_literals;
using testing::Alder;
using testing::Birch;
using ::testing::HasSubstr;
using testing::kPairing;

Statement Note() {
  return {.pairing = kPairing,
          .author = Alder().Public(),
          .kind = "note",
          .name = "note-1",
          .month = "2026-11",
          .fields = {{"a", "1"}, {"b-c", "two\nlines"}, {"z", ""}}};
}

std::string RefusalOf(const Statement& statement) {
  return MessageOf<Malformed>([&] { BodyOf(statement); });
}

std::string RefusalOfBody(std::string_view body) {
  return MessageOf<Malformed>([&] { StatementOf(body); });
}

std::string WithFields(std::initializer_list<std::string_view> namesAndValues) {
  Statement statement = Note();
  statement.fields.clear();
  std::string body = BodyOf(statement);
  for (const std::string_view text : namesAndValues) AppendNetstring(body, text);
  return body;
}

TEST(ABody, HoldsTheStatementInItsOrder) {
  const std::string expected =
      "18:multientity-fact-1,32:00112233445566778899aabbccddeeff,"
      "64:03a107bff3ce10be1d70dd18e74bc09967e4d6309ba50d5f1ddc8664125531b8,"
      "4:note,6:note-1,7:2026-11,1:a,1:1,3:b-c,9:two\nlines,1:z,0:,";

  EXPECT_EQ(BodyOf(Note()), expected);
}

TEST(ABody, IsReadAsItWasMade) {
  Statement statement = Note();
  statement.fields["bytes"] = "\0\xff,:"sv;

  EXPECT_EQ(StatementOf(BodyOf(statement)), statement);
}

TEST(ABody, IsRefusedWhereverItIsCutOff) {
  const std::string body = WithFields({"a", "1"});
  const std::size_t head = WithFields({}).size();

  for (std::size_t length = 0; length < body.size(); ++length) {
    if (length == head) continue;
    EXPECT_THROW(StatementOf(body.substr(0, length)), Malformed) << length;
  }
}

TEST(ABody, IsRefusedWithItsFieldsInAnotherOrder) {
  EXPECT_THAT(RefusalOfBody(WithFields({"b", "1", "a", "2"})), HasSubstr("the field \"a\" twice or out of order"));
  EXPECT_THAT(RefusalOfBody(WithFields({"ab", "1", "a", "2"})), HasSubstr("the field \"a\" twice or out of order"));
}

TEST(ABody, IsRefusedWithAFieldTwice) {
  EXPECT_THAT(RefusalOfBody(WithFields({"a", "1", "a", "1"})), HasSubstr("the field \"a\" twice or out of order"));
}

TEST(ABody, IsRefusedWithAFieldThatHasNoValue) {
  EXPECT_THAT(RefusalOfBody(WithFields({"a"})), HasSubstr("ends behind the name of the field \"a\""));
}

TEST(ABody, IsRefusedWithALengthThatHasLeadingZeros) {
  EXPECT_THAT(RefusalOfBody(WithFields({}) + "1:a,01:1,"), HasSubstr("leading zeros"));
}

TEST(ABody, IsRefusedWithBytesBehindIt) {
  for (const std::string_view more : {" "sv, "\n"sv, "\0"sv, ","sv, "0"sv}) {
    EXPECT_THROW(StatementOf(WithFields({"a", "1"}) + std::string(more)), Malformed);
  }
}

TEST(ABody, IsRefusedInAnotherForm) {
  std::string body = BodyOf(Note());
  body[body.find("fact-1") + 5] = '2';

  EXPECT_EQ(RefusalOfBody(body),
            "The fact is of the form \"multientity-fact-2\"; this version reads multientity-fact-1.");
}

TEST(AFact, NamesItsPairingBy32SmallHexadecimalDigits) {
  for (const char* const pairing : {"", "0011", "00112233445566778899AABBCCDDEEFF", "00112233445566778899aabbccddeefg",
                                    "00112233445566778899aabbccddeeff0"}) {
    Statement statement = Note();
    statement.pairing = pairing;
    EXPECT_THAT(RefusalOf(statement), HasSubstr("not 32 hexadecimal digits")) << pairing;
  }
}

TEST(AFact, HasAKindOfSmallLettersAndHyphens) {
  for (const std::string& kind :
       {std::string(), std::string(33, 'k'), std::string("Note"), std::string("note1"), std::string("a b")}) {
    Statement statement = Note();
    statement.kind = kind;
    EXPECT_THAT(RefusalOf(statement), HasSubstr("a kind is 1 to 32 small letters and hyphens")) << kind;
  }
  Statement longest = Note();
  longest.kind = std::string(32, 'k');
  EXPECT_EQ(StatementOf(BodyOf(longest)), longest);
}

TEST(AFact, HasFieldsNamedBySmallLettersAndHyphens) {
  for (const std::string& name :
       {std::string(), std::string(33, 'f'), std::string("Amount"), std::string("amount_due"), std::string("a1")}) {
    Statement statement = Note();
    statement.fields = {{name, "1"}};
    EXPECT_THAT(RefusalOf(statement), HasSubstr("a field's name is 1 to 32 small letters and hyphens")) << name;
  }
}

TEST(AFact, IsNamedBy1To64BytesOfPlainCharacters) {
  Statement statement = Note();
  for (const std::string& name : {std::string(), std::string(65, 'n'), std::string("a\nb"), std::string("a\0b", 3),
                                  std::string("a\xff"), std::string("a\u202e"), std::string("a\u2028")}) {
    statement.name = name;
    EXPECT_THROW(BodyOf(statement), Malformed) << name;
  }
  statement.name = std::string(62, 'n') + "ö";
  EXPECT_EQ(StatementOf(BodyOf(statement)), statement);
}

TEST(AFact, IsOfAMonthOfTheCalendarOrOfNone) {
  Statement statement = Note();
  for (const char* const month :
       {"2026-00", "2026-13", "2026-1", "26-11", "2026/11", "2026-11-05", "1899-12", "202a-01"}) {
    statement.month = month;
    EXPECT_THAT(RefusalOf(statement), HasSubstr("a month is such as 2026-11")) << month;
  }
  for (const char* const month : {"", "1900-01", "2026-10", "9999-12"}) {
    statement.month = month;
    EXPECT_EQ(StatementOf(BodyOf(statement)), statement) << month;
  }
}

TEST(AFact, HasUpTo64Fields) {
  Statement statement = Note();
  statement.fields.clear();
  for (char first = 'a'; first < 'a' + 8; ++first) {
    for (char second = 'a'; second < 'a' + 8; ++second) statement.fields[{first, second}] = "1";
  }
  EXPECT_EQ(StatementOf(BodyOf(statement)), statement);
  std::string body = BodyOf(statement);
  AppendNetstring(body, "z");
  AppendNetstring(body, "1");
  statement.fields["z"] = "1";

  EXPECT_THAT(RefusalOf(statement), HasSubstr("more than 64 fields"));
  EXPECT_THAT(RefusalOfBody(body), HasSubstr("more than 64 fields"));
}

TEST(AFact, HasABodyOfUpTo64Kibibytes) {
  Statement statement = Note();
  statement.fields = {{"memo", std::string(65'000, 'm')}};
  statement.fields["memo"].append(kMostBodyBytes - BodyOf(statement).size(), 'm');
  const std::string longest = BodyOf(statement);
  ASSERT_EQ(longest.size(), kMostBodyBytes);
  EXPECT_EQ(StatementOf(longest), statement);

  statement.fields["memo"] += 'm';

  EXPECT_THAT(RefusalOf(statement), HasSubstr("too long with 65537 bytes"));
  EXPECT_THAT(RefusalOfBody(longest + "m"), HasSubstr("too long with 65537 bytes"));
}

TEST(ASignedFact, TravelsAsItsBodyAndItsSignature) {
  const Fact fact = Fact::Signed(Note(), Alder());

  EXPECT_EQ(Fact::FromWire(fact.Wire()), fact);
  EXPECT_EQ(Fact::VerifiedFromWire(fact.Wire()).What(), Note());
  EXPECT_EQ(Fact(fact.Body(), fact.Signature()), fact);
}

TEST(ASignedFact, IsIdentifiedByWhatItSays) {
  const Fact fact = Fact::Signed(Note(), Alder());
  Statement other = Note();
  other.fields["a"] = "2";

  EXPECT_EQ(fact.Id(), HashOf(fact.Body()));
  EXPECT_EQ(Fact::Signed(Note(), Alder()).Id(), fact.Id());
  EXPECT_EQ(Fact(fact.Body(), std::string(64, 's')).Id(), fact.Id());
  EXPECT_NE(Fact::Signed(other, Alder()).Id(), fact.Id());
}

TEST(ASignedFact, IsSignedByItsAuthor) {
  const Fact fact = Fact::Signed(Note(), Alder());

  EXPECT_TRUE(fact.IsVerified());
  EXPECT_THROW(Fact::Signed(Note(), Birch()), std::invalid_argument);
}

TEST(ASignedFact, OfAnotherCompanysKeysIsReadButNotVerified) {
  const std::string body = BodyOf(Note());
  const Fact forged(body, Birch().Sign(body));

  EXPECT_FALSE(forged.IsVerified());
  EXPECT_THAT(MessageOf<Malformed>([&] { Fact::VerifiedFromWire(forged.Wire()); }),
              HasSubstr("was not signed by its author " + Alder().Public().Hex()));
}

TEST(ASignedFact, ThatWasVerifiedIsSoUnderItsOwnSignatureOnly) {
  const Fact fact = Fact::Signed(Note(), Alder());
  Statement another = Note();
  another.fields["a"] = "another";

  EXPECT_TRUE(fact.IsVerified());
  EXPECT_TRUE(Fact(fact.Body(), fact.Signature()).IsVerified());
  EXPECT_FALSE(Fact(fact.Body(), Birch().Sign(fact.Body())).IsVerified());
  EXPECT_FALSE(Fact(BodyOf(another), fact.Signature()).IsVerified());
}

TEST(ASignedFact, IsRefusedWithAnyByteChanged) {
  const std::string wire = Fact::Signed(Note(), Alder()).Wire();

  for (std::size_t at = 0; at < wire.size(); ++at) {
    std::string changed = wire;
    changed[at] ^= 0x01;
    EXPECT_THROW(Fact::VerifiedFromWire(changed), Malformed) << at;
  }
}

TEST(ASignedFact, IsRefusedWhereverItIsCutOffAndWithMoreBehindIt) {
  const std::string wire = Fact::Signed(Note(), Alder()).Wire();

  for (std::size_t length = 0; length < wire.size(); ++length) {
    EXPECT_THROW(Fact::FromWire(wire.substr(0, length)), Malformed) << length;
  }
  EXPECT_THAT(MessageOf<Malformed>([&] { Fact::FromWire(wire + "0:,"); }), HasSubstr("goes on behind its signature"));
}

TEST(ASignedFact, HasASignatureOf64Bytes) {
  const std::string body = BodyOf(Note());

  EXPECT_THROW(Fact(body, std::string(63, 's')), Malformed);
  EXPECT_THROW(Fact(body, std::string(65, 's')), Malformed);
}

}  // namespace
}  // namespace exchange
