// A company gets another key: each partner takes it once a person there has compared fingerprints, and not before.
#include <filesystem>
#include <string>
#include <utility>
#include <vector>

#include "platform/Clock.h"
#include "standalone/desk/Audit.h"
#include "standalone/desk/Entering.h"
#include "standalone/desk/Identity.h"
#include "standalone/desk/Inbox.h"
#include "standalone/desk/Names.h"
#include "standalone/desk/Outbox.h"
#include "standalone/desk/Users.h"
#include "standalone/exchange/CarrierLock.h"
#include "standalone/exchange/IdentityFile.h"
#include "tests/desk/PairedCompanies.h"

namespace desk {
namespace {

using standalone::InboxState;
using standalone::LineAmount;
using standalone::RequestId;
using standalone::TransactionState;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

// Alder asks Birch to bear half of what it pays.
class AnotherKey : public PairedCompanies {
 protected:
  AnotherKey() : PairedCompanies({"Alder", "Birch"}) {
    PairOverTheFolder();
    CarryInTurns("Alder", "Birch", 2);
    for (const char* const who : {"Alder", "Birch"}) {
      At(who, [](Company& company) { return AddName(company, {.name = "Hillcrest", .kind = "vendor"}); });
    }
  }

  std::string EnterBill() {
    const RecordedTransaction bill = At("Alder", [&](Company& company) {
      return RecordTransaction(company,
                               {.type = EnteredType::kBill,
                                .date = DateType32{2026, 11, 2},
                                .name = Existing{"Hillcrest"},
                                .lines = {{.account = "Maintenance", .amount = LineAmount("480.00")}},
                                .shares = {{.partner = "Birch", .share = standalone::ShareText("50%")}},
                                .attachments = {},
                                .again = true},
                               Posting::kPost);
    });
    for (const RecordedLine& line : bill.lines) {
      if (line.partners) return line.partners->requestId;
    }
    ADD_FAILURE() << "no line has a request";
    return {};
  }
  void AcceptAtBirch(const std::string& request) {
    const RequestBooking booking{.expense = Existing{"Maintenance"}, .name = Existing{"Hillcrest"}, .date = {}};
    ASSERT_THAT(At("Birch",
                   [&](Company& company) {
                     return AcceptRequests(company, {.requests = {RequestId(request)}, .partner = {}, .upTo = {}},
                                           booking);
                   })
                    .booked,
                SizeIs(1));
  }
  std::vector<InboxRequest> InboxOfBirch() {
    return At("Birch", [](Company& company) {
      return ListInbox(company, {.partner = std::nullopt, .state = std::nullopt, .decided = true});
    });
  }
  TransactionState StateAtAlder(const std::string& request) {
    return At("Alder", [&](Company& company) { return ShowOutbox(company, RequestId(request)).state.value().number; });
  }

