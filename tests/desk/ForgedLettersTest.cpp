// Letters that were changed, forged, replayed or misdirected, and partners who lie: what they do to the books, and to
// others who write at the same time.
#include <algorithm>
#include <chrono>
#include <functional>
#include <random>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "standalone/desk/Audit.h"
#include "standalone/desk/Entering.h"
#include "standalone/desk/Inbox.h"
#include "standalone/desk/Outbox.h"
#include "standalone/desk/inside/Work.h"
#include "standalone/exchange/Envelope.h"
#include "standalone/exchange/EnvelopeFile.h"
#include "standalone/exchange/Errors.h"
#include "standalone/exchange/FolderMailbox.h"
#include "standalone/exchange/IdentityFile.h"
#include "standalone/exchange/Kinds.h"
#include "standalone/exchange/Netstrings.h"
#include "standalone/exchange/TextBlock.h"
#include "tests/desk/PairedCompanies.h"

namespace desk {
namespace {

using exchange::Fact;
using exchange::Hash;
using exchange::KeyPair;
using exchange::Letter;
using standalone::InboxState;
using standalone::RequestId;
using standalone::TransactionState;
using testing::Each;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Le;
using testing::Not;
using testing::SizeIs;

constexpr std::string_view kLabel = "MULTIENTITY LETTER";
constexpr const char* kMonth = "2026-11";

// Alder, to whom Birch and Cedar write over one folder.
class LettersOfOthers : public PairedCompanies {
 protected:
  explicit LettersOfOthers(const std::vector<std::string>& partners = {"Birch", "Cedar"})
      : PairedCompanies(WithAlder(partners)) {
    for (const std::string& partner : partners) {
      Accept(partner, "Alder", Invite("Alder", partner));
      CarryInTurns(partner, "Alder", 1);
      Confirm("Alder", partner);
      CarryInTurns("Alder", partner, 2);
    }
  }

  // A bill of which the other one is asked for a half; its request.
  std::string Enter(const std::string& who, const std::string& whom, const std::string& memo = "Inspection") {
    const RecordedTransaction bill = At(who, [&](Company& company) {
      return RecordTransaction(company,
                               {.type = EnteredType::kBill,
                                .date = DateType32{2026, 11, 2},
                                .name = NewVendor{standalone::NewListName("Vendor " + std::to_string(++vendors_))},
                                .memo = standalone::Memo(memo),
                                .lines = {{.account = "Maintenance", .amount = standalone::LineAmount("480.00")}},
                                .shares = {{.partner = whom, .share = standalone::ShareText("50%")}},
                                .attachments = {}},
                               Posting::kPost);
    });
    const auto line =
        std::ranges::find_if(bill.lines, [](const RecordedLine& one) { return one.partners.has_value(); });
    return line->partners->requestId;
  }
  void AcceptAll(const std::string& who) {
    At(who, [](Company& company) {
      return AcceptRequests(company, {}, {.expense = Existing{"Maintenance"}, .name = {}, .date = {}});
    });
  }
  std::vector<InboxRequest> InboxOf(const std::string& who) {
    return At(who, [](Company& company) { return ListInbox(company, {.decided = true}); });
  }
  OutboxRequest Asked(const std::string& who, const std::string& request) {
    return At(who, [&](Company& company) { return ShowOutbox(company, RequestId(request)); });
  }
  // The last line of the audit trail, which tells whatever was done to the books.
  std::string TrailOf(const std::string& who) {
    return At(who, [](Company& company) { return VerifyAudit(company).head; });
  }

  KeyPair KeysOf(const std::string& who) const {
    return exchange::IdentityFile(FileOf(who).string() + ".identity").Keys();
  }
  template <typename Ask>
  auto OfPairing(const std::string& who, const std::string& partner, Ask&& ask) {
    return At(who, [&](Company& company) {
      Work work(company.Opened(), UseCase::kExchange);
      return work.Read([&] {
        const std::vector<standalone::Pairing> pairings = work.Host().Pairings().List();
        return ask(work, *std::ranges::find(pairings, partner, &standalone::Pairing::partnerName));
      });
    });
  }
  std::set<Hash> HeldBy(const std::string& who, const std::string& partner) {
    return OfPairing(who, partner, [](Work& work, const standalone::Pairing& pairing) {
      std::set<Hash> held;
      work.Host().Facts().ForEachHash(pairing.id, [&](std::string_view hash) { held.insert(Hash::FromBytes(hash)); });
      return held;
    });
  }
  exchange::Summary SummaryOf(const std::string& who, const std::string& partner) {
    const std::set<Hash> held = HeldBy(who, partner);
    return exchange::SummaryOf({held.begin(), held.end()});
  }

