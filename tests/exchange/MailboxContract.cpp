#include "exchange/MailboxContract.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <vector>

namespace exchange {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::SizeIs;

TEST(TheAddressOfACompany, IsTheBeginningOfTheDigestOfItsKey) {
  const PublicKey key = PublicKey::FromHex("d75a980182b10ab7d54bfed3c964073a0ee172f3daa62325af021a68f707511a");

  EXPECT_EQ(AddressOf(key), "21fe31dfa154a261");
  EXPECT_TRUE(IsAddress(AddressOf(key)));
}

TEST(TheAddressOfACompany, HasSixteenHexadecimalDigitsInSmallLetters) {
  for (const char* const text : {"", "0123456789abcde", "0123456789abcdef0", "0123456789ABCDEF", "0123456789abcdeg"}) {
    EXPECT_FALSE(IsAddress(text)) << text;
  }
}

TEST_P(AMailbox, IsEmptyAtFirst) {
  EXPECT_THAT(mailbox_->List(birch_), IsEmpty());
}

TEST_P(AMailbox, GivesWhatWasPutByteForByte) {
  std::string bytes;
  for (int byte = 0; byte < 256; ++byte) bytes += static_cast<char>(byte);
  bytes += "\r\n\x1a\n,";

  const std::string name = mailbox_->Put(birch_, bytes);
  const TakenEnvelope taken = place_->Open()->Take(name, kMost);

  EXPECT_EQ(taken.finding, Finding::kWhole);
  EXPECT_EQ(taken.bytes, bytes);
}

TEST_P(AMailbox, GivesAnEmptyEnvelopeToo) {
  const std::string name = mailbox_->Put(birch_, "");

  const TakenEnvelope taken = mailbox_->Take(name, kMost);

  EXPECT_EQ(taken.finding, Finding::kWhole);
  EXPECT_EQ(taken.bytes, "");
}

TEST_P(AMailbox, ListsWhatIsForOneAddressAndNothingElse) {
  const std::string forBirch = mailbox_->Put(birch_, "a");
  const std::string forCedar = mailbox_->Put(cedar_, "b");

  EXPECT_THAT(mailbox_->List(birch_), ElementsAre(forBirch));
  EXPECT_THAT(place_->Open()->List(cedar_), ElementsAre(forCedar));
}

TEST_P(AMailbox, ListsInAscendingOrder) {
  for (int count = 0; count < 20; ++count) mailbox_->Put(birch_, "a");

  const std::vector<std::string> names = mailbox_->List(birch_);

  EXPECT_THAT(names, SizeIs(20));
  EXPECT_TRUE(std::ranges::is_sorted(names));
}

TEST_P(AMailbox, GivesEachEnvelopeANameOfItsOwn) {
  const std::string one = mailbox_->Put(birch_, "the same");
  const std::string other = place_->Open()->Put(birch_, "the same");

  EXPECT_NE(one, other);
  EXPECT_THAT(mailbox_->List(birch_), SizeIs(2));
}

TEST_P(AMailbox, KeepsWhatWasTakenUntilItIsAcknowledged) {
  const std::string name = mailbox_->Put(birch_, "a");
  mailbox_->Take(name, kMost);
  const bool layThere = mailbox_->LiesThere(name);

  mailbox_->Acknowledge(name);

  EXPECT_TRUE(layThere);
  EXPECT_FALSE(mailbox_->LiesThere(name));
  EXPECT_THAT(mailbox_->List(birch_), IsEmpty());
}

TEST_P(AMailbox, TellsAnEnvelopeThatIsTooLargeAndLeavesIt) {
  const std::string name = mailbox_->Put(birch_, std::string(kMost + 1, 'a'));
  const std::string largest = mailbox_->Put(birch_, std::string(kMost, 'a'));

  const TakenEnvelope taken = mailbox_->Take(name, kMost);

  EXPECT_EQ(taken.finding, Finding::kTooLarge);
  EXPECT_EQ(taken.bytes, "");
  EXPECT_NE(taken.reason, "");
  EXPECT_TRUE(mailbox_->LiesThere(name));
  EXPECT_EQ(mailbox_->Take(largest, kMost).finding, Finding::kWhole);
}

TEST_P(AMailbox, TellsAnEnvelopeThatIsGone) {
  const std::string name = mailbox_->Put(birch_, "a");
  place_->Open()->Acknowledge(name);

  const TakenEnvelope taken = mailbox_->Take(name, kMost);

  EXPECT_EQ(taken.finding, Finding::kGone);
  EXPECT_NE(taken.reason, "");
}

TEST_P(AMailbox, LetsTwoTakeAndAcknowledgeTheSame) {
  const std::unique_ptr<Mailbox> other = place_->Open();
  const std::string name = mailbox_->Put(birch_, "a");

  EXPECT_EQ(mailbox_->Take(name, kMost).bytes, "a");
  EXPECT_EQ(other->Take(name, kMost).bytes, "a");
  mailbox_->Acknowledge(name);
  EXPECT_NO_THROW(other->Acknowledge(name));
  EXPECT_NO_THROW(other->SetAside(name, "It is too late."));

  EXPECT_EQ(place_->ReasonOf(name), "");
}

TEST_P(AMailbox, SetsAsideWithTheReason) {
  const std::string name = mailbox_->Put(birch_, "forged");

  mailbox_->SetAside(name, "Its signature is not right.");

  EXPECT_EQ(place_->ReasonOf(name), "Its signature is not right.");
  EXPECT_FALSE(mailbox_->LiesThere(name));
  EXPECT_EQ(mailbox_->Take(name, kMost).finding, Finding::kGone);
  EXPECT_THAT(mailbox_->List(birch_), IsEmpty());
}

TEST_P(AMailbox, GoesOnAfterSomethingWasSetAside) {
  const std::string forged = mailbox_->Put(birch_, "forged");
  const std::string good = mailbox_->Put(birch_, "good");

  mailbox_->SetAside(forged, "It is forged.");

  EXPECT_THAT(mailbox_->List(birch_), ElementsAre(good));
  EXPECT_EQ(mailbox_->Take(good, kMost).bytes, "good");
}

}  // namespace
}  // namespace exchange
