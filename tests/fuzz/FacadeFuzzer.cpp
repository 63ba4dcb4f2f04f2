#include <algorithm>
#include <cstring>
#include <vector>

#include "MultiEntity/MultiEntityDriver.h"
#include "fuzz/ModuleFuzzing.h"

// Realm ids, request ids, names and amounts as a host hands them in, one on each line of the input. They are data: what
// is too long is refused before the store is asked, the rest reaches the store and the log byte by byte.

namespace {

using fuzzing::Host;
using fuzzing::Require;

struct Input {
  Util::TString realm;
  Util::TString request;
  Util::TString name;
  Util::TString amount;
};

// What a text is to whoever reads it up to its NUL.
std::string Shown(const Util::TString& text) {
  return text.c_str();
}

template <std::size_t kWidth>
std::string Field(const char (&field)[kWidth]) {
  const auto* end = static_cast<const char*>(std::memchr(field, '\0', kWidth));
  return {field, end == nullptr ? kWidth : static_cast<std::size_t>(end - field)};
}

bool IsRealmId(const Util::TString& text) {
  return text.size() >= 1 && text.size() <= kRealmIdLength;
}

bool IsRequestId(const Util::TString& text) {
  return text.size() >= 1 && text.size() <= kRequestIdLength;
}

void Arrange(Host& host) {
  host.permissions.administrator = true;
  host.chart.accounts = {{11, {.name = "Due from"}}, {12, {.name = "Due to"}}, {15, {.name = "Rent"}}};
  host.names.names = {{31, {.text = "Airline"}}};
}

void Relate(const Input& input) {
  Host host;
  Arrange(host);
  const MEStatusCode status =
      MultiEntityDriver::CreateRelation(input.realm, input.name, MERelationType{}, MEStateEstablished,
                                        {{.name = {}, .type = 0, .accountId = 11, .role = MEAccountRoleDueFrom},
                                         {.name = {}, .type = 0, .accountId = 12, .role = MEAccountRoleDueTo}});
  const bool isNameValid = input.name.size() >= 1 && input.name.size() <= kPartnerNameLength;
  if (!IsRealmId(input.realm) || !isNameValid) {
    Require(status == MEStatusInvalidData && host.CountOf("GetRelation") == 0, "bad data is refused before the store");
    Require(
        host.Logged("MULTIENTITY_ERROR::CreateRelation failed as Invalid data for realm [" + Shown(input.realm) + "]"),
        "the refused realm is in the log as it was given");
    Require(host.store.relations.empty(), "a refused relation is not stored");
    return;
  }
  Require(status == MEStatusSuccess && host.store.relations.size() == 1, "a relation is stored");
  Require(Field(host.store.relations[0].realmId) == Shown(input.realm), "the realm id is stored as it was given");
  Require(Field(host.store.relations[0].partnerName) == Shown(input.name), "the name is stored as it was given");

  DBMultiEntityRelation row{};
  const bool isFound = MultiEntityDriver::GetRelation(input.realm, row) == MEStatusSuccess;
  const bool hasNul = Shown(input.realm).size() != input.realm.size();
  Require(isFound != hasNul, "the relation is found under its realm id");
  Require(
      hasNul == host.Logged("MULTIENTITY_WARNING:: not able to get the relation as it is not part of table realm [" +
                            Shown(input.realm) + "]"),
      "a realm that is not found is in the log as it was given");
}

void Move(const Input& input) {
  Host host;
  Arrange(host);
  const MEStatusCode status =
      MultiEntityDriver::UpdateTransactionWithState(input.realm, input.request, MEStateEstablished);
  Require(status == MEStatusInvalidData, "there is nothing to be moved");
  const bool isAsked = IsRealmId(input.realm) && IsRequestId(input.request);
  Require(host.CountOf("GetRelation") == (isAsked ? 1U : 0U), "bad ids are refused before the store");
  const std::string refused = "MULTIENTITY_ERROR::UpdateRelationsWithState failed as Invalid data for ";
  if (!IsRealmId(input.realm)) {
    Require(host.Logged(refused + "realm [" + Shown(input.realm) + "]"), "the realm is in the log as it was given");
  } else if (!IsRequestId(input.request)) {
    Require(host.Logged(refused + "requestId [" + Shown(input.request) + "]"),
            "the request id is in the log as it was given");
  }
}

void Book(const Input& input) {
  Host host;
  Arrange(host);
  host.store.relations = {RelationRow({.relationId = 5, .realmId = "9130"})};
  std::uint32_t txnId = 0;
  const MEStatusCode status = MultiEntityDriver::RecordGeneralJournalEntry(
      "9130", {.name = input.name, .type = KrEnumerations::kExpense, .accountId = -1, .role = MEAccountRoleDueFrom}, 12,
      input.amount, input.request, {.name = input.name, .nameId = 31}, txnId);
  std::int64_t sum = 0;
  for (const auto& [id, line] : host.lines.lines) sum += line.minorUnits;
  Require(sum == 0, "the books balance");
  if (status != MEStatusSuccess) {
    Require(host.store.transactions.empty() && host.lines.lines.empty(), "a refused booking leaves nothing booked");
    return;
  }
  Require(host.store.transactions.size() == 1 && host.lines.lines.size() == 2, "an entry has its row");
  const bool fits = Shown(input.request).size() <= kRequestIdLength;
  Require(Field(host.store.transactions[0].requestId) == (fits ? Shown(input.request) : ""),
          "the request id is stored as it was given, or not at all");
  Require(host.CountOf("InvalidParameter") == (fits ? 0U : 1U), "a request id that does not fit is told to the host");
  Require(!fits || Shown(input.request).size() != input.request.size() || input.request.empty() ||
              MultiEntityDriver::DoesTransactionExist("9130", input.request) == MEStatusSuccess,
          "a booked request is known");
}

void Reject(const Input& input) {
  Host host;
  Arrange(host);
  host.store.relations = {RelationRow({.relationId = 5, .realmId = "9130"})};
  const MEStatusCode status =
      MultiEntityDriver::SaveRejectedTransaction(input.request, kTxnTypeBill, "9130", input.amount, input.name);
  Require(status == MEStatusSuccess && host.store.rejected.size() == 1, "a rejection is remembered");
  const DBMultiEntityRejectedTxnReceiver& row = host.store.rejected[0];
  const auto stored = [](const Util::TString& text, std::size_t most) {
    return Shown(text).size() <= most ? Shown(text) : std::string();
  };
  Require(Field(row.requestId) == stored(input.request, kRequestIdLength), "the request id is stored or left out");
  Require(Field(row.amount) == stored(input.amount, kRejectedAmountLength), "the amount is stored or left out");
  Require(Field(row.partnerTxnId) == stored(input.name, kPartnerTxnIdLength), "the partner's id is stored or left out");

  std::vector<MERejectedTxnInfo> list;
  Require(MultiEntityDriver::GetAllRejectedTransaction(list) == MEStatusSuccess && list.size() == 1, "it is listed");
  Require(Shown(list[0].requestId) == Field(row.requestId) && Shown(list[0].partnerTxnId) == Field(row.partnerTxnId),
          "the ids are listed as they are stored");

  host.permissions.administrator = false;
  Require(MultiEntityDriver::GetAllRejectedTransaction(list) == MEStatusSuccess && list.size() == 1, "it is hidden");
  Require(host.Logged("MULTIENTITY: No permission to update Bills for Request Id: " + Field(row.requestId)),
          "the hidden request is in the log as it is stored");
}

void Compare(const Input& input) {
  Host host;
  host.databasePreferences.values["MERealmId"] = "9130";
  host.messages.answer = kAnswerYes;
  const bool isBlocked = MultiEntityDriver::BlockUserIfRealmReset(input.realm);
  Require(isBlocked == (input.realm != "9130"), "another realm than the remembered one blocks the user");
  Require(host.databasePreferences.values["MERealmId"] == "9130", "the remembered realm stays");
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  std::string_view rest = fuzzing::Text(bytes, size);
  Input input;
  input.realm = fuzzing::TakeLine(rest);
  input.request = fuzzing::TakeLine(rest);
  input.name = fuzzing::TakeLine(rest);
  input.amount = rest;
  Relate(input);
  Move(input);
  Book(input);
  Reject(input);
  Compare(input);
  return 0;
}
