#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <variant>

#include "MultiEntityHost/DateType32.h"
#include "standalone/exchange/Fact.h"
#include "standalone/values/Decimals.h"

// What facts say, kind by kind. Reading one throws NotUnderstood, whose message is the reason, when anything in it does
// not fit; a field that is empty is left out, one that the kind does not have makes it not understood.
namespace exchange {

namespace kinds {
inline constexpr std::string_view kInvitation = "invitation";
inline constexpr std::string_view kAcceptance = "acceptance";
inline constexpr std::string_view kConfirmation = "confirmation";
inline constexpr std::string_view kProposal = "proposal";
inline constexpr std::string_view kWithdrawal = "withdrawal";
inline constexpr std::string_view kAnswer = "answer";
inline constexpr std::string_view kDispute = "dispute";
inline constexpr std::string_view kNote = "note";
inline constexpr std::string_view kNewKey = "new-key";
}  // namespace kinds

enum class PairingStep { kInvitation, kAcceptance, kConfirmation };

// How two companies get to know each other. The fact is named by the pairing id and is of no month.
struct PairingOffer {
  PairingStep step = PairingStep::kInvitation;
  std::string company;   // 1 to 59 bytes
  std::string realm;     // 1 to 19 bytes
  std::string currency;  // three capital letters; empty when the company has none
  standalone::Decimals decimals = standalone::kTwoDecimals;
  // The invitation that is accepted, the acceptance that is confirmed; an invitation has none.
  std::optional<Hash> replyTo;

  friend bool operator==(const PairingOffer&, const PairingOffer&) = default;
};

enum class RequestType { kBill, kCheck, kEntry };
enum class EarlierRequest { kCorrected, kReversed };

// The earlier request of the same sender that a proposal is about.
struct EarlierLink {
  EarlierRequest how = EarlierRequest::kCorrected;
  std::string request;

  friend bool operator==(const EarlierLink&, const EarlierLink&) = default;
};

// The month of the fact is that of the date.
struct Proposal {
  std::string request;  // the request id, 1 to 36 bytes, by which the fact is named
  RequestType type = RequestType::kEntry;
  DateType32 date;
  // In minor units, never 0, up to kLargestAmount either way: positive when the receiver owes it to the sender.
  std::int64_t amount = 0;
  std::string currency;  // three capital letters; empty when the sender has none
  std::string document;  // up to 100 bytes
  std::string name;      // up to 500 bytes
  std::string memo;      // up to 4000 bytes
  std::string hint;      // the leaf name of an account, up to 100 bytes
  std::optional<EarlierLink> earlier;

  friend bool operator==(const Proposal&, const Proposal&) = default;
};

struct Withdrawal {
  std::string request;
  std::string month;  // that of the proposal

  friend bool operator==(const Withdrawal&, const Withdrawal&) = default;
};

// In the order in which they rank where there are several.
enum class Outcome { kAccepted, kRejected, kRefused, kWithdrawn };

// An answer is of its proposal's name, month and pairing, and of another author.
struct Answer {
  Outcome outcome = Outcome::kAccepted;
  std::int32_t entry = 0;  // accepted: the number of the receiver's transaction; otherwise 0
  DateType32 day;          // accepted: its day; otherwise the null date
  std::string reason;      // rejected, refused: why, up to 4000 bytes, if anything was said
  Fact proposal;           // signed by its author and understood

  friend bool operator==(const Answer&, const Answer&) = default;
};

// By whom the request that a remark is about was made.
enum class Asker { kAuthor, kPartner };  // of the remark

// What a company says about a request, and what decides nothing. A dispute is of the one that is asked.
struct Remark {
  bool isDispute = false;
  std::string id;       // 32 digits of its own, by which the fact is named
  std::string request;  // 1 to 36 bytes
  std::string month;    // that of the proposal
  Asker asker = Asker::kPartner;
  std::string text;  // 1 to 4000 bytes

  friend bool operator==(const Remark&, const Remark&) = default;
};

// The author signs with another key from now on, which a person has to compare, or has signed with another one before.
// Of no month.
struct NewKey {
  PublicKey key;          // another one than the author's
  bool isFormer = false;  // the author's has replaced it; otherwise it replaces the author's

  friend bool operator==(const NewKey&, const NewKey&) = default;
};

using Meaning = std::variant<PairingOffer, Proposal, Withdrawal, Answer, Remark, NewKey>;

// Does not look at the signature of the fact itself, but at that of a proposal in an answer.
Meaning MeaningOf(const Fact& fact);

// MeaningOf() for facts that are to be of one kind; of another one they are not understood.
PairingOffer PairingOfferOf(const Fact& fact);
Proposal ProposalOf(const Fact& fact);
Withdrawal WithdrawalOf(const Fact& fact);
Answer AnswerOf(const Fact& fact);
Remark RemarkOf(const Fact& fact);
NewKey NewKeyOf(const Fact& fact);

// Signed facts that say it; throw NotUnderstood, or Malformed, for what would not be understood.
Fact MakeFact(const PairingOffer& offer, std::string_view pairing, const KeyPair& author);
Fact MakeFact(const Proposal& proposal, std::string_view pairing, const KeyPair& author);
Fact MakeFact(const Withdrawal& withdrawal, std::string_view pairing, const KeyPair& author);
Fact MakeFact(const Answer& answer, const KeyPair& author);
Fact MakeFact(const Remark& remark, std::string_view pairing, const KeyPair& author);
Fact MakeFact(const NewKey& newKey, std::string_view pairing, const KeyPair& author);

// By which a fact that tells the key is named: the same when it is made again.
std::string NameOfNewKey(std::string_view pairing, const PublicKey& key);

// YYYY-MM.
std::string MonthOf(DateType32 date);

// "accepted", "rejected", "refused" or "withdrawn".
std::string_view WordOf(Outcome outcome) noexcept;
// "bill", "check" or "entry".
std::string_view WordOf(RequestType type) noexcept;

}  // namespace exchange
