#include "standalone/exchange/Kinds.h"

#include <algorithm>
#include <array>
#include <type_traits>
#include <utility>
#include <vector>

#include "standalone/exchange/Errors.h"
#include "standalone/values/Amount.h"
#include "standalone/values/CheckedText.h"
#include "standalone/values/Dates.h"
#include "standalone/values/Text.h"

namespace exchange {

namespace {

using standalone::InvalidInput;
using standalone::Quoted;

constexpr std::array<std::pair<std::string_view, PairingStep>, 3> kSteps{{
    {kinds::kInvitation, PairingStep::kInvitation},
    {kinds::kAcceptance, PairingStep::kAcceptance},
    {kinds::kConfirmation, PairingStep::kConfirmation},
}};
constexpr std::array<std::pair<std::string_view, RequestType>, 3> kTypes{{
    {"bill", RequestType::kBill},
    {"check", RequestType::kCheck},
    {"entry", RequestType::kEntry},
}};
constexpr std::array<std::pair<std::string_view, Outcome>, 4> kOutcomes{{
    {"accepted", Outcome::kAccepted},
    {"rejected", Outcome::kRejected},
    {"refused", Outcome::kRefused},
    {"withdrawn", Outcome::kWithdrawn},
}};

constexpr std::array<std::pair<std::string_view, Asker>, 2> kAskers{{
    {"author", Asker::kAuthor},
    {"partner", Asker::kPartner},
}};

template <typename Words>
auto FindWord(const Words& words, std::string_view word) {
  const auto found = std::ranges::find(words, word, [](const auto& pair) { return pair.first; });
  return found == words.end() ? std::nullopt : std::optional(found->second);
}

template <typename Words, typename Value>
std::string_view FindWordOf(const Words& words, Value value) noexcept {
  return std::ranges::find(words, value, [](const auto& pair) { return pair.second; })->first;
}

// What is said otherwise is put together only then: there is much to require of each fact.
template <typename Otherwise>
void Require(const Fact& fact, bool holds, Otherwise&& otherwise) {
  if (holds) return;
  if constexpr (std::is_invocable_v<Otherwise>) {
    throw NotUnderstood("The " + fact.What().kind + " " + otherwise() + ".");
  } else {
    throw NotUnderstood("The " + fact.What().kind + " " + std::string(otherwise) + ".");
  }
}

// Has what is not acceptable as a value make the fact not understood.
template <typename Work>
auto Understood(Work&& work) {
  try {
    return std::forward<Work>(work)();
  } catch (const NotUnderstood&) {
    throw;
  } catch (const InvalidInput& error) {
    throw NotUnderstood(error.what());
  }
}

// The fields of a fact, each of which has to be asked for.
class TakenFields {
 public:
  explicit TakenFields(const Fact& fact) : fact_(fact) {}

  // Empty when the fact has no such field.
  std::string_view Take(std::string_view name) {
    const Fields& fields = fact_.What().fields;
    const auto found = fields.find(name);
    if (found == fields.end()) return {};
    Require(fact_, !found->second.empty(),
            [&] { return "has an empty field " + Quoted(name) + ", which is left out when it is empty"; });
    ++taken_;
    return found->second;
  }

  std::string_view Need(std::string_view name) {
    const std::string_view value = Take(name);
    Require(fact_, !value.empty(), [&] { return "has no field " + Quoted(name); });
    return value;
  }

  std::string Text(std::string_view name, std::size_t most) {
    return std::string(standalone::RequireText("The field " + Quoted(name), Take(name), 0, most));
  }

  void RequireNoOther() const {
    Require(fact_, taken_ == fact_.What().fields.size(), "has a field that this version does not know");
  }

