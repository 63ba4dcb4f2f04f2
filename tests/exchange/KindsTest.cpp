#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "exchange/Companies.h"
#include "standalone/exchange/Errors.h"
#include "support/Thrown.h"

namespace exchange {
namespace {

using namespace std::string_view_literals;
using testing::Accepted;
using testing::Alder;
using testing::Birch;
using testing::Cedar;
using ::testing::HasSubstr;
using testing::kOtherPairing;
using testing::kOwnId;
using testing::kPairing;
using testing::ProposedRent;
using testing::Rent;

// The fact with another statement, signed by its author again.
template <typename Change>
Fact Changed(const Fact& fact, const KeyPair& author, Change&& change) {
  Statement statement = fact.What();
  change(statement);
  statement.author = author.Public();
  return Fact::Signed(statement, author);
}

Fact With(const Fact& fact, const KeyPair& author, std::string_view field, std::string_view value) {
  return Changed(fact, author, [&](Statement& what) { what.fields[std::string(field)] = value; });
}

Fact Without(const Fact& fact, const KeyPair& author, std::string_view field) {
  return Changed(fact, author, [&](Statement& what) { what.fields.erase(std::string(field)); });
}

std::string WhyNot(const Fact& fact) {
  return MessageOf<NotUnderstood>([&] { MeaningOf(fact); });
}

PairingOffer Invitation() {
  PairingOffer offer;
  offer.company = "Alder Supply Company";
  offer.realm = "5120774003618";
  offer.currency = "USD";
  return offer;
}

Fact Invited() {
  return MakeFact(Invitation(), kPairing, Alder());
}

Fact RentWith(std::string_view field, std::string_view value) {
  return With(ProposedRent(), Alder(), field, value);
}

Fact AcceptedRent() {
  return MakeFact(Accepted(ProposedRent()), Birch());
}

Fact AcceptedWith(std::string_view field, std::string_view value) {
  return With(AcceptedRent(), Birch(), field, value);
}

Answer RejectedRent(std::string reason) {
  return {
      .outcome = Outcome::kRejected, .entry = 0, .day = {}, .reason = std::move(reason), .proposal = ProposedRent()};
}

TEST(AnInvitation, IsReadAsItWasMade) {
  const Fact fact = Invited();

  EXPECT_EQ(PairingOfferOf(fact), Invitation());
  EXPECT_EQ(fact.What().name, kPairing);
  EXPECT_EQ(fact.What().month, "");
  EXPECT_EQ(
      fact.What().fields,
      (Fields{
          {"company", "Alder Supply Company"}, {"currency", "USD"}, {"decimals", "2"}, {"realm", "5120774003618"}}));
}

TEST(AnAcceptanceAndAConfirmation, NameWhatTheyReplyTo) {
  PairingOffer acceptance = Invitation();
  acceptance.step = PairingStep::kAcceptance;
  acceptance.replyTo = Invited().Id();
  const Fact accepted = MakeFact(acceptance, kPairing, Birch());
  PairingOffer confirmation = Invitation();
  confirmation.step = PairingStep::kConfirmation;
  confirmation.replyTo = accepted.Id();
  const Fact confirmed = MakeFact(confirmation, kPairing, Alder());

  EXPECT_EQ(PairingOfferOf(accepted), acceptance);
  EXPECT_EQ(PairingOfferOf(confirmed), confirmation);
  EXPECT_EQ(accepted.What().fields.at("invitation"), Invited().Id().Hex());
  EXPECT_EQ(confirmed.What().fields.at("acceptance"), accepted.Id().Hex());
  EXPECT_THAT(WhyNot(Without(accepted, Birch(), "invitation")), HasSubstr("has no field \"invitation\""));
  EXPECT_THAT(WhyNot(Without(confirmed, Alder(), "acceptance")), HasSubstr("has no field \"acceptance\""));
  EXPECT_THAT(WhyNot(With(accepted, Birch(), "invitation", "no hash")), HasSubstr("not 64 hexadecimal digits"));
  EXPECT_THAT(WhyNot(With(Invited(), Alder(), "invitation", Invited().Id().Hex())), HasSubstr("does not know"));
}

TEST(AnInvitation, IsNamedByItsPairingAlone) {
  const auto isNotNamed = HasSubstr("is not named by its pairing alone");

  EXPECT_THAT(WhyNot(Changed(Invited(), Alder(), [](Statement& what) { what.name = kOtherPairing; })), isNotNamed);
  EXPECT_THAT(WhyNot(Changed(Invited(), Alder(), [](Statement& what) { what.month = "2026-11"; })), isNotNamed);
}

TEST(AnInvitation, SaysWhoInvites) {
  EXPECT_THAT(WhyNot(Without(Invited(), Alder(), "company")), HasSubstr("has no field \"company\""));
  EXPECT_THAT(WhyNot(Without(Invited(), Alder(), "realm")), HasSubstr("has no field \"realm\""));
  EXPECT_THAT(WhyNot(Without(Invited(), Alder(), "decimals")), HasSubstr("has no field \"decimals\""));
  EXPECT_THAT(WhyNot(With(Invited(), Alder(), "company", std::string(60, 'n'))), HasSubstr("59 bytes are the most"));
  EXPECT_THAT(WhyNot(With(Invited(), Alder(), "company", "Al\tder")), HasSubstr("control character U+0009"));
  EXPECT_THAT(WhyNot(With(Invited(), Alder(), "realm", std::string(20, '1'))), HasSubstr("19 bytes are the most"));
}

TEST(AnInvitation, IsOfACurrencyAndDecimalsThatThereAre) {
  for (const char* const currency : {"usd", "US", "USDX", "U$D", "12A"}) {
    EXPECT_THAT(WhyNot(With(Invited(), Alder(), "currency", currency)), HasSubstr("three capital letters")) << currency;
  }
  for (const char* const decimals : {"5", "-1", "02", "+2", "2.0", "two", "99999999999999999999"}) {
    EXPECT_THAT(WhyNot(With(Invited(), Alder(), "decimals", decimals)), HasSubstr("amounts have 0 to 4")) << decimals;
  }
  EXPECT_EQ(PairingOfferOf(Without(Invited(), Alder(), "currency")).currency, "");
}

TEST(AProposal, IsReadAsItWasMade) {
  const Fact fact = ProposedRent();

  EXPECT_EQ(ProposalOf(fact), Rent());
  EXPECT_EQ(fact.What().name, "REQ-1");
  EXPECT_EQ(fact.What().month, "2026-11");
}

TEST(AProposal, LeavesOutWhatIsEmpty) {
  Proposal least;
  least.request = "REQ-2";
  least.date = DateType32(2026, 12, 31);
  least.amount = -1;
  const Fact fact = MakeFact(least, kPairing, Alder());

  EXPECT_EQ(ProposalOf(fact), least);
  EXPECT_EQ(fact.What().fields, (Fields{{"amount", "-1"}, {"date", "2026-12-31"}, {"type", "entry"}}));
}

TEST(AProposal, IsTheSameFactWhenItIsMadeAgain) {
  EXPECT_EQ(ProposedRent(), ProposedRent());
}

TEST(AProposal, HasATypeADateAndAnAmount) {
  for (const char* const field : {"type", "date", "amount"}) {
    EXPECT_THAT(WhyNot(Without(ProposedRent(), Alder(), field)), HasSubstr("has no field")) << field;
    EXPECT_THAT(WhyNot(RentWith(field, "")), HasSubstr("left out when it is empty")) << field;
  }
  EXPECT_THAT(WhyNot(RentWith("type", "invoice")), HasSubstr("of type \"invoice\""));
  EXPECT_THAT(WhyNot(RentWith("type", "Bill")), HasSubstr("of type \"Bill\""));
}

TEST(AProposal, IsOfADayOfTheCalendar) {
  for (const char* const date :
       {"2026-02-29", "2026-11-31", "2026-13-01", "1899-12-31", "2026-1-1", "05.11.2026", "2026-11-05 "}) {
    EXPECT_THAT(WhyNot(RentWith("date", date)), HasSubstr("is no day of the calendar")) << date;
  }
}

TEST(AProposal, IsOfTheMonthOfItsDate) {
  EXPECT_THAT(WhyNot(RentWith("date", "2026-12-05")), HasSubstr("of another month than its date"));
}

TEST(AProposal, IsOfAnAmountThatALineCanHave) {
  for (const char* const amount : {"0", "-0", "00", "01", "+1", "1.00", "1,250", " 1", "1 ", "1e3", "-", "ten",
                                   "10000000000000", "-10000000000000", "99999999999999999999"}) {
    EXPECT_THAT(WhyNot(RentWith("amount", amount)), HasSubstr("has the amount \"" + std::string(amount) + "\""))
        << amount;
  }
  EXPECT_EQ(ProposalOf(RentWith("amount", "9999999999999")).amount, 9'999'999'999'999);
  EXPECT_EQ(ProposalOf(RentWith("amount", "-9999999999999")).amount, -9'999'999'999'999);
}

TEST(AProposal, IsNamedByARequestIdOfUpTo36Bytes) {
  EXPECT_THAT(WhyNot(Changed(ProposedRent(), Alder(), [](Statement& what) { what.name = std::string(37, 'r'); })),
              HasSubstr("36 bytes are the most"));
}

TEST(AProposal, HasTextsOfPlainCharactersAndOfTheirLength) {
  for (const auto& [field, most] : std::vector<std::pair<const char*, std::size_t>>{
           {"document", 100}, {"name", 500}, {"memo", 4000}, {"hint", 100}}) {
    EXPECT_THAT(WhyNot(RentWith(field, std::string(most + 1, 't'))), HasSubstr("bytes are the most")) << field;
    EXPECT_NO_THROW(ProposalOf(RentWith(field, std::string(most, 't')))) << field;
    EXPECT_THAT(WhyNot(RentWith(field, "two\nlines")), HasSubstr("control character")) << field;
    EXPECT_THAT(WhyNot(RentWith(field, "a\0b"sv)), HasSubstr("control character")) << field;
    EXPECT_THAT(WhyNot(RentWith(field, "\u202etxet")), HasSubstr("direction mark")) << field;
    EXPECT_THAT(WhyNot(RentWith(field, "\xff")), HasSubstr("is not UTF-8")) << field;
  }
}

TEST(AProposal, CorrectsOrReversesOneOtherRequest) {
  const Fact reversal = With(Without(ProposedRent(), Alder(), "corrects"), Alder(), "reverses", "REQ-0");

  EXPECT_EQ(ProposalOf(reversal).earlier, (EarlierLink{.how = EarlierRequest::kReversed, .request = "REQ-0"}));
  EXPECT_THAT(WhyNot(RentWith("reverses", "REQ-0")), HasSubstr("both corrects and reverses"));
  EXPECT_THAT(WhyNot(RentWith("corrects", "REQ-1")), HasSubstr("names itself"));
  EXPECT_THAT(WhyNot(RentWith("corrects", std::string(37, 'r'))), HasSubstr("36 bytes are the most"));
}

TEST(AProposal, WithAFieldOfALaterVersionIsNotUnderstood) {
  EXPECT_THAT(WhyNot(RentWith("discount", "3%")), HasSubstr("a field that this version does not know"));
}

TEST(AProposal, ThatWouldNotBeUnderstoodIsNotMade) {
  Proposal nothing = Rent();
  nothing.amount = 0;
  Proposal never = Rent();
  never.date = {};
  Proposal nameless = Rent();
  nameless.request = "";

  EXPECT_THROW(MakeFact(nothing, kPairing, Alder()), NotUnderstood);
  EXPECT_THROW(MakeFact(never, kPairing, Alder()), NotUnderstood);
  EXPECT_THROW(MakeFact(nameless, kPairing, Alder()), Malformed);
}

TEST(AWithdrawal, IsReadAsItWasMade) {
  const Withdrawal withdrawal{.request = "REQ-1", .month = "2026-11"};

  const Fact fact = MakeFact(withdrawal, kPairing, Alder());

  EXPECT_EQ(WithdrawalOf(fact), withdrawal);
  EXPECT_TRUE(fact.What().fields.empty());
}

TEST(AWithdrawal, IsOfTheMonthOfItsProposalAndSaysNothingElse) {
  const Fact fact = MakeFact(Withdrawal{.request = "REQ-1", .month = "2026-11"}, kPairing, Alder());

  EXPECT_THAT(WhyNot(Changed(fact, Alder(), [](Statement& what) { what.month = ""; })), HasSubstr("is of no month"));
  EXPECT_THAT(WhyNot(With(fact, Alder(), "reason", "by mistake")), HasSubstr("does not know"));
  EXPECT_THAT(WhyNot(Changed(fact, Alder(), [](Statement& what) { what.name = std::string(37, 'r'); })),
              HasSubstr("36 bytes are the most"));
}

TEST(AnAnswer, IsReadAsItWasMade) {
  const Fact proposal = ProposedRent();
  Answer withdrawn = Accepted(proposal);
  withdrawn.outcome = Outcome::kWithdrawn;
  withdrawn.entry = 0;
  withdrawn.day = {};
  Answer refused = RejectedRent("id in use");
  refused.outcome = Outcome::kRefused;

  for (const Answer& answer : {Accepted(proposal), RejectedRent("Not ours"), RejectedRent(""), refused, withdrawn}) {
    const Fact fact = MakeFact(answer, Birch());
    EXPECT_EQ(AnswerOf(fact), answer);
    EXPECT_EQ(fact.What().name, "REQ-1");
    EXPECT_EQ(fact.What().month, "2026-11");
    EXPECT_EQ(fact.What().pairing, kPairing);
  }
}

TEST(AnAnswer, CarriesTheProposalThatItAnswers) {
  const Answer answer = AnswerOf(AcceptedRent());

  EXPECT_EQ(answer.proposal, ProposedRent());
  EXPECT_THAT(WhyNot(Without(AcceptedRent(), Birch(), "proposal")), HasSubstr("has no field \"proposal\""));
}

TEST(AnAnswer, IsAboutItsOwnRequestAndPairing) {
  const auto renamed = [](const char* name) {
    return Changed(AcceptedRent(), Birch(), [&](Statement& what) { what.name = name; });
  };
  const Fact elsewhere = MakeFact(Rent(), kOtherPairing, Alder());

  EXPECT_THAT(WhyNot(renamed("REQ-2")), HasSubstr("a proposal of another request"));
  EXPECT_THAT(WhyNot(AcceptedWith("proposal", elsewhere.Wire())), HasSubstr("a proposal of another pairing"));
}

TEST(AnAnswer, IsOfTheMonthOfItsProposal) {
  EXPECT_THAT(WhyNot(Changed(AcceptedRent(), Birch(), [](Statement& what) { what.month = "2026-12"; })),
              HasSubstr("of another month than the proposal"));
}

TEST(AnAnswer, IsOfAnotherAuthorThanItsProposal) {
  EXPECT_THAT(WhyNot(Changed(AcceptedRent(), Alder(), [](Statement&) {})), HasSubstr("a proposal of its own author"));
  EXPECT_THROW(MakeFact(Accepted(ProposedRent()), Alder()), NotUnderstood);
}

TEST(AnAnswer, ToAProposalThatNobodySignedIsNotUnderstood) {
  const Fact proposal = ProposedRent();
  const Fact forged(proposal.Body(), Cedar().Sign(proposal.Body()));

  EXPECT_THAT(WhyNot(AcceptedWith("proposal", forged.Wire())), HasSubstr("was not signed by its author"));
  EXPECT_THAT(WhyNot(AcceptedWith("proposal", "no fact")), HasSubstr("has no length and colon"));
}

TEST(AnAnswer, ToAnythingButAProposalIsNotUnderstood) {
  const Fact withdrawal = MakeFact(Withdrawal{.request = "REQ-1", .month = "2026-11"}, kPairing, Alder());

  EXPECT_THAT(WhyNot(AcceptedWith("proposal", withdrawal.Wire())), HasSubstr("answers a fact of kind \"withdrawal\""));
  EXPECT_THAT(WhyNot(AcceptedWith("proposal", RentWith("amount", "0").Wire())), HasSubstr("has the amount \"0\""));
}

TEST(AnAnswer, HasAnOutcomeThatThereIs) {
  EXPECT_THAT(WhyNot(AcceptedWith("outcome", "perhaps")), HasSubstr("has the outcome \"perhaps\""));
  EXPECT_THAT(WhyNot(Without(AcceptedRent(), Birch(), "outcome")), HasSubstr("has no field \"outcome\""));
}

TEST(AnAcceptedAnswer, NamesTheEntryAndItsDay) {
  EXPECT_THAT(WhyNot(Without(AcceptedRent(), Birch(), "entry")), HasSubstr("has no field \"entry\""));
  EXPECT_THAT(WhyNot(Without(AcceptedRent(), Birch(), "day")), HasSubstr("has no field \"day\""));
  EXPECT_THAT(WhyNot(AcceptedWith("day", "2026-02-30")), HasSubstr("is no day of the calendar"));
  EXPECT_THAT(WhyNot(AcceptedWith("reason", "we like it")), HasSubstr("does not know"));
  for (const char* const entry : {"0", "-1", "012", "2147483647", "12.0", "twelve"}) {
    EXPECT_THAT(WhyNot(AcceptedWith("entry", entry)), HasSubstr("has the entry")) << entry;
  }
}

TEST(ARejectedAnswer, NamesNoEntryAndAReasonOfPlainCharacters) {
  const Fact rejected = MakeFact(RejectedRent("Not ours"), Birch());

  EXPECT_THAT(WhyNot(With(rejected, Birch(), "entry", "12")), HasSubstr("does not know"));
  EXPECT_THAT(WhyNot(With(rejected, Birch(), "day", "2026-11-05")), HasSubstr("does not know"));
  EXPECT_THAT(WhyNot(With(rejected, Birch(), "reason", "a\nb")), HasSubstr("control character"));
  EXPECT_THAT(WhyNot(With(rejected, Birch(), "reason", std::string(4001, 'r'))), HasSubstr("4000 bytes are the most"));
}

TEST(Outcomes, RankAcceptedBeforeRejectedBeforeRefusedBeforeWithdrawn) {
  EXPECT_LT(Outcome::kAccepted, Outcome::kRejected);
  EXPECT_LT(Outcome::kRejected, Outcome::kRefused);
  EXPECT_LT(Outcome::kRefused, Outcome::kWithdrawn);
}

Remark DisputedRent() {
  return {.isDispute = true,
          .id = kOwnId,
          .request = "REQ-1",
          .month = "2026-11",
          .asker = Asker::kPartner,
          .text = "Our half is 600.00"};
}

Remark NotedRent(Asker asker) {
  Remark note = DisputedRent();
  note.isDispute = false;
  note.asker = asker;
  return note;
}

TEST(ADispute, IsReadAsItWasMade) {
  const Fact fact = MakeFact(DisputedRent(), kPairing, Birch());

  EXPECT_EQ(RemarkOf(fact), DisputedRent());
  EXPECT_EQ(fact.What().kind, "dispute");
  EXPECT_EQ(fact.What().name, kOwnId);
  EXPECT_EQ(fact.What().month, "2026-11");
  EXPECT_EQ(fact.What().fields, (Fields{{"about", "REQ-1"}, {"text", "Our half is 600.00"}}));
}

TEST(ADispute, IsOfTheOneThatIsAskedAndSaysNothingOfIt) {
  const Fact fact = MakeFact(DisputedRent(), kPairing, Birch());

  EXPECT_THAT(WhyNot(With(fact, Birch(), "asker", "partner")), HasSubstr("does not know"));
}

TEST(ANote, SaysWhoseTheRequestIs) {
  for (const auto& [asker, word] : {std::pair(Asker::kAuthor, "author"), std::pair(Asker::kPartner, "partner")}) {
    const Fact fact = MakeFact(NotedRent(asker), kPairing, Birch());

    EXPECT_EQ(RemarkOf(fact), NotedRent(asker));
    EXPECT_EQ(fact.What().kind, "note");
    EXPECT_EQ(fact.What().fields.at("asker"), word);
    EXPECT_THAT(WhyNot(Without(fact, Birch(), "asker")), HasSubstr("has no field \"asker\""));
    EXPECT_THAT(WhyNot(With(fact, Birch(), "asker", "somebody")), HasSubstr("has the asker \"somebody\""));
  }
}

TEST(ADisputeAndANote, AreNamedByAnIdOfTheirOwnAndAreOfAMonth) {
  for (const Remark& remark : {DisputedRent(), NotedRent(Asker::kAuthor)}) {
    const Fact fact = MakeFact(remark, kPairing, Birch());
    for (const char* const name : {"REQ-1", "0F1E2D3C4B5A69788796A5B4C3D2E1F0", "0f1e2d3c4b5a69788796a5b4c3d2e1f"}) {
      EXPECT_THAT(WhyNot(Changed(fact, Birch(), [&](Statement& what) { what.name = name; })),
                  HasSubstr("is named by 32 digits of its own"))
          << name;
    }
    EXPECT_THAT(WhyNot(Changed(fact, Birch(), [](Statement& what) { what.month.clear(); })), HasSubstr("of no month"));
  }
}

TEST(ADisputeAndANote, AreAboutARequestAndSaySomethingOfPlainCharacters) {
  for (const Remark& remark : {DisputedRent(), NotedRent(Asker::kAuthor)}) {
    const Fact fact = MakeFact(remark, kPairing, Birch());
    EXPECT_THAT(WhyNot(Without(fact, Birch(), "about")), HasSubstr("has no field \"about\""));
    EXPECT_THAT(WhyNot(With(fact, Birch(), "about", std::string(37, 'r'))), HasSubstr("36 bytes are the most"));
    EXPECT_THAT(WhyNot(Without(fact, Birch(), "text")), HasSubstr("has no field \"text\""));
    EXPECT_THAT(WhyNot(With(fact, Birch(), "text", "two\nlines")), HasSubstr("control character"));
    EXPECT_THAT(WhyNot(With(fact, Birch(), "text", std::string(4001, 't'))), HasSubstr("4000 bytes are the most"));
    EXPECT_NO_THROW(RemarkOf(With(fact, Birch(), "text", std::string(4000, 't'))));
    EXPECT_THAT(WhyNot(With(fact, Birch(), "x-mood", "cross")), HasSubstr("does not know"));
  }
}

TEST(ADisputeAndANote, ThatWouldNotBeUnderstoodAreNotMade) {
  Remark wordless = DisputedRent();
  wordless.text.clear();
  Remark nameless = NotedRent(Asker::kPartner);
  nameless.id = "REQ-1";

  EXPECT_THROW(MakeFact(wordless, kPairing, Birch()), NotUnderstood);
  EXPECT_THROW(MakeFact(nameless, kPairing, Birch()), NotUnderstood);
}

TEST(ANewKey, IsReadAsItWasMadeAndIsTheSameWhenItIsMadeAgain) {
  for (const bool isFormer : {false, true}) {
    const NewKey says{.key = Cedar().Public(), .isFormer = isFormer};
    const Fact fact = MakeFact(says, kPairing, Alder());

    EXPECT_EQ(NewKeyOf(fact), says);
    EXPECT_EQ(fact, MakeFact(says, kPairing, Alder()));
    EXPECT_EQ(fact.What().month, "");
    EXPECT_EQ(fact.What().name, NameOfNewKey(kPairing, Cedar().Public()));
    EXPECT_EQ(fact.What().fields, (Fields{{isFormer ? "former" : "key", Cedar().Public().Hex()}}));
  }
}

TEST(ANewKey, TellsOneOtherKeyAndIsNamedByIt) {
  const Fact fact = MakeFact(NewKey{.key = Cedar().Public()}, kPairing, Alder());

  EXPECT_THAT(WhyNot(Without(fact, Alder(), "key")), HasSubstr("has no field \"key\""));
  EXPECT_THAT(WhyNot(With(fact, Alder(), "former", Birch().Public().Hex())), HasSubstr("does not know"));
  EXPECT_THAT(WhyNot(With(fact, Alder(), "key", "no key")), HasSubstr("not 64 hexadecimal digits"));
  EXPECT_THAT(WhyNot(With(fact, Alder(), "key", Alder().Public().Hex())), HasSubstr("has the key of its author"));
  EXPECT_THAT(WhyNot(With(fact, Alder(), "key", Birch().Public().Hex())), HasSubstr("is not named by its key"));
  EXPECT_THAT(WhyNot(Changed(fact, Alder(), [](Statement& what) { what.month = "2026-11"; })),
              HasSubstr("is not named by its key"));
  EXPECT_THROW(MakeFact(NewKey{.key = Alder().Public()}, kPairing, Alder()), NotUnderstood);
}

TEST(AFactOfAnUnknownKind, IsNotUnderstoodButStaysAFact) {
  for (const char* const kind : {"statement", "farewell"}) {
    const Fact fact = Changed(ProposedRent(), Alder(), [&](Statement& what) { what.kind = kind; });
    EXPECT_THAT(WhyNot(fact), HasSubstr("does not know facts of kind \"" + std::string(kind) + "\""));
    EXPECT_TRUE(Fact::VerifiedFromWire(fact.Wire()).IsVerified());
  }
}

TEST(AFactOfAnotherKind, IsNotTakenForTheOneThatIsExpected) {
  EXPECT_THAT(MessageOf<NotUnderstood>([] { ProposalOf(AcceptedRent()); }),
              HasSubstr("stands where another kind belongs"));
  EXPECT_THROW(AnswerOf(ProposedRent()), NotUnderstood);
  EXPECT_THROW(WithdrawalOf(ProposedRent()), NotUnderstood);
  EXPECT_THROW(PairingOfferOf(ProposedRent()), NotUnderstood);
  EXPECT_THROW(RemarkOf(ProposedRent()), NotUnderstood);
}

}  // namespace
}  // namespace exchange