  // What somebody writes to Alder in the pairing of one of its partners, with nothing in it yet.
  Letter LetterToAlder(const std::string& sender, const std::string& pairedAs) {
    return {.pairing = OfPairing(pairedAs, "Alder",
                                 [](Work&, const standalone::Pairing& pairing) { return pairing.pairingId; }),
            .sender = KeysOf(sender).Public(),
            .receiver = KeysOf("Alder").Public(),
            .word = exchange::MakeRandomWord(),
            .echo = {},
            .summary = SummaryOf(pairedAs, "Alder"),
            .months = {},
            .hashes = {},
            .facts = {}};
  }
  Letter LetterToAlder(const std::string& sender) { return LetterToAlder(sender, sender); }
  std::string AddressOf(const std::string& who) const { return exchange::AddressOf(KeysOf(who).Public()); }

  // Under a name that nobody has used; returns it.
  std::string PutFile(const std::string& whom, std::string_view content) {
    const std::string name = AddressOf(whom) + "-copy " + std::to_string(++files_) + exchange::kEnvelopeSuffix;
    standalone::WriteFile(Folder() / name, content);
    std::filesystem::last_write_time(Folder() / name,
                                     std::filesystem::file_time_type::clock::now() - std::chrono::hours(24));
    return name;
  }
  void PutEnvelope(const std::string& whom, const std::string& envelope) {
    PutFile(whom, exchange::HeadOf(envelope.size()) + envelope + exchange::kTail);
  }
  void Put(const std::string& whom, const Letter& letter, const std::string& sender) {
    for (const std::string& envelope : Seal(letter, KeysOf(sender))) PutEnvelope(whom, envelope);
  }
  static std::string TextOf(const std::vector<std::string>& envelopes) {
    std::string block;
    for (const std::string& envelope : envelopes) exchange::AppendNetstring(block, envelope);
    return exchange::TextBlockOf(kLabel, block);
  }
  std::string EnvelopeToAlder(const std::string& sender) {
    const std::string text = At(sender, [](Company& company) { return ExportLetters(company, "Alder"); });
    const std::string block = exchange::BytesOfTextBlock(kLabel, text);
    return std::string(exchange::NetstringReader("The text", block).Take());
  }
  std::vector<TakenLetter> Import(const std::string& who, const std::string& text) {
    return At(who, [&](Company& company) { return ImportLetters(company, text); });
  }

  std::vector<std::filesystem::path> LyingFor(const std::string& whom) const {
    std::vector<std::filesystem::path> files = Lying();
    std::erase_if(files, [address = AddressOf(whom)](const std::filesystem::path& file) {
      return !file.filename().string().starts_with(address);
    });
    std::ranges::sort(files);
    return files;
  }
  static std::string EnvelopeIn(const std::filesystem::path& file) {
    const std::string content = standalone::ReadFile(file);
    return std::string(exchange::ReadEnvelopeFile(content).bytes);
  }
  void LoseAllLetters() const {
    for (const std::filesystem::path& file : Lying()) std::filesystem::remove(file);
  }

  std::vector<std::string> SetAsideBy(const std::string& who) {
    std::vector<std::string> files;
    for (const CarriedWith& with : Carry(who)) files.insert(files.end(), with.setAside.begin(), with.setAside.end());
    return files;
  }
  std::size_t PutBy(const std::string& who) {
    std::size_t put = 0;
    for (const CarriedWith& with : Carry(who)) put += with.put;
    return put;
  }
  // Both hold the same, and have nothing to say any more.
  void ExpectAtRest(const std::string& partner) {
    CarryInTurns("Alder", partner, 6);
    EXPECT_EQ(PutBy(partner), 0U);
    EXPECT_EQ(PutBy("Alder"), 0U);
    EXPECT_EQ(HeldBy("Alder", partner), HeldBy(partner, "Alder"));
    EXPECT_FALSE(Seen("Alder", partner).hasLetterToSend);
    EXPECT_FALSE(Seen(partner, "Alder").hasLetterToSend);
  }