  std::filesystem::path IdentityFileOf(const std::string& who) const { return FileOf(who).string() + ".identity"; }
  std::string FingerprintOf(const std::string& who) const {
    return exchange::Fingerprint(exchange::IdentityFile(IdentityFileOf(who)).Keys().Public());
  }
  ReplacedKey Replace(const std::string& who, KeyOfNow key = KeyOfNow::kIsThere) {
    return At(who, [&](Company& company) { return ReplaceKey(company, key); });
  }
  PairedPartner ConfirmKey(const std::string& who, const std::string& whom, const std::string& fingerprint) {
    return At(who,
              [&](Company& company) { return ConfirmPartner(company, {.partner = whom, .fingerprint = fingerprint}); });
  }
  std::vector<std::string> OfferedTo(const std::string& who, const std::string& by) {
    std::vector<std::string> fingerprints;
    for (const OfferedKey& offered : Seen(who, by).offeredKeys) fingerprints.push_back(offered.fingerprint);
    return fingerprints;
  }
  // Of both the books and the identity.
  struct Kept {
    std::string books;
    std::string identity;
  };
  Kept Keep(const std::string& who) const {
    return {.books = Books(who), .identity = standalone::ReadFile(IdentityFileOf(who))};
  }
  void RestoreAll(const std::string& who, const Kept& kept) {
    Restore(who, kept.books);
    standalone::WriteFile(IdentityFileOf(who), kept.identity);
  }
  // Who has stolen all that Alder has.
  void LetAThiefCopyAlder() const {
    for (const char* const suffix : {".company", ".company.identity"}) {
      std::filesystem::copy_file(folder_ / (std::string("Alder") + suffix), folder_ / (std::string("Thief") + suffix));
    }
  }
  void ConfirmRestored(const std::string& who) {
    At(who, [](Company& company) { return ConfirmCameBack(company, WhyCameBack::kRestored); });
  }
  std::vector<std::pair<std::filesystem::path, std::string>> LyingNow() const {
    std::vector<std::pair<std::filesystem::path, std::string>> letters;
    for (const std::filesystem::path& file : Lying()) letters.emplace_back(file, standalone::ReadFile(file));
    return letters;
  }
  std::size_t PutBy(const std::string& who) { return Carry(who).at(0).put; }
  std::vector<std::string> SetAsideBy(const std::string& who) { return Carry(who).at(0).setAside; }
  void ExpectThatBothHoldTheSame() {
    CarryInTurns("Alder", "Birch", 5);
    for (const auto& [who, whom] : {std::pair("Alder", "Birch"), std::pair("Birch", "Alder")}) {
      const PairedPartner partner = Seen(who, whom);
      EXPECT_FALSE(partner.hasLetterToSend) << who;
      EXPECT_THAT(partner.outstanding, IsEmpty()) << who;
      EXPECT_THAT(partner.offeredKeys, IsEmpty()) << who;
    }
  }
};

TEST_F(AnotherKey, WaitsAtThePartnerUntilAPersonHasComparedItsFingerprint) {
  const std::string before = FingerprintOf("Alder");
  const ReplacedKey replaced = Replace("Alder");
  const std::string request = EnterBill();
  Carry("Alder");

  const std::vector<CarriedWith> waiting = Carry("Birch");

  EXPECT_EQ(replaced.before, before);
  EXPECT_EQ(replaced.identity.fingerprint, FingerprintOf("Alder"));
  EXPECT_NE(replaced.identity.fingerprint, before);
  EXPECT_THAT(replaced.partners, ElementsAre("Birch"));
  EXPECT_THAT(waiting.at(0).waiting, ElementsAre(HasSubstr(replaced.identity.fingerprint)));
  EXPECT_THAT(waiting.at(0).setAside, IsEmpty());
  EXPECT_EQ(Seen("Birch", "Alder").fingerprint, before);
  ASSERT_THAT(OfferedTo("Birch", "Alder"), ElementsAre(replaced.identity.fingerprint));
  EXPECT_TRUE(Seen("Birch", "Alder").offeredKeys[0].isAnnounced);
  EXPECT_THAT(InboxOfBirch(), IsEmpty());
}

// Birch asks what the letter of before lacks, and Alder answers under the other key.
TEST_F(AnotherKey, HasNoLetterPutAgainWhileItWaitsThoughOneOfBeforeComesAgain) {
  CarryInTurns("Alder", "Birch", 2);
  const std::vector<std::pair<std::filesystem::path, std::string>> before = LyingNow();
  EnterBill();
  CarryInTurns("Alder", "Birch", 3);
  Replace("Alder");
  for (const auto& [file, bytes] : before) standalone::WriteFile(file, bytes);
  CarryInTurns("Birch", "Alder", 3);

  const std::size_t put = PutBy("Birch") + PutBy("Alder") + PutBy("Birch") + PutBy("Alder");

  EXPECT_EQ(put, 0U);
  EXPECT_THAT(OfferedTo("Birch", "Alder"), ElementsAre(FingerprintOf("Alder")));
  ConfirmKey("Birch", "Alder", FingerprintOf("Alder"));
  ExpectThatBothHoldTheSame();
}

TEST_F(AnotherKey, IsThePartnersFromTheConfirmationOnAndNothingIsLost) {
  Replace("Alder");
  const std::string request = EnterBill();
  CarryInTurns("Alder", "Birch", 2);

  ConfirmKey("Birch", "Alder", FingerprintOf("Alder"));
  CarryInTurns("Birch", "Alder", 1);

  EXPECT_EQ(Seen("Birch", "Alder").fingerprint, FingerprintOf("Alder"));
  ASSERT_THAT(InboxOfBirch(), SizeIs(1));
  AcceptAtBirch(request);
  ExpectThatBothHoldTheSame();
  EXPECT_EQ(StateAtAlder(request), TransactionState::kEstablished);
}

TEST_F(AnotherKey, LeavesWhatTheFormerOneSignedTheCompanysOwn) {
  const std::string request = EnterBill();
  CarryInTurns("Alder", "Birch", 1);
  Replace("Alder");
  Carry("Alder");
  AcceptAtBirch(request);
  Carry("Birch");

  Carry("Alder");

  EXPECT_EQ(StateAtAlder(request), TransactionState::kEstablished);
  ConfirmKey("Birch", "Alder", FingerprintOf("Alder"));
  ExpectThatBothHoldTheSame();
}

TEST_F(AnotherKey, OfThePartnerLeavesWhatItsFormerOneSignedThePartnersInBooksThatWereRestored) {
  const std::string before = Books("Birch");
  const std::string request = EnterBill();
  CarryInTurns("Alder", "Birch", 1);
  AcceptAtBirch(request);
  CarryInTurns("Birch", "Alder", 2);
  Replace("Alder");
  CarryInTurns("Alder", "Birch", 1);
  ConfirmKey("Birch", "Alder", FingerprintOf("Alder"));
  CarryInTurns("Birch", "Alder", 2);
  Restore("Birch", before);

  CarryInTurns("Birch", "Alder", 1);
  ConfirmKey("Birch", "Alder", FingerprintOf("Alder"));
  CarryInTurns("Birch", "Alder", 4);
  ConfirmRestored("Birch");
  ExpectThatBothHoldTheSame();

  ASSERT_THAT(InboxOfBirch(), SizeIs(1));
  EXPECT_EQ(InboxOfBirch()[0].state, InboxState::kToBookAgain);
}

TEST_F(AnotherKey, IsNotTakenForAFingerprintThatIsNotItsOwn) {
  Replace("Alder");
  CarryInTurns("Alder", "Birch", 1);
  const std::string books = Books("Birch");

  const Refusal refusal = RefusalOf([&] { ConfirmKey("Birch", "Alder", "12345 67890 12345 67890 12345 67890"); });

  EXPECT_EQ(refusal.remedy, Remedy::kCompareFingerprints);
  EXPECT_THAT(refusal.why, HasSubstr(FingerprintOf("Alder")));
  EXPECT_EQ(Books("Birch"), books);
}

TEST_F(AnotherKey, IsDeclinedByWhoConfirmsTheKeyOfNowAndMayBeTakenAfterAll) {
  const std::string before = FingerprintOf("Alder");
  Replace("Alder");
  EnterBill();
  CarryInTurns("Alder", "Birch", 1);

  ConfirmKey("Birch", "Alder", before);

  EXPECT_EQ(Seen("Birch", "Alder").fingerprint, before);
  EXPECT_THAT(OfferedTo("Birch", "Alder"), IsEmpty());
  EXPECT_THAT(SetAsideBy("Birch"), ElementsAre(HasSubstr("a person here has confirmed another one")));
  EXPECT_THAT(OfferedTo("Birch", "Alder"), IsEmpty());
  EXPECT_EQ(RefusalOf([&] { ConfirmKey("Birch", "Alder", before); }).remedy, Remedy::kSeePartners);
  EXPECT_THAT(InboxOfBirch(), IsEmpty());
  ConfirmKey("Birch", "Alder", FingerprintOf("Alder"));
  ExpectThatBothHoldTheSame();
  EXPECT_THAT(InboxOfBirch(), SizeIs(1));
}

TEST_F(AnotherKey, OfAThiefIsAnOfferLikeAnyOtherAlsoWhereTheStolenOneAnnouncesIt) {
  LetAThiefCopyAlder();
  Replace("Thief");
  Carry("Thief");
  Replace("Alder");
  EnterBill();
  CarryInTurns("Alder", "Birch", 1);

  EXPECT_THAT(OfferedTo("Birch", "Alder"),
              testing::UnorderedElementsAre(FingerprintOf("Thief"), FingerprintOf("Alder")));
  ConfirmKey("Birch", "Alder", FingerprintOf("Alder"));
  EXPECT_THAT(SetAsideBy("Birch"), ElementsAre(HasSubstr(FingerprintOf("Thief"))));

  EXPECT_EQ(Seen("Birch", "Alder").fingerprint, FingerprintOf("Alder"));
  EXPECT_THAT(InboxOfBirch(), SizeIs(1));
  ExpectThatBothHoldTheSame();
}

TEST_F(AnotherKey, HasLettersUnderTheFormerOneNotTakenAndNotOfferedAgain) {
  LetAThiefCopyAlder();
  Replace("Alder");
  CarryInTurns("Alder", "Birch", 1);
  ConfirmKey("Birch", "Alder", FingerprintOf("Alder"));
  CarryInTurns("Birch", "Alder", 2);
  const std::string mail = At("Thief", [](Company& company) { return ExportLetters(company, "Birch"); });
  const std::string books = Books("Birch");

  EXPECT_THROW(At("Birch", [&](Company& company) { return ImportLetters(company, mail); }), standalone::InvalidInput);

  EXPECT_EQ(Books("Birch"), books);
  EXPECT_THAT(OfferedTo("Birch", "Alder"), IsEmpty());
  EXPECT_THROW(ConfirmKey("Birch", "Alder", FingerprintOf("Thief")), Refused);
}

TEST_F(AnotherKey, IsOfferedOfWhoIsBlockedAndDoesNotUnblockIt) {
  Replace("Alder");
  EnterBill();
  At("Birch", [](Company& company) { return BlockPartner(company, "Alder"); });
  CarryInTurns("Alder", "Birch", 2);

  ConfirmKey("Birch", "Alder", FingerprintOf("Alder"));
  CarryInTurns("Birch", "Alder", 2);

  EXPECT_EQ(Seen("Birch", "Alder").state, standalone::PairingState::kBlocked);
  EXPECT_THAT(InboxOfBirch(), IsEmpty());
  At("Birch", [](Company& company) { return UnblockPartner(company, "Alder"); });
  ExpectThatBothHoldTheSame();
  EXPECT_THAT(InboxOfBirch(), SizeIs(1));
}

TEST_F(AnotherKey, OfBooksAndIdentityThatWereRestoredTogetherHasToBeReplacedOnceMore) {
  const Kept before = Keep("Alder");
  Replace("Alder");
  const std::string request = EnterBill();
  CarryInTurns("Alder", "Birch", 1);
  ConfirmKey("Birch", "Alder", FingerprintOf("Alder"));
  CarryInTurns("Birch", "Alder", 3);
  AcceptAtBirch(request);
  CarryInTurns("Birch", "Alder", 2);
  RestoreAll("Alder", before);
  Carry("Alder");
  EXPECT_THAT(SetAsideBy("Birch"), ElementsAre(HasSubstr("under a former key of Alder")));

  Replace("Alder");
  CarryInTurns("Alder", "Birch", 1);
  ConfirmKey("Birch", "Alder", FingerprintOf("Alder"));
  CarryInTurns("Birch", "Alder", 5);
  ConfirmRestored("Alder");
  ExpectThatBothHoldTheSame();

  const OutboxRequest sent = At("Alder", [&](Company& company) { return ShowOutbox(company, RequestId(request)); });
  EXPECT_TRUE(sent.isLost);
  EXPECT_EQ(InboxOfBirch().at(0).state, InboxState::kAccepted);
}

TEST_F(AnotherKey, ThatWasReplacedOnceMoreSinceIsStillItsOwnInBooksOfBefore) {
  const std::string before = Books("Alder");
  Replace("Alder");
  const std::string request = EnterBill();
  CarryInTurns("Alder", "Birch", 1);
  ConfirmKey("Birch", "Alder", FingerprintOf("Alder"));
  CarryInTurns("Birch", "Alder", 3);
  Replace("Alder");
  CarryInTurns("Alder", "Birch", 1);
  ConfirmKey("Birch", "Alder", FingerprintOf("Alder"));
  CarryInTurns("Birch", "Alder", 3);
  Restore("Alder", before);

  CarryInTurns("Alder", "Birch", 5);
  ConfirmRestored("Alder");
  ExpectThatBothHoldTheSame();

  EXPECT_TRUE(At("Alder", [&](Company& company) { return ShowOutbox(company, RequestId(request)); }).isLost);
}

TEST_F(AnotherKey, InThePlaceOfALostOneIsTakenUpByBooksOfBeforeWhichWaitToBeCompared) {
  const std::string before = Books("Alder");
  const std::string request = EnterBill();
  CarryInTurns("Alder", "Birch", 2);
  std::filesystem::remove(IdentityFileOf("Alder"));
  Replace("Alder", KeyOfNow::kIsLost);
  Restore("Alder", before);
  CarryInTurns("Alder", "Birch", 1);
  EXPECT_THAT(At("Alder", [](Company& company) { return TellAwaited(company); }).value().toCompare,
              ElementsAre("Birch"));

  ConfirmKey("Birch", "Alder", FingerprintOf("Alder"));
  CarryInTurns("Birch", "Alder", 5);
  ConfirmRestored("Alder");
  ExpectThatBothHoldTheSame();

  EXPECT_TRUE(At("Alder", [&](Company& company) { return ShowOutbox(company, RequestId(request)); }).isLost);
  EXPECT_FALSE(At("Alder", [](Company& company) { return TellAwaited(company); }).has_value());
}

TEST_F(AnotherKey, InThePlaceOfALostOneThatWasBegunIsFinished) {
  const std::filesystem::path file = IdentityFileOf("Alder");
  const exchange::PublicKey lost = exchange::IdentityFile(file).Keys().Public();
  std::filesystem::remove(file);
  exchange::IdentityFile::MakeForLost(file, exchange::KeyPair(), std::vector{lost});
  const std::string begun = FingerprintOf("Alder");

  const ReplacedKey replaced = Replace("Alder", KeyOfNow::kIsLost);

  EXPECT_EQ(replaced.identity.fingerprint, begun);
  EXPECT_EQ(replaced.before, exchange::Fingerprint(lost));
  CarryInTurns("Alder", "Birch", 1);
  EXPECT_THAT(OfferedTo("Birch", "Alder"), ElementsAre(begun));
}

TEST_F(AnotherKey, IsMadeInThePlaceOfOneThatIsLostAndAnnouncedByNobody) {
  const std::string request = EnterBill();
  CarryInTurns("Alder", "Birch", 1);
  AcceptAtBirch(request);
  const std::string before = FingerprintOf("Alder");
  EXPECT_THAT(RefusalOf([&] { Replace("Alder", KeyOfNow::kIsLost); }).why, HasSubstr("the identity is not lost"));
  std::filesystem::remove(IdentityFileOf("Alder"));
  EXPECT_EQ(RefusalOf([&] { Replace("Alder"); }).remedy, Remedy::kBringTheIdentity);

  const ReplacedKey replaced = Replace("Alder", KeyOfNow::kIsLost);
  CarryInTurns("Alder", "Birch", 1);

  EXPECT_EQ(replaced.before, before);
  ASSERT_THAT(OfferedTo("Birch", "Alder"), ElementsAre(replaced.identity.fingerprint));
  EXPECT_FALSE(Seen("Birch", "Alder").offeredKeys[0].isAnnounced);
  ConfirmKey("Birch", "Alder", replaced.identity.fingerprint);
  ExpectThatBothHoldTheSame();
  EXPECT_EQ(StateAtAlder(request), TransactionState::kEstablished);
}

TEST_F(AnotherKey, OfTheIdentityIsTakenUpByBooksOfBeforeThatWereRestored) {
  const std::string before = Books("Alder");
  Replace("Alder");
  CarryInTurns("Alder", "Birch", 1);
  ConfirmKey("Birch", "Alder", FingerprintOf("Alder"));
  const std::string request = EnterBill();
  CarryInTurns("Birch", "Alder", 2);
  const std::string fingerprint = FingerprintOf("Alder");
  Restore("Alder", before);
  EXPECT_EQ(RefusalOf([&] { At("Alder", [](Company& company) { return SendRequests(company); }); }).remedy,
            Remedy::kTakeUpTheKey);

  CarryInTurns("Alder", "Birch", 4);
  ConfirmRestored("Alder");
  ExpectThatBothHoldTheSame();

  EXPECT_EQ(FingerprintOf("Alder"), fingerprint);
  EXPECT_EQ(At("Alder", [](Company& company) { return ShowIdentity(company); }).value().fingerprint, fingerprint);
  EXPECT_TRUE(At("Alder", [&](Company& company) { return ShowOutbox(company, RequestId(request)); }).isLost);
}

TEST_F(AnotherKey, ThatWasBegunIsFinishedAndNotReplacedOnceMore) {
  const std::filesystem::path file = IdentityFileOf("Alder");
  exchange::IdentityFile::Replace(exchange::CarrierLock::TryTake(file, platform::SystemClock()).value(), file,
                                  exchange::KeyPair());
  const std::string begun = FingerprintOf("Alder");

  const ReplacedKey replaced = Replace("Alder");

  EXPECT_EQ(replaced.identity.fingerprint, begun);
  EXPECT_EQ(FingerprintOf("Alder"), begun);
  CarryInTurns("Alder", "Birch", 1);
  ASSERT_THAT(OfferedTo("Birch", "Alder"), ElementsAre(begun));
  EXPECT_TRUE(Seen("Birch", "Alder").offeredKeys[0].isAnnounced);
}

TEST_F(AnotherKey, CanBeReplacedBeforeThePartnerHasConfirmedIt) {
  Replace("Alder");
  EnterBill();
  CarryInTurns("Alder", "Birch", 1);
  Replace("Alder");
  EnterBill();
  CarryInTurns("Alder", "Birch", 1);

  ConfirmKey("Birch", "Alder", FingerprintOf("Alder"));
  ExpectThatBothHoldTheSame();

  EXPECT_THAT(InboxOfBirch(), SizeIs(2));
}

TEST_F(AnotherKey, CanBeLostBeforeThePartnerHasConfirmedIt) {
  EnterBill();
  for (int times = 0; times < 2; ++times) {
    std::filesystem::remove(IdentityFileOf("Alder"));
    Replace("Alder", KeyOfNow::kIsLost);
    CarryInTurns("Alder", "Birch", 1);
  }
  EXPECT_EQ(RefusalOf([&] { At("Alder", [](Company& company) { return SendRequests(company); }); }).remedy,
            Remedy::kCarryUntilCompared);

  ConfirmKey("Birch", "Alder", FingerprintOf("Alder"));
  ExpectThatBothHoldTheSame();

  EXPECT_THAT(InboxOfBirch(), SizeIs(1));
  EnterBill();
  ExpectThatBothHoldTheSame();
  EXPECT_THAT(InboxOfBirch(), SizeIs(2));
}

TEST_F(AnotherKey, OfBothAtATimeIsTakenByBoth) {
  Replace("Alder");
  Replace("Birch");
  const std::string request = EnterBill();
  CarryInTurns("Alder", "Birch", 2);

  ConfirmKey("Birch", "Alder", FingerprintOf("Alder"));
  ConfirmKey("Alder", "Birch", FingerprintOf("Birch"));
  CarryInTurns("Birch", "Alder", 2);

  EXPECT_THAT(InboxOfBirch(), SizeIs(1));
  ExpectThatBothHoldTheSame();
}

class KeysOfAPairingThatIsBegun : public PairedCompanies {
 protected:
  KeysOfAPairingThatIsBegun() : PairedCompanies({"Alder", "Birch"}) {}

