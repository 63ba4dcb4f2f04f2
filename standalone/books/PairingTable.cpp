#include "standalone/books/PairingTable.h"

#include <algorithm>
#include <utility>

#include "standalone/values/Errors.h"

namespace standalone {

namespace {

PairingState StateOf(std::string_view stored) {
  if (const std::optional<PairingState> state = PairingStateOf(stored)) return *state;
  throw CompanyFileError("The company file is damaged: it has a pairing in an unknown state.");
}

std::string_view NameOf(KeyStanding standing) noexcept {
  switch (standing) {
    case KeyStanding::kFormer:
      return "former";
    case KeyStanding::kOffered:
      return "offered";
    case KeyStanding::kDeclined:
      return "declined";
  }
  return "";
}

KeyStanding StandingNamed(std::string_view stored) {
  using enum KeyStanding;
  for (const KeyStanding standing : {kFormer, kOffered, kDeclined}) {
    if (NameOf(standing) == stored) return standing;
  }
  throw CompanyFileError("The company file is damaged: it has a partner's key of an unknown standing.");
}

Pairing ReadPairing(const Rows& rows) {
  const std::int32_t relation = rows.Int32(7);
  const std::int16_t stateBefore = rows.Int16(12);
  const std::int64_t bookedUpTo = rows.Int64(13);
  return {.id = rows.Int32(0),
          .pairingId = std::string(rows.Text(1)),
          .invitedByUs = rows.Bool(2),
          .state = StateOf(rows.Text(3)),
          .partnerName = std::string(rows.Text(4)),
          .partnerRealm = std::string(rows.Text(5)),
          .partnerKey = std::string(rows.Bytes(6)),
          .relationId = relation == 0 ? std::nullopt : std::optional(relation),
          .relationStateBefore = stateBefore == 0 ? std::nullopt : std::optional(stateBefore),
          .dueFromAccountId = rows.Int32(8),
          .dueToAccountId = rows.Int32(9),
          .folder = std::string(rows.Text(10)),
          .firstTxnId = rows.Int32(11),
          .bookedUpTo = bookedUpTo == 0 ? std::nullopt : std::optional(bookedUpTo)};
}

// There are as many pairings as there are partners, so that one statement reads them all.
template <typename Wanted>
std::optional<Pairing> FirstOf(std::vector<Pairing> pairings, Wanted&& isWanted) {
  const auto found = std::ranges::find_if(pairings, std::forward<Wanted>(isWanted));
  if (found == pairings.end()) return std::nullopt;
  return std::move(*found);
}

bool IsLive(const Pairing& pairing) noexcept {
  return pairing.state != PairingState::kRemoved;
}

}  // namespace

PairingTable::PairingTable(Database& database)
    : database_(database),
      insert_(database, Writes::kLists,
              "INSERT INTO exchange_pairing (pairing_id, invited_by_us, state, partner_name, partner_realm, "
              "partner_key, relation_id, relation_state_before, due_from_account_id, due_to_account_id, folder, "
              "first_txn_id, booked_up_to) VALUES (?1, ?2, ?3, ?4, ?5, nullif(?6, x''), nullif(?7, 0), nullif(?12, 0), "
              "?8, ?9, ?10, ?11, nullif(?13, 0))"),
      update_(database, Writes::kLists,
              "UPDATE exchange_pairing SET state = ?2, partner_name = ?3, partner_realm = ?4, "
              "partner_key = nullif(?5, x''), relation_id = nullif(?6, 0), due_from_account_id = ?7, "
              "due_to_account_id = ?8, folder = ?9, first_txn_id = ?10, relation_state_before = nullif(?11, 0), "
              "booked_up_to = nullif(?12, 0) WHERE id = ?1"),
      all_(database,
           "SELECT id, pairing_id, invited_by_us, state, partner_name, partner_realm, partner_key, relation_id, "
           "due_from_account_id, due_to_account_id, folder, first_txn_id, relation_state_before, booked_up_to "
           "FROM exchange_pairing ORDER BY id"),
      carrying_(database,
                "SELECT word, word_for, is_echoed, their_word, letters, letters_for, owes_reply, their_summary, "
                "telling, worked_through, compared_since, is_compared "
                "FROM exchange_carrying WHERE pairing_id = ?1"),
      setCarrying_(database, Writes::kLists,
                   "INSERT INTO exchange_carrying (pairing_id, word, word_for, is_echoed, their_word, letters, "
                   "letters_for, owes_reply, their_summary, telling, worked_through, compared_since, is_compared) "
                   "VALUES (?1, ?2, ?3, ?4, ?5, ?6, ?7, ?8, ?9, ?10, ?11, ?12, ?13) "
                   "ON CONFLICT (pairing_id) DO UPDATE SET word = ?2, word_for = ?3, is_echoed = ?4, "
                   "their_word = ?5, letters = ?6, letters_for = ?7, owes_reply = ?8, their_summary = ?9, "
                   "telling = ?10, worked_through = ?11, compared_since = ?12, is_compared = ?13"),
      insertKey_(database, Writes::kLists, "INSERT OR REPLACE INTO exchange_own_key (public_key) VALUES (?1)"),
      insertKnownKey_(database, Writes::kLists,
                      "INSERT INTO exchange_own_key (public_key, signs) VALUES (?1, 0) ON CONFLICT DO NOTHING"),
      keys_(database, "SELECT public_key FROM exchange_own_key ORDER BY signs, id"),
      lookedFor_(database, "SELECT looked_for FROM exchange_left"),
      setLookedFor_(database, Writes::kLists, "UPDATE exchange_left SET looked_for = ?1"),
      cameBack_(database, "SELECT came_back_compared, came_back_confirmed FROM exchange_left"),
      setCameBack_(database, Writes::kLists,
                   "UPDATE exchange_left SET came_back_compared = ?1, came_back_confirmed = ?2"),
      partnerKeys_(database,
                   "SELECT public_key, standing, announced FROM exchange_partner_key WHERE pairing_id = ?1 "
                   "AND public_key IS NOT (SELECT partner_key FROM exchange_pairing WHERE id = ?1) "
                   "ORDER BY public_key"),
      setPartnerKey_(database, Writes::kLists,
                     "INSERT INTO exchange_partner_key (pairing_id, public_key, standing, announced) "
                     "VALUES (?1, ?2, ?3, ?4) "
                     "ON CONFLICT (pairing_id, public_key) DO UPDATE SET standing = ?3, announced = ?4") {}

std::int32_t PairingTable::Add(const Pairing& pairing) {
  insert_.Run(pairing.pairingId, pairing.invitedByUs, NameOf(pairing.state), pairing.partnerName, pairing.partnerRealm,
              Blob{pairing.partnerKey}, pairing.relationId.value_or(0), pairing.dueFromAccountId,
              pairing.dueToAccountId, pairing.folder, pairing.firstTxnId, pairing.relationStateBefore.value_or(0),
              pairing.bookedUpTo.value_or(0));
  return static_cast<std::int32_t>(database_.LastInsertedId());
}

void PairingTable::Change(const Pairing& pairing) {
  update_.Run(pairing.id, NameOf(pairing.state), pairing.partnerName, pairing.partnerRealm, Blob{pairing.partnerKey},
              pairing.relationId.value_or(0), pairing.dueFromAccountId, pairing.dueToAccountId, pairing.folder,
              pairing.firstTxnId, pairing.relationStateBefore.value_or(0), pairing.bookedUpTo.value_or(0));
}

std::vector<Pairing> PairingTable::List() {
  std::vector<Pairing> pairings;
  for (Rows rows = all_.Query(); rows.Step();) pairings.push_back(ReadPairing(rows));
  return pairings;
}

std::optional<Pairing> PairingTable::Find(std::int32_t id) {
  return FirstOf(List(), [id](const Pairing& pairing) { return pairing.id == id; });
}

std::optional<Pairing> PairingTable::FindByPairingId(std::string_view pairingId) {
  return FirstOf(List(), [pairingId](const Pairing& pairing) { return pairing.pairingId == pairingId; });
}

std::optional<Pairing> PairingTable::FindLiveOf(std::int32_t relationId) {
  return FirstOf(List(),
                 [relationId](const Pairing& pairing) { return IsLive(pairing) && pairing.relationId == relationId; });
}

bool PairingTable::IsReserved(std::int32_t accountId) {
  return FirstOf(List(),
                 [accountId](const Pairing& pairing) {
                   return IsLive(pairing) && !pairing.relationId &&
                          (pairing.dueFromAccountId == accountId || pairing.dueToAccountId == accountId);
                 })
      .has_value();
}

Carrying PairingTable::CarryingOf(std::int32_t id) {
  Rows rows = carrying_.Query(id);
  if (!rows.Step()) return {};
  return {.word = std::string(rows.Text(0)),
          .wordFor = std::string(rows.Text(1)),
          .isEchoed = rows.Bool(2),
          .theirWord = std::string(rows.Text(3)),
          .letters = std::string(rows.Text(4)),
          .lettersFor = std::string(rows.Text(5)),
          .owesReply = rows.Bool(6),
          .theirSummary = std::string(rows.Text(7)),
          .telling = std::string(rows.Text(8)),
          .workedThrough = std::string(rows.Text(9)),
          .comparedSince = std::string(rows.Text(10)),
          .isCompared = rows.Bool(11)};
}

void PairingTable::SetCarrying(std::int32_t id, const Carrying& carrying) {
  setCarrying_.Run(id, carrying.word, carrying.wordFor, carrying.isEchoed, carrying.theirWord, carrying.letters,
                   carrying.lettersFor, carrying.owesReply, carrying.theirSummary, carrying.telling,
                   carrying.workedThrough, carrying.comparedSince, carrying.isCompared);
}

std::uint64_t PairingTable::LookedFor() {
  Rows rows = lookedFor_.Query();
  return rows.Step() ? static_cast<std::uint64_t>(rows.Int64(0)) : 0;
}

void PairingTable::SetLookedFor(std::uint64_t count) {
  setLookedFor_.Run(static_cast<std::int64_t>(count));
}

CameBackUpTo PairingTable::CameBack() {
  Rows rows = cameBack_.Query();
  if (!rows.Step()) return {};
  return {.compared = rows.Int64(0), .confirmed = rows.Int64(1)};
}

void PairingTable::SetCameBack(const CameBackUpTo& upTo) {
  setCameBack_.Run(upTo.compared, upTo.confirmed);
}

std::vector<PartnerKey> PairingTable::PartnerKeysOf(std::int32_t id) {
  std::vector<PartnerKey> keys;
  for (Rows rows = partnerKeys_.Query(id); rows.Step();) {
    keys.push_back(
        {.key = std::string(rows.Bytes(0)), .standing = StandingNamed(rows.Text(1)), .isAnnounced = rows.Bool(2)});
  }
  return keys;
}

void PairingTable::SetPartnerKey(std::int32_t id, const PartnerKey& key) {
  setPartnerKey_.Run(id, Blob{key.key}, NameOf(key.standing), key.isAnnounced);
}

void PairingTable::AddOwnKey(std::string_view publicKey) {
  insertKey_.Run(Blob{publicKey});
}

void PairingTable::KnowOwnKey(std::string_view publicKey) {
  insertKnownKey_.Run(Blob{publicKey});
}

std::vector<std::string> PairingTable::OwnKeys() {
  std::vector<std::string> keys;
  for (Rows rows = keys_.Query(); rows.Step();) keys.emplace_back(rows.Bytes(0));
  return keys;
}

}  // namespace standalone