 private:
  static std::vector<std::string> WithAlder(std::vector<std::string> partners) {
    partners.emplace_back("Alder");
    return partners;
  }

  int vendors_ = 0;
  int files_ = 0;
};

class LettersOfBirch : public LettersOfOthers {
 protected:
  LettersOfBirch() : LettersOfOthers({"Birch"}) {}
};

// The wires of the facts about requests in an envelope for Alder.
std::vector<Fact> RequestsIn(const std::string& envelope, const KeyPair& receiver) {
  std::vector<Fact> facts;
  for (const std::string& wire : exchange::Open(envelope, receiver).facts) {
    Fact fact = Fact::FromWire(wire);
    if (fact.What().kind == exchange::kinds::kProposal) facts.push_back(std::move(fact));
  }
  return facts;
}

std::vector<std::string> WithEachByteChanged(const std::string& bytes) {
  std::vector<std::string> changed;
  for (std::size_t place = 0; place < bytes.size(); ++place) {
    changed.push_back(bytes);
    changed.back()[place] ^= static_cast<char>(1 << (place % 8));
  }
  return changed;
}

TEST_F(LettersOfBirch, ChangeNothingWhicheverOfTheirBytesIsChanged) {
  Enter("Birch", "Alder");
  const std::string envelope = EnvelopeToAlder("Birch");
  const std::string before = Books("Alder");

  constexpr std::size_t kAtOnce = 1000;
  std::vector<std::string> batch;
  for (std::string& changed : WithEachByteChanged(envelope)) {
    batch.push_back(std::move(changed));
    if (batch.size() == kAtOnce) {
      EXPECT_THROW(Import("Alder", TextOf(std::exchange(batch, {}))), standalone::InvalidInput);
    }
  }
  EXPECT_THROW(Import("Alder", TextOf(batch)), standalone::InvalidInput);

  EXPECT_EQ(Books("Alder"), before);
  EXPECT_EQ(Import("Alder", TextOf({envelope})).at(0).facts, 1U);
}

TEST_F(LettersOfOthers, AreTakenBesideFilesThatAreNone) {
  Enter("Birch", "Alder");
  Enter("Cedar", "Alder");
  LoseAllLetters();
  Carry("Birch");
  const std::filesystem::path letter = LyingFor("Alder").at(0);
  const std::string content = standalone::ReadFile(letter);
  std::filesystem::remove(letter);
  std::vector<std::string> forged{PutFile("Alder", ""), PutFile("Alder", "hello"),
                                  PutFile("Alder", content.substr(0, content.size() / 2))};
  // In its head, in its tail and here and there between them.
  for (const std::string& changed : WithEachByteChanged(content)) {
    const auto place = static_cast<std::size_t>(std::ranges::mismatch(changed, content).in1 - changed.begin());
    if (place < 6 || place + 1 == content.size() || place % 199 == 0) forged.push_back(PutFile("Alder", changed));
  }
  forged.push_back(PutFile("Alder", content));
  std::filesystem::resize_file(Folder() / forged.back(), 64U << 20U);
  Carry("Cedar");

  const std::vector<std::string> setAside = SetAsideBy("Alder");

  EXPECT_THAT(setAside, SizeIs(forged.size()));
  for (const std::string& name : forged) EXPECT_THAT(setAside, testing::Contains(HasSubstr(name)));
  for (const std::string& name : forged) EXPECT_TRUE(std::filesystem::exists(Folder() / "set-aside" / name)) << name;
  ASSERT_THAT(InboxOf("Alder"), SizeIs(1));
  EXPECT_EQ(InboxOf("Alder")[0].partner, "Cedar");
  ExpectAtRest("Birch");
  EXPECT_THAT(InboxOf("Alder"), SizeIs(2));
}

TEST_F(LettersOfBirch, GiveNoFactOfWhichAByteIsChanged) {
  Enter("Birch", "Alder");
  Enter("Birch", "Alder");
  const std::vector<Fact> facts = RequestsIn(EnvelopeToAlder("Birch"), KeysOf("Alder"));
  ASSERT_THAT(facts, SizeIs(2));
  Letter letter = LetterToAlder("Birch");
  letter.facts = WithEachByteChanged(facts[0].Wire());
  letter.facts.push_back(facts[1].Wire());
  const std::size_t held = HeldBy("Alder", "Birch").size();

  const TakenLetter taken = Import("Alder", TextOf(Seal(letter, KeysOf("Birch")))).at(0);

  EXPECT_EQ(taken.facts, 1U);
  EXPECT_THAT(taken.outstanding, SizeIs(letter.facts.size() - 1));
  EXPECT_THAT(HeldBy("Alder", "Birch"), SizeIs(held + 1));
  ASSERT_THAT(InboxOf("Alder"), SizeIs(1));
  EXPECT_EQ(InboxOf("Alder")[0].requestId, facts[1].What().name);
  ExpectAtRest("Birch");
}

TEST_F(LettersOfOthers, AreSetAsideInThePairingOfAnother) {
  Enter("Birch", "Alder");
  const std::vector<Fact> facts = RequestsIn(EnvelopeToAlder("Birch"), KeysOf("Alder"));
  LoseAllLetters();
  Letter forged = LetterToAlder("Cedar", "Birch");
  forged.facts = {facts.at(0).Wire()};
  Put("Alder", forged, "Cedar");
  const std::string before = TrailOf("Alder");

  const std::vector<std::string> setAside = SetAsideBy("Alder");

  ASSERT_THAT(setAside, SizeIs(1));
  EXPECT_THAT(setAside[0], HasSubstr("It is not of Birch"));
  EXPECT_EQ(TrailOf("Alder"), before);
}

TEST_F(LettersOfOthers, GiveNoFactOfAnybodyElse) {
  Enter("Birch", "Alder");
  Enter("Cedar", "Alder");
  const Fact birchs = RequestsIn(EnvelopeToAlder("Birch"), KeysOf("Alder")).at(0);
  const Fact cedars = RequestsIn(EnvelopeToAlder("Cedar"), KeysOf("Alder")).at(0);
  const exchange::Proposal says = exchange::ProposalOf(birchs);
  Letter letter = LetterToAlder("Cedar");
  exchange::Statement asBirch = cedars.What();
  asBirch.author = KeysOf("Birch").Public();
  asBirch.name = "AS-BIRCH";
  const std::string body = exchange::BodyOf(asBirch);
  letter.facts = {birchs.Wire(),                                                  // of another pairing
                  MakeFact(says, birchs.What().pairing, KeysOf("Cedar")).Wire(),  // by who is not of it
                  MakeFact(says, letter.pairing, KeysOf("Birch")).Wire(),         // by who is not of this one
                  Fact(body, KeysOf("Cedar").Sign(body)).Wire(),                  // not signed by its author
                  cedars.Wire()};
  const std::set<Hash> ofBirch = HeldBy("Alder", "Birch");
  const std::size_t ofCedar = HeldBy("Alder", "Cedar").size();

  const TakenLetter taken = Import("Alder", TextOf(Seal(letter, KeysOf("Cedar")))).at(0);

  EXPECT_EQ(taken.facts, 1U);
  EXPECT_THAT(taken.outstanding, SizeIs(4));
  EXPECT_EQ(HeldBy("Alder", "Birch"), ofBirch);
  EXPECT_THAT(HeldBy("Alder", "Cedar"), SizeIs(ofCedar + 1));
  ASSERT_THAT(InboxOf("Alder"), SizeIs(1));
  EXPECT_EQ(InboxOf("Alder")[0].partner, "Cedar");
}

TEST_F(LettersOfOthers, AreSetAsideByWhomTheyAreNotSealedFor) {
  Enter("Birch", "Alder");
  LoseAllLetters();
  Carry("Birch");
  const std::string envelope = EnvelopeIn(LyingFor("Alder").at(0));
  PutEnvelope("Cedar", envelope);
  PutEnvelope("Birch", envelope);

  EXPECT_THAT(SetAsideBy("Cedar"), SizeIs(1));
  EXPECT_THAT(SetAsideBy("Birch"), SizeIs(1));
  EXPECT_THAT(InboxOf("Cedar"), IsEmpty());
  ExpectAtRest("Birch");
}

TEST_F(LettersOfOthers, AreTakenThoughThoseOfWhoIsBlockedLieThere) {
  Enter("Birch", "Alder");
  Enter("Cedar", "Alder");
  At("Alder", [](Company& company) { BlockPartner(company, "Birch"); });
  const std::set<Hash> held = HeldBy("Alder", "Birch");
  Carry("Birch");
  Carry("Cedar");

  EXPECT_THAT(SetAsideBy("Alder"), IsEmpty());

  EXPECT_EQ(HeldBy("Alder", "Birch"), held);
  ASSERT_THAT(InboxOf("Alder"), SizeIs(1));
  EXPECT_EQ(InboxOf("Alder")[0].partner, "Cedar");
  At("Alder", [](Company& company) { UnblockPartner(company, "Birch"); });
  ExpectAtRest("Birch");
  EXPECT_THAT(InboxOf("Alder"), SizeIs(2));
}

TEST_F(LettersOfOthers, AreSetAsideInThePairingOfOneWhoIsBlocked) {
  At("Alder", [](Company& company) { BlockPartner(company, "Birch"); });
  Put("Alder", LetterToAlder("Cedar", "Birch"), "Cedar");

  EXPECT_THAT(SetAsideBy("Alder"), SizeIs(1));
}

// Birch, or a copy of it that is at work elsewhere, has proposed one request with two contents.
class TwoContentsOfOneRequest : public LettersOfBirch, public testing::WithParamInterface<bool> {
 protected:
  // Another amount under the same request, whose hash is lower or higher than that of the one which the books made.
  Fact Other(const Fact& first, bool isLower) const {
    exchange::Proposal says = exchange::ProposalOf(first);
    while (true) {
      says.amount += 100;
      Fact other = MakeFact(says, first.What().pairing, KeysOf("Birch"));
      if ((other.Id() < first.Id()) == isLower) return other;
    }
  }
};

TEST_P(TwoContentsOfOneRequest, AreOneOnBothSidesAndToldToBoth) {
  const std::string request = Enter("Birch", "Alder");
  const Fact first = RequestsIn(EnvelopeToAlder("Birch"), KeysOf("Alder")).at(0);
  LoseAllLetters();
  const Fact other = Other(first, GetParam());
  const Fact& counts = GetParam() ? other : first;
  Letter letter = LetterToAlder("Birch");
  letter.facts = {other.Wire()};
  Put("Alder", letter, "Birch");
  Carry("Alder");
  ExpectAtRest("Birch");

  ASSERT_THAT(InboxOf("Alder"), SizeIs(1));
  EXPECT_EQ(InboxOf("Alder")[0].amount.minorUnits, exchange::ProposalOf(counts).amount);
  EXPECT_THAT(InboxOf("Alder")[0].mark, Not(IsEmpty()));
  EXPECT_THAT(Asked("Birch", request).mark, Not(IsEmpty()));
  At("Birch", [](Company& company) { return ConfirmCameBack(company, WhyCameBack::kCopyEnded); });

  At("Alder", [&](Company& company) {
    return AcceptRequests(
        company, {.requests = {RequestId(request)}, .partner = {}, .upTo = {}},
        {.expense = Existing{"Maintenance"}, .name = NewVendor{standalone::NewListName("Hillcrest")}, .date = {}});
  });
  ExpectAtRest("Birch");
  EXPECT_EQ(InboxOf("Alder")[0].state, InboxState::kAccepted);
  EXPECT_EQ(InboxOf("Alder")[0].amount.minorUnits, exchange::ProposalOf(counts).amount);
  EXPECT_EQ(Asked("Birch", request).state.value().number, TransactionState::kEstablished);
}

INSTANTIATE_TEST_SUITE_P(, TwoContentsOfOneRequest, testing::Bool(),
                         [](const auto& which) { return which.param ? "TheOtherCounts" : "TheFirstCounts"; });

TEST_F(LettersOfBirch, ChangeNothingWhenTheyAreReplayed) {
  std::vector<std::pair<std::string, std::string>> seen;
  const auto remember = [&] {
    for (const char* who : {"Alder", "Birch"}) {
      for (const std::filesystem::path& file : LyingFor(who)) seen.emplace_back(who, EnvelopeIn(file));
    }
  };
  const auto carry = [&](const std::string& who) {
    Carry(who);
    remember();
  };
  const std::string accepted = Enter("Birch", "Alder");
  const std::string withdrawn = Enter("Birch", "Alder");
  for (const char* who : {"Birch", "Alder", "Birch"}) carry(who);
  const RequestBooking booking{
      .expense = Existing{"Maintenance"}, .name = NewVendor{standalone::NewListName("Hillcrest")}, .date = {}};
  At("Alder", [&](Company& company) {
    return AcceptRequests(company, {.requests = {RequestId(accepted)}, .partner = {}, .upTo = {}}, booking);
  });
  At("Birch", [&](Company& company) { return WithdrawRequest(company, RequestId(withdrawn)); });
  for (const char* who : {"Birch", "Alder", "Birch", "Alder", "Birch"}) carry(who);
  ExpectAtRest("Birch");
  const std::pair before{TrailOf("Alder"), TrailOf("Birch")};
  const std::set<Hash> held = HeldBy("Alder", "Birch");

  std::ranges::shuffle(seen, std::mt19937(7));
  for (const auto& [whom, envelope] : seen) PutEnvelope(whom, envelope);
  CarryInTurns("Alder", "Birch", 2);
  for (const auto& [whom, envelope] : seen) PutEnvelope(whom, envelope);

  ExpectAtRest("Birch");
  EXPECT_EQ(std::pair(TrailOf("Alder"), TrailOf("Birch")), before);
  EXPECT_EQ(HeldBy("Alder", "Birch"), held);
  EXPECT_EQ(Asked("Birch", accepted).state.value().number, TransactionState::kEstablished);
  EXPECT_EQ(Asked("Birch", withdrawn).state.value().number, TransactionState::kClosed);
}

// What a partner may tell of what it holds.
struct Lie {
  const char* name;
  std::function<void(Letter& letter, const exchange::Summary& ofAlder)> tell;
};

std::vector<Hash> NoHashes(std::size_t count) {
  std::set<Hash> hashes;
  for (std::size_t number = 0; number < count; ++number) hashes.insert(exchange::HashOf(std::to_string(number)));
  return {hashes.begin(), hashes.end()};
}

exchange::Summary SummaryOfNothingThere(std::uint64_t count) {
  return {.count = count, .digest = exchange::HashOf(std::to_string(count))};
}

const std::vector<Lie>& Lies() {
  static const std::vector<Lie> lies{
      {"ThatBothHoldTheSame",
       [](Letter& letter, const exchange::Summary& ofAlder) {
         letter.summary = ofAlder;
       }},
      {"ThatBothHoldTheSameAndNothingIsAsked",
       [](Letter& letter, const exchange::Summary& ofAlder) {
         letter.summary = ofAlder;
         letter.word.clear();
       }},
      {"ThatThereIsNothing",
       [](Letter& letter, const exchange::Summary&) {
         letter.summary = exchange::SummaryOf({});
       }},
      {"OfMoreFactsThanThereAre",
       [](Letter& letter, const exchange::Summary&) {
         letter.summary = SummaryOfNothingThere(exchange::kMostFacts);
       }},
      {"OfMonthsThatThereAreNot",
       [](Letter& letter, const exchange::Summary&) {
         letter.summary = SummaryOfNothingThere(12);
         for (const char* month : {"1900-01", kMonth, "9999-12"}) {
           letter.months[month] = SummaryOfNothingThere(exchange::kMostFacts);
         }
       }},
      {"OfMonthsThatEqualWhatIsHeldThere",
       [](Letter& letter, const exchange::Summary& ofAlder) {
         letter.summary = SummaryOfNothingThere(12);
         letter.months[kMonth] = ofAlder;
       }},
      {"OfHashesThatThereAreNot",
       [](Letter& letter, const exchange::Summary&) {
         letter.summary = SummaryOfNothingThere(500);
         letter.hashes[kMonth] = NoHashes(500);
         letter.hashes["1900-01"] = NoHashes(2);
       }},
      {"OfEmptyMonths",
       [](Letter& letter, const exchange::Summary&) {
         letter.summary = SummaryOfNothingThere(3);
         letter.hashes = {{"", {}}, {kMonth, {}}, {"9999-12", {}}};
       }},
      {"OfAnEchoThatNobodyAskedFor",
       [](Letter& letter, const exchange::Summary& ofAlder) {
         letter.echo = exchange::MakeRandomWord();
         letter.summary = ofAlder;
       }},
  };
  return lies;
}

class APartnerWhoLies : public LettersOfBirch, public testing::WithParamInterface<std::size_t> {
 protected:
  // A lie that is told again each time in a letter of its own; how often Alder wrote.
  std::size_t TellAlder(int times) {
    std::size_t put = 0;
    for (int time = 0; time < times; ++time) {
      Letter letter = LetterToAlder("Birch");
      Lies()[GetParam()].tell(letter, SummaryOf("Alder", "Birch"));
      Put("Alder", letter, "Birch");
      put += PutBy("Alder");
    }
    return put;
  }
};

TEST_P(APartnerWhoLies, GetsOneLetterForEachOfItsOwnAndTakesNothingAway) {
  const std::string asked = Enter("Alder", "Birch");
  const std::string asks = Enter("Birch", "Alder");
  Carry("Alder");
  const std::set<Hash> held = HeldBy("Alder", "Birch");
  LoseAllLetters();

  constexpr int kLies = 3;
  EXPECT_THAT(TellAlder(kLies), Le(static_cast<std::size_t>(kLies)));
  std::size_t putAfterwards = 0;
  for (int round = 0; round < 3; ++round) putAfterwards += PutBy("Alder");

  EXPECT_THAT(putAfterwards, Le(1U));
  EXPECT_EQ(HeldBy("Alder", "Birch"), held);
  EXPECT_EQ(Asked("Alder", asked).state.value().number, TransactionState::kSent);
  // Once it tells the truth, each gets what the other one has.
  ExpectAtRest("Birch");
  ASSERT_THAT(InboxOf("Birch"), SizeIs(1));
  EXPECT_EQ(InboxOf("Birch")[0].requestId, asked);
  ASSERT_THAT(InboxOf("Alder"), SizeIs(1));
  EXPECT_EQ(InboxOf("Alder")[0].requestId, asks);
}

INSTANTIATE_TEST_SUITE_P(, APartnerWhoLies, testing::Range<std::size_t>(0, Lies().size()),
                         [](const auto& which) { return Lies()[which.param].name; });

TEST_F(LettersOfOthers, TellNothingOfAThirdOne) {
  std::vector<std::pair<std::string, std::string>> seen;
  const auto carryAll = [&] {
    for (const char* who : {"Alder", "Birch", "Cedar"}) {
      Carry(who);
      for (const char* whom : {"Alder", "Birch", "Cedar"}) {
        for (const std::filesystem::path& file : LyingFor(whom)) seen.emplace_back(whom, EnvelopeIn(file));
      }
    }
  };
  for (const char* partner : {"Birch", "Cedar"}) {
    Enter("Alder", partner, std::string("For ") + partner);
    Enter(partner, "Alder", std::string("Of ") + partner);
  }
  for (int round = 0; round < 3; ++round) carryAll();
  LoseAllLetters();
  for (int round = 0; round < 3; ++round) carryAll();

  std::size_t ofAlder = 0;
  for (const auto& [whom, envelope] : seen) {
    const Letter letter = exchange::Open(envelope, KeysOf(whom));
    for (const char* other : {"Alder", "Birch", "Cedar"}) {
      if (other == whom) continue;
      EXPECT_THROW(exchange::Open(envelope, KeysOf(other)), exchange::Malformed);
    }
    const std::string partner =
        whom == "Alder" ? (letter.sender == KeysOf("Birch").Public() ? "Birch" : "Cedar") : whom;
    const std::string third = partner == "Birch" ? "Cedar" : "Birch";
    const std::set<Hash> ofTheTwo = HeldBy("Alder", partner);
    for (const std::string& wire : letter.facts) {
      EXPECT_TRUE(ofTheTwo.contains(Fact::FromWire(wire).Id()));
      EXPECT_THAT(wire, Not(HasSubstr(third)));
    }
    for (const auto& [month, hashes] : letter.hashes) {
      EXPECT_TRUE(std::ranges::includes(ofTheTwo, hashes));
    }
    EXPECT_THAT(letter.summary.count, Le(ofTheTwo.size()));
    if (whom != "Alder") ++ofAlder;
  }
  EXPECT_GE(ofAlder, 4U);
  for (const char* partner : {"Birch", "Cedar"}) ExpectAtRest(partner);
}

}  // namespace
}  // namespace desk