 private:
  const Fact& fact_;
  std::size_t taken_ = 0;
};

std::string CurrencyOf(const Fact& fact, TakenFields& fields) {
  const std::string_view code = fields.Take("currency");
  const bool isCode = code.size() == 3 && std::ranges::all_of(code, [](char c) { return c >= 'A' && c <= 'Z'; });
  Require(fact, code.empty() || isCode,
          [&] { return "has the currency " + Quoted(code) + "; one is three capital letters"; });
  return std::string(code);
}

// A whole number as this program writes it: no sign but a minus, no leading zeros.
std::optional<std::int64_t> NumberOf(std::string_view text) {
  const std::optional<std::int64_t> number = standalone::ParseAmount(text, standalone::Decimals(0));
  return number && std::to_string(*number) == text ? number : std::nullopt;
}

standalone::Decimals DecimalsIn(const Fact& fact, std::string_view text) {
  const std::optional<std::int64_t> count = NumberOf(text);
  Require(fact, count && *count >= 0 && *count <= standalone::Decimals::kMost,
          "has " + Quoted(text) + " decimals; amounts have 0 to 4");
  return standalone::Decimals(*count);
}

PairingOffer ReadPairingOffer(const Fact& fact, PairingStep step) {
  const Statement& what = fact.What();
  Require(fact, what.name == what.pairing && what.month.empty(), "is not named by its pairing alone");
  TakenFields fields(fact);
  PairingOffer offer;
  offer.step = step;
  offer.company = standalone::PartnerName(fields.Need("company")).Text();
  offer.realm = standalone::RealmId(fields.Need("realm")).Text();
  offer.currency = CurrencyOf(fact, fields);
  offer.decimals = DecimalsIn(fact, fields.Need("decimals"));
  if (step == PairingStep::kAcceptance) offer.replyTo = Hash::FromHex(fields.Need(kinds::kInvitation));
  if (step == PairingStep::kConfirmation) offer.replyTo = Hash::FromHex(fields.Need(kinds::kAcceptance));
  fields.RequireNoOther();
  return offer;
}

std::optional<EarlierLink> EarlierOf(const Fact& fact, TakenFields& fields) {
  const std::string_view corrected = fields.Take("corrects");
  const std::string_view reversed = fields.Take("reverses");
  Require(fact, corrected.empty() || reversed.empty(), "both corrects and reverses a request");
  const std::string_view request = corrected.empty() ? reversed : corrected;
  if (request.empty()) return std::nullopt;
  Require(fact, request != fact.What().name, "names itself as the earlier request");
  return EarlierLink{.how = corrected.empty() ? EarlierRequest::kReversed : EarlierRequest::kCorrected,
                     .request = standalone::RequestId(request).Text()};
}

std::int64_t AmountOf(const Fact& fact, std::string_view text) {
  const std::optional<std::int64_t> amount = NumberOf(text);
  Require(fact, amount && *amount != 0, [&] {
    return "has the amount " + Quoted(text) +
           "; one is a whole number of minor units other than 0, up to 9999999999999 either way";
  });
  return *amount;
}

Proposal ReadProposal(const Fact& fact) {
  const Statement& what = fact.What();
  TakenFields fields(fact);
  const std::string_view type = fields.Need("type");
  const std::optional<RequestType> known = FindWord(kTypes, type);
  Require(fact, known.has_value(),
          [&] { return "is of type " + Quoted(type) + "; it is a bill, a check or an entry"; });
  Proposal proposal{.request = standalone::RequestId(what.name).Text(),
                    .type = *known,
                    .date = standalone::ParseDate("The proposal's date", fields.Need("date")),
                    .amount = AmountOf(fact, fields.Need("amount")),
                    .currency = CurrencyOf(fact, fields),
                    .document = fields.Text("document", standalone::kDocumentNumberLength),
                    .name = fields.Text("name", standalone::kListFullNameLength),
                    .memo = fields.Text("memo", standalone::kMemoLength),
                    .hint = fields.Text("hint", standalone::kListNameLength),
                    .earlier = EarlierOf(fact, fields)};
  fields.RequireNoOther();
  Require(fact, what.month == MonthOf(proposal.date), "is of another month than its date");
  return proposal;
}

Withdrawal ReadWithdrawal(const Fact& fact) {
  const Statement& what = fact.What();
  TakenFields(fact).RequireNoOther();
  Require(fact, !what.month.empty(), "is of no month");
  return {.request = standalone::RequestId(what.name).Text(), .month = what.month};
}

Fact ProposalIn(const Fact& fact, std::string_view wire) {
  Fact proposal = Fact::VerifiedFromWire(wire);
  const Statement& asked = proposal.What();
  const Statement& what = fact.What();
  Require(fact, asked.kind == kinds::kProposal, [&] { return "answers a fact of kind " + Quoted(asked.kind); });
  Require(fact, asked.name == what.name, "answers a proposal of another request");
  Require(fact, asked.pairing == what.pairing, "answers a proposal of another pairing");
  Require(fact, asked.author != what.author, "answers a proposal of its own author");
  Require(fact, asked.month == what.month, "is of another month than the proposal that it answers");
  ReadProposal(proposal);
  return proposal;
}

std::int32_t EntryOf(const Fact& fact, std::string_view text) {
  const std::optional<std::int64_t> number = NumberOf(text);
  Require(fact, number && *number >= 1 && *number <= standalone::kLargestRecordNumber,
          [&] { return "has the entry " + Quoted(text) + "; one is a whole number from 1 on"; });
  return static_cast<std::int32_t>(*number);
}

Answer ReadAnswer(const Fact& fact) {
  TakenFields fields(fact);
  const std::string_view word = fields.Need("outcome");
  const std::optional<Outcome> outcome = FindWord(kOutcomes, word);
  Require(fact, outcome.has_value(),
          [&] { return "has the outcome " + Quoted(word) + "; it is accepted, rejected, refused or withdrawn"; });
  Answer answer{.outcome = *outcome, .day = {}, .reason = {}, .proposal = ProposalIn(fact, fields.Need("proposal"))};
  if (*outcome == Outcome::kAccepted) {
    answer.entry = EntryOf(fact, fields.Need("entry"));
    answer.day = standalone::ParseDate("The answer's day", fields.Need("day"));
  }
  if (*outcome == Outcome::kRejected || *outcome == Outcome::kRefused) {
    answer.reason = fields.Text("reason", standalone::kMemoLength);
  }
  fields.RequireNoOther();
  return answer;
}

Asker AskerOf(const Fact& fact, std::string_view word) {
  const std::optional<Asker> asker = FindWord(kAskers, word);
  Require(fact, asker.has_value(), "has the asker " + Quoted(word) + "; it is the author or the partner");
  return *asker;
}

Remark ReadRemark(const Fact& fact, bool isDispute) {
  const Statement& what = fact.What();
  Require(fact, IsPairingId(what.name), "is named " + Quoted(what.name) + "; it is named by 32 digits of its own");
  Require(fact, !what.month.empty(), "is of no month");
  TakenFields fields(fact);
  Remark remark{.isDispute = isDispute,
                .id = what.name,
                .request = standalone::RequestId(fields.Need("about")).Text(),
                .month = what.month,
                .asker = isDispute ? Asker::kPartner : AskerOf(fact, fields.Need("asker")),
                .text = std::string(
                    standalone::RequireText("The field \"text\"", fields.Need("text"), 1, standalone::kMemoLength))};
  fields.RequireNoOther();
  return remark;
}

NewKey ReadNewKey(const Fact& fact) {
  const Statement& what = fact.What();
  TakenFields fields(fact);
  const bool isFormer = what.fields.contains("former");
  const NewKey newKey{.key = PublicKey::FromHex(fields.Need(isFormer ? "former" : "key")), .isFormer = isFormer};
  fields.RequireNoOther();
  Require(fact, newKey.key != what.author, "has the key of its author");
  Require(fact, what.month.empty() && what.name == NameOfNewKey(what.pairing, newKey.key), "is not named by its key");
  return newKey;
}

template <typename Kind>
Kind Only(const Fact& fact) {
  Meaning meaning = MeaningOf(fact);
  Kind* const said = std::get_if<Kind>(&meaning);
  Require(fact, said != nullptr, "stands where another kind belongs");
  return std::move(*said);
}

using Given = std::vector<std::pair<std::string_view, std::string>>;

Fields NotEmpty(Given given) {
  Fields fields;
  for (auto& [name, value] : given) {
    if (!value.empty()) fields.emplace(name, std::move(value));
  }
  return fields;
}

// Whoever reads it understands it, or it is not made.
Fact Understandable(Fact fact) {
  MeaningOf(fact);
  return fact;
}

}  // namespace

Meaning MeaningOf(const Fact& fact) {
  return Understood([&fact]() -> Meaning {
    const std::string& kind = fact.What().kind;
    if (const std::optional<PairingStep> step = FindWord(kSteps, kind)) return ReadPairingOffer(fact, *step);
    if (kind == kinds::kProposal) return ReadProposal(fact);
    if (kind == kinds::kWithdrawal) return ReadWithdrawal(fact);
    if (kind == kinds::kAnswer) return ReadAnswer(fact);
    if (kind == kinds::kDispute || kind == kinds::kNote) return ReadRemark(fact, kind == kinds::kDispute);
    if (kind == kinds::kNewKey) return ReadNewKey(fact);
    throw NotUnderstood("This version does not know facts of kind " + Quoted(kind) + ".");
  });
}

PairingOffer PairingOfferOf(const Fact& fact) {
  return Only<PairingOffer>(fact);
}

Proposal ProposalOf(const Fact& fact) {
  return Only<Proposal>(fact);
}

Withdrawal WithdrawalOf(const Fact& fact) {
  return Only<Withdrawal>(fact);
}

Answer AnswerOf(const Fact& fact) {
  return Only<Answer>(fact);
}

Remark RemarkOf(const Fact& fact) {
  return Only<Remark>(fact);
}

NewKey NewKeyOf(const Fact& fact) {
  return Only<NewKey>(fact);
}

Fact MakeFact(const PairingOffer& offer, std::string_view pairing, const KeyPair& author) {
  const std::string_view replyField =
      offer.step == PairingStep::kConfirmation ? kinds::kAcceptance : kinds::kInvitation;
  return Understandable(
      Fact::Signed({.pairing = std::string(pairing),
                    .author = author.Public(),
                    .kind = std::string(FindWordOf(kSteps, offer.step)),
                    .name = std::string(pairing),
                    .month = {},
                    .fields = NotEmpty({{"company", offer.company},
                                        {"realm", offer.realm},
                                        {"currency", offer.currency},
                                        {"decimals", std::to_string(offer.decimals.Count())},
                                        {replyField, offer.replyTo ? offer.replyTo->Hex() : std::string()}})},
                   author));
}

Fact MakeFact(const Proposal& proposal, std::string_view pairing, const KeyPair& author) {
  Given given{{"type", std::string(WordOf(proposal.type))},
              {"date", standalone::FormatIsoDate(proposal.date)},
              {"amount", std::to_string(proposal.amount)},
              {"currency", proposal.currency},
              {"document", proposal.document},
              {"name", proposal.name},
              {"memo", proposal.memo},
              {"hint", proposal.hint}};
  if (proposal.earlier) {
    given.emplace_back(proposal.earlier->how == EarlierRequest::kCorrected ? "corrects" : "reverses",
                       proposal.earlier->request);
  }
  return Understandable(Fact::Signed({.pairing = std::string(pairing),
                                      .author = author.Public(),
                                      .kind = std::string(kinds::kProposal),
                                      .name = proposal.request,
                                      .month = MonthOf(proposal.date),
                                      .fields = NotEmpty(std::move(given))},
                                     author));
}

Fact MakeFact(const Withdrawal& withdrawal, std::string_view pairing, const KeyPair& author) {
  return Understandable(Fact::Signed({.pairing = std::string(pairing),
                                      .author = author.Public(),
                                      .kind = std::string(kinds::kWithdrawal),
                                      .name = withdrawal.request,
                                      .month = withdrawal.month,
                                      .fields = {}},
                                     author));
}

Fact MakeFact(const Answer& answer, const KeyPair& author) {
  const Statement& asked = answer.proposal.What();
  return Understandable(
      Fact::Signed({.pairing = asked.pairing,
                    .author = author.Public(),
                    .kind = std::string(kinds::kAnswer),
                    .name = asked.name,
                    .month = asked.month,
                    .fields = NotEmpty({{"outcome", std::string(WordOf(answer.outcome))},
                                        {"entry", answer.entry == 0 ? std::string() : std::to_string(answer.entry)},
                                        {"day", standalone::FormatIsoDate(answer.day)},
                                        {"reason", answer.reason},
                                        {"proposal", answer.proposal.Wire()}})},
                   author));
}

Fact MakeFact(const Remark& remark, std::string_view pairing, const KeyPair& author) {
  const std::string_view asker = remark.isDispute ? std::string_view() : FindWordOf(kAskers, remark.asker);
  return Understandable(Fact::Signed(
      {.pairing = std::string(pairing),
       .author = author.Public(),
       .kind = std::string(remark.isDispute ? kinds::kDispute : kinds::kNote),
       .name = remark.id,
       .month = remark.month,
       .fields = NotEmpty({{"about", remark.request}, {"asker", std::string(asker)}, {"text", remark.text}})},
      author));
}

Fact MakeFact(const NewKey& newKey, std::string_view pairing, const KeyPair& author) {
  return Understandable(Fact::Signed({.pairing = std::string(pairing),
                                      .author = author.Public(),
                                      .kind = std::string(kinds::kNewKey),
                                      .name = NameOfNewKey(pairing, newKey.key),
                                      .month = {},
                                      .fields = {{newKey.isFormer ? "former" : "key", newKey.key.Hex()}}},
                                     author));
}

std::string NameOfNewKey(std::string_view pairing, const PublicKey& key) {
  constexpr std::size_t kDigits = 32;
  return HashOf("multientity-new-key-1" + std::string(pairing) + key.Hex()).Hex().substr(0, kDigits);
}

std::string MonthOf(DateType32 date) {
  constexpr std::size_t kLength = 7;
  return standalone::FormatIsoDate(date).substr(0, kLength);
}

std::string_view WordOf(Outcome outcome) noexcept {
  return FindWordOf(kOutcomes, outcome);
}

std::string_view WordOf(RequestType type) noexcept {
  return FindWordOf(kTypes, type);
}

}  // namespace exchange
