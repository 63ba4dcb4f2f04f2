#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "exchange/IdentityFixture.h"
#include "standalone/exchange/IdentityFile.h"
#include "support/Thrown.h"

namespace exchange {
namespace {

using ::testing::AllOf;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;
using ::testing::SizeIs;
using ::testing::UnorderedElementsAre;

class AnIdentity : public IdentityFixture {
 protected:
  std::string Refusal() const {
    return MessageOf<IdentityError>([this] { const IdentityFile identity(file_); });
  }
};

TEST_F(AnIdentity, IsMadeOfASeedAndHasNothingElse) {
  IdentityFile::Make(file_, KeysOf(10));

  const IdentityFile identity(file_);
  EXPECT_EQ(Content(), begin_);
  EXPECT_EQ(SeedOf(identity), Digits("0a"));
  EXPECT_THAT(identity.FormerKeys(), IsEmpty());
  EXPECT_THAT(LeftOf(identity), IsEmpty());
  EXPECT_THAT(FilesInTheFolder(), ElementsAre("alder.company.identity"));
}

TEST_F(AnIdentity, IsNeverReplaced) {
  IdentityFile::Make(file_, KeysOf(10));

  const std::string message = MessageOf<IdentityError>([this] { IdentityFile::Make(file_, KeysOf(11)); });

  EXPECT_THAT(message, AllOf(HasSubstr("alder.company.identity"), HasSubstr("exists already")));
  EXPECT_EQ(Content(), begin_);
  EXPECT_THAT(FilesInTheFolder(), ElementsAre("alder.company.identity"));
}

TEST_F(AnIdentity, GetsOtherKeysAsAWholeAndKeepsTheFormerOnesAndWhatLeft) {
  IdentityFile::Make(file_, KeysOf(10));
  IdentityFile before(file_);
  AddLeft(before, {HashFrom(1), HashFrom(2)});

  for (const char next : {'\x0b', '\x0c'}) {
    IdentityFile::Replace(CarrierLock::TryTake(file_, platform::SystemClock()).value(), file_, KeysOf(next));
  }

  const IdentityFile identity(file_);
  EXPECT_EQ(Content(), "multientity-identity 1\nseed " + Digits("0c") + "\nformer " + Digits("0b") + "\nformer " +
                           Digits("0a") + "\nleft " + HashFrom(1).Hex() + "\nleft " + HashFrom(2).Hex() + "\n");
  EXPECT_EQ(SeedOf(identity), Digits("0c"));
  ASSERT_THAT(identity.FormerKeys(), SizeIs(2));
  EXPECT_EQ(identity.FormerKeys()[0].HexSeed(), Digits("0b"));
  EXPECT_THAT(LeftOf(identity), ElementsAre(HashFrom(1), HashFrom(2)));
  EXPECT_THAT(FilesInTheFolder(), UnorderedElementsAre("alder.company.identity", "alder.company.identity.lock"));
}

TEST_F(AnIdentity, InThePlaceOfALostOneKnowsTheKeysThatWereLost) {
  const std::vector<PublicKey> lost{KeysOf(11).Public(), KeysOf(12).Public()};
  IdentityFile::MakeForLost(file_, KeysOf(10), lost);
  const std::string lines = "lost " + lost[0].Hex() + "\nlost " + lost[1].Hex() + "\n";
  EXPECT_EQ(Content(), begin_ + lines);
  EXPECT_EQ(IdentityFile(file_).LostKeys(), lost);

  IdentityFile::Replace(CarrierLock::TryTake(file_, platform::SystemClock()).value(), file_, KeysOf(13));

  EXPECT_EQ(Content(), "multientity-identity 1\nseed " + Digits("0d") + "\nformer " + Digits("0a") + "\n" + lines);
  EXPECT_EQ(IdentityFile(file_).LostKeys(), lost);
  EXPECT_EQ(IdentityFile(file_).LeftCount(), 0U);
}

TEST_F(AnIdentity, GetsNoOtherKeysUnderTheLockOfAnotherCompanyOrWhereItIsDamaged) {
  IdentityFile::Make(file_, KeysOf(10));
  const auto ofAnother = CarrierLock::TryTake(folder_ / "birch.company.identity", platform::SystemClock());
  EXPECT_THROW(IdentityFile::Replace(ofAnother.value(), file_, KeysOf(11)), std::logic_error);
  EXPECT_EQ(Content(), begin_);

  Write(begin_ + "nonsense\n");
  const auto lock = CarrierLock::TryTake(file_, platform::SystemClock());
  EXPECT_THROW(IdentityFile::Replace(lock.value(), file_, KeysOf(11)), IdentityError);
  EXPECT_EQ(Content(), begin_ + "nonsense\n");
}

TEST_F(AnIdentity, IsMadeWhateverAProgramThatWasKilledHasLeftOfAnother) {
  standalone::WriteFile(folder_ / "alder.company.identity.123.new", "multientity-id");

  IdentityFile::Make(file_, KeysOf(10));

  EXPECT_EQ(SeedOf(IdentityFile(file_)), Digits("0a"));
}

TEST_F(AnIdentity, IsNotMadeInAFolderThatIsNotThere) {
  const std::filesystem::path file = folder_ / "nowhere" / std::string("alder.company.identity");

  EXPECT_THROW(IdentityFile::Make(file, KeysOf(10)), IdentityError);
}

TEST_F(AnIdentity, RemembersTheFactsThatLeftInTheirOrder) {
  IdentityFile::Make(file_, KeysOf(10));
  IdentityFile identity(file_);

  AddLeft(identity, {HashFrom(2), HashFrom(1)});
  AddLeft(identity, {HashFrom(3)});

  EXPECT_EQ(identity.LeftCount(), 3U);
  EXPECT_THAT(LeftOf(identity), ElementsAre(HashFrom(2), HashFrom(1), HashFrom(3)));
  EXPECT_THAT(LeftOf(IdentityFile(file_)), ElementsAre(HashFrom(2), HashFrom(1), HashFrom(3)));
  EXPECT_EQ(Content(), begin_ + "left " + Digits("02") + "\nleft " + Digits("01") + "\nleft " + Digits("03") + "\n");
}

TEST_F(AnIdentity, StaysAsItWasWhenNothingLeaves) {
  IdentityFile::Make(file_, KeysOf(10));
  IdentityFile identity(file_);

  AddLeft(identity, {});

  EXPECT_EQ(Content(), begin_);
}

TEST_F(AnIdentity, KnowsTheKeysThatWereReplaced) {
  Write(begin_ + "left " + Digits("01") + "\nformer " + Digits("0b") + "\nformer " + Digits("0c") + "\n");

  const IdentityFile identity(file_);

  ASSERT_THAT(identity.FormerKeys(), SizeIs(2));
  EXPECT_EQ(identity.FormerKeys()[0].HexSeed(), Digits("0b"));
  EXPECT_EQ(identity.FormerKeys()[1].HexSeed(), Digits("0c"));
  EXPECT_THAT(LeftOf(identity), ElementsAre(HashFrom(1)));
}

TEST_F(AnIdentity, IsReadWhereverACrashHasTornItsLastLine) {
  const std::string line = "left " + Digits("02") + "\n";
  for (std::size_t bytes = 0; bytes < line.size(); ++bytes) {
    Write(begin_ + "left " + Digits("01") + "\n" + line.substr(0, bytes));

    IdentityFile identity(file_);
    EXPECT_THAT(LeftOf(identity), ElementsAre(HashFrom(1))) << bytes;
    AddLeft(identity, {HashFrom(3)});

    EXPECT_THAT(LeftOf(identity), ElementsAre(HashFrom(1), HashFrom(3))) << bytes;
    EXPECT_EQ(Content(), begin_ + "left " + Digits("01") + "\nleft " + Digits("03") + "\n") << bytes;
  }
}

TEST_F(AnIdentity, IsReadWhereACrashHasLeftZerosBehindItsLastLine) {
  Write(begin_ + "left 01" + std::string(100'000, '\0'));

  IdentityFile identity(file_);
  AddLeft(identity, {HashFrom(3)});

  EXPECT_EQ(Content(), begin_ + "left " + Digits("03") + "\n");
}

TEST_F(AnIdentity, HasWhatAnotherCarrierHasAddedMeanwhileAndNothingThatItLeftTorn) {
  IdentityFile::Make(file_, KeysOf(10));
  IdentityFile one(file_);
  IdentityFile other(file_);
  AddLeft(other, {HashFrom(1)});
  Write(Content() + "left 02");

  AddLeft(one, {HashFrom(3)});

  EXPECT_THAT(LeftOf(one), ElementsAre(HashFrom(1), HashFrom(3)));
  EXPECT_EQ(one.LeftCount(), 2U);
}

TEST_F(AnIdentity, IsNotMadeAnewByWhatIsAddedToOneThatIsGone) {
  IdentityFile::Make(file_, KeysOf(10));
  IdentityFile identity(file_);
  std::filesystem::remove(file_);

  EXPECT_THROW(AddLeft(identity, {HashFrom(1)}), IdentityError);

  EXPECT_FALSE(std::filesystem::exists(file_));
}

TEST_F(AnIdentity, IsAddedToByWhoHasTheLockOfItsCompanyOnly) {
  IdentityFile::Make(file_, KeysOf(10));
  IdentityFile identity(file_);
  const std::optional<CarrierLock> lock =
      CarrierLock::TryTake(folder_ / "birch.company.identity", platform::SystemClock());

  EXPECT_THROW(identity.AddLeft(*lock, std::vector{HashFrom(1)}), std::logic_error);

  EXPECT_EQ(Content(), begin_);
}

TEST_F(AnIdentity, GivesItsTextWithoutWhatACrashLeft) {
  Write(begin_ + "left " + Digits("01") + "\nleft 02");

  EXPECT_EQ(IdentityFile(file_).Text(), begin_ + "left " + Digits("01") + "\n");
}

TEST_F(AnIdentity, MayHaveMoreLinesThanFitIntoOnePiece) {
  constexpr int kMany = 5'000;
  IdentityFile::Make(file_, KeysOf(10));
  IdentityFile identity(file_);
  std::vector<Hash> hashes;
  for (int count = 0; count < kMany; ++count) {
    hashes.push_back(HashOf(std::to_string(count)));
  }

  AddLeft(identity, hashes);

  EXPECT_EQ(LeftOf(IdentityFile(file_)), hashes);
}

TEST_F(AnIdentity, ThatIsNotThereOrIsAFolderIsToldByName) {
  EXPECT_THAT(Refusal(), AllOf(HasSubstr("alder.company.identity"), HasSubstr("cannot be read")));

  std::filesystem::create_directory(file_);

  EXPECT_THAT(Refusal(), AllOf(HasSubstr("alder.company.identity"), HasSubstr("cannot be read")));
}

TEST_F(AnIdentity, OfALaterVersionIsToldAsThat) {
  Write("multientity-identity 2\nseed " + Digits("0a") + "\n");

  EXPECT_THAT(Refusal(), AllOf(HasSubstr("line 1"), HasSubstr("another version")));
}

TEST_F(AnIdentity, IsRefusedWithTheLineThatHoldsAnythingElse) {
  const std::string left = "left " + Digits("01") + "\n";
  const std::vector<std::pair<std::string, int>> cases = {
      {"", 1},
      {"multientity-identity 1", 1},
      {"seed " + Digits("0a") + "\n", 1},
      {"multientity-identity 1\r\nseed " + Digits("0a") + "\r\n", 1},
      {"\n" + begin_, 1},
      {"multientity-identity 1\n", 2},
      {"multientity-identity 1\nseed " + Digits("0a"), 2},
      {"multientity-identity 1\n" + left, 2},
      {"multientity-identity 1\nseed " + Digits("0A") + "\n", 2},
      {"multientity-identity 1\nseed " + Digits("0a") + "0\n", 2},
      {begin_ + "seed " + Digits("0a") + "\n", 3},
      {begin_ + left + "right " + Digits("01") + "\n", 4},
      {begin_ + left + "left " + Digits("0g") + "\n", 4},
      {begin_ + left + "left  " + Digits("01") + "\n", 4},
      {begin_ + left + "left " + Digits("01") + " \n", 4},
      {begin_ + left + "left " + Digits("01").substr(1) + "\n", 4},
      {begin_ + left + "\n" + left, 4},
      {begin_ + left + std::string("left 01\0\0", 9) + "\n", 4},
      {begin_ + left + "left " + Digits("01") + std::string(10, '\0') + "\n", 4},
      {begin_ + left + "former " + Digits("01") + std::string(10, '\0') + "\n", 4},
      {begin_ + left + std::string(1'000, 'x'), 4},
      {begin_ + left + std::string(1'000, '\0') + left, 4}};
  for (const auto& [text, line] : cases) {
    Write(text);

    EXPECT_THAT(Refusal(), HasSubstr("its line " + std::to_string(line) + ' ')) << text;
    EXPECT_EQ(Content(), text);
  }
}

TEST_F(AnIdentity, NeverHasItsSeedInARefusal) {
  Write("multientity-identity 1\nseed " + Digits("0A") + "\n");

  EXPECT_THAT(Refusal(), Not(HasSubstr("0A0A")));
}

}  // namespace
}  // namespace exchange