  std::string FingerprintOf(const std::string& who) const {
    return exchange::Fingerprint(exchange::IdentityFile(FileOf(who).string() + ".identity").Keys().Public());
  }
  void Replace(const std::string& who) {
    At(who, [](Company& company) { return ReplaceKey(company, KeyOfNow::kIsThere); });
  }
  void ConfirmKey(const std::string& who, const std::string& whom) {
    const std::string fingerprint = FingerprintOf(whom);
    At(who, [&](Company& company) { return ConfirmPartner(company, {.partner = whom, .fingerprint = fingerprint}); });
  }
  void ExpectEstablished() {
    CarryInTurns("Alder", "Birch", 3);
    EXPECT_EQ(Seen("Alder", "Birch").state, standalone::PairingState::kEstablished);
    EXPECT_EQ(Seen("Birch", "Alder").state, standalone::PairingState::kEstablished);
    EXPECT_FALSE(Seen("Alder", "Birch").hasLetterToSend);
    EXPECT_FALSE(Seen("Birch", "Alder").hasLetterToSend);
  }
};

TEST_F(KeysOfAPairingThatIsBegun, AreReplacedByWhoInvited) {
  Accept("Birch", "Alder", Invite("Alder", "Birch"));
  Replace("Alder");
  CarryInTurns("Birch", "Alder", 1);
  Confirm("Alder", "Birch");
  CarryInTurns("Alder", "Birch", 1);

  ConfirmKey("Birch", "Alder");

  ExpectEstablished();
}

TEST_F(KeysOfAPairingThatIsBegun, AreReplacedByWhoHasAcceptedBeforeThatIsTaken) {
  Accept("Birch", "Alder", Invite("Alder", "Birch"));
  Replace("Birch");
  CarryInTurns("Birch", "Alder", 2);

  ConfirmKey("Alder", "Birch");

  ExpectEstablished();
}

TEST_F(KeysOfAPairingThatIsBegun, AreReplacedByWhoHasAcceptedBeforeItIsConfirmed) {
  Accept("Birch", "Alder", Invite("Alder", "Birch"));
  CarryInTurns("Birch", "Alder", 1);
  Replace("Birch");
  CarryInTurns("Birch", "Alder", 1);

  ConfirmKey("Alder", "Birch");

  ExpectEstablished();
}

TEST_F(KeysOfAPairingThatIsBegun, AreNotMadeInThePlaceOfLostOnes) {
  Invite("Alder", "Birch");
  std::filesystem::remove(FileOf("Alder").string() + ".identity");

  const Refusal refusal =
      RefusalOf([&] { At("Alder", [](Company& company) { return ReplaceKey(company, KeyOfNow::kIsLost); }); });

  EXPECT_EQ(refusal.remedy, Remedy::kRemoveThePairingFirst);
  EXPECT_FALSE(std::filesystem::exists(FileOf("Alder").string() + ".identity"));
}

TEST_F(AnotherKey, IsForAdministratorsOfACompanyThatIsPaired) {
  At("Alder", [](Company& company) {
    return AddUser(company, User{.name = "Robin", .administrator = false, .accountant = true, .rights = {}});
  });
  EXPECT_EQ(RefusalOf([&] {
              At("Alder", [](Company& company) { return ReplaceKey(company, KeyOfNow::kIsThere); }, "Robin");
            }).remedy,
            Remedy::kAskAnAdministrator);
  Make("Cedar", "USD");
  EXPECT_EQ(RefusalOf([&] { Replace("Cedar"); }).remedy, Remedy::kPairFirst);
}

TEST_F(AnotherKey, IsToldByTheAuditTrailOfBoth) {
  const std::string before = FingerprintOf("Alder");
  Replace("Alder");
  CarryInTurns("Alder", "Birch", 1);
  ConfirmKey("Birch", "Alder", FingerprintOf("Alder"));
  const auto trailOf = [&](const std::string& who, const std::string& action) {
    return At(who, [&](Company& company) {
      return ListAudit(company, {.user = {}, .action = action, .period = {NullDate(), NullDate()}, .txnId = {}});
    });
  };

  const std::vector<AuditedDeed> replaced = trailOf("Alder", "partner.rekey");
  ASSERT_THAT(replaced, SizeIs(1));
  EXPECT_EQ(replaced[0].changes.at(0).before, before);
  EXPECT_EQ(replaced[0].changes.at(0).after, FingerprintOf("Alder"));
  EXPECT_THAT(trailOf("Birch", "exchange.take").back().subject, HasSubstr("a letter under another key of Alder"));
  EXPECT_THAT(trailOf("Birch", "partner.confirm").back().changes,
              testing::Contains(testing::Field(&AuditedChange::after, FingerprintOf("Alder"))));
}

}  // namespace
}  // namespace desk
