#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "standalone/storage/Statement.h"
#include "standalone/values/PairingState.h"

namespace standalone {

struct Pairing {
  std::int32_t id = 0;
  std::string pairingId;  // what both companies call it: 32 hexadecimal digits
  bool invitedByUs = false;
  PairingState state = PairingState::kInvited;
  std::string partnerName;   // as people call the partner here
  std::string partnerRealm;  // empty until the partner is known
  std::string partnerKey;    // 32 bytes, or none until the partner is known
  std::optional<std::int32_t> relationId;
  std::optional<std::int16_t> relationStateBefore;  // of one that was there before the pairing
  std::int32_t dueFromAccountId = 0;                // what the relation has or will have
  std::int32_t dueToAccountId = 0;
  std::string folder;           // where letters are put and looked for; empty for none
  std::int32_t firstTxnId = 0;  // what has lower numbers was entered before
  // In minor units: requests up to it that a rule fits are booked without a person.
  std::optional<std::int64_t> bookedUpTo = std::nullopt;
};

// How far the carrying of letters to a partner has come.
struct Carrying {
  std::string word;        // that the partner is asked to echo
  std::string wordFor;     // the summary of what this company held when the word was made
  bool isEchoed = false;   // the partner has read a letter with the word
  std::string theirWord;   // that this company is asked to echo; empty before the first letter
  std::string letters;     // the names under which the last letters were put, a line each
  std::string lettersFor;  // what they said

  bool owesReply = false;     // the partner has asked for a letter since this company has put its last one
  std::string theirSummary;   // of what the partner holds by its letter that was read last; empty before the first
  std::string telling;        // what the next letter tells of months and their hashes
  std::string workedThrough;  // the two summaries whose difference has been looked for, or is being
  std::string comparedSince;  // what made these books ask to be compared with the partner's; empty for nothing
  bool isCompared = false;    // they have been since then

  friend bool operator==(const Carrying&, const Carrying&) = default;
};

// Which facts of this company that came back, by FactTable's order, wait for nothing any more.
struct CameBackUpTo {
  std::int64_t compared = 0;   // all partners were compared with since
  std::int64_t confirmed = 0;  // a person has told how that came about

  friend bool operator==(const CameBackUpTo&, const CameBackUpTo&) = default;
};

enum class KeyStanding {
  kFormer,    // what it has signed is the partner's
  kOffered,   // letters under it wait until a person has compared the fingerprint
  kDeclined,  // a person has, and it was not the partner's
};

// A key that is not that of the pairing.
struct PartnerKey {
  std::string key;  // 32 bytes
  KeyStanding standing = KeyStanding::kOffered;
  bool isAnnounced = false;  // by the key of the pairing

  friend bool operator==(const PartnerKey&, const PartnerKey&) = default;
};

// With whom this company is paired, in the order in which it was begun. Every operation needs an open unit of work;
// ConstraintViolation for a pairing that there is and for a relation that another live one has.
class PairingTable {
 public:
  explicit PairingTable(Database& database);

  // Returns the number.
  std::int32_t Add(const Pairing& pairing);
  // All but its number, pairing id and who invited.
  void Change(const Pairing& pairing);

  // Those that are removed, too.
  std::vector<Pairing> List();
  std::optional<Pairing> Find(std::int32_t id);
  std::optional<Pairing> FindByPairingId(std::string_view pairingId);
  // The live one with the relation.
  std::optional<Pairing> FindLiveOf(std::int32_t relationId);
  // Whether a live pairing without a relation yet has reserved the account.
  bool IsReserved(std::int32_t accountId);

  // As of nothing carried for a pairing that has carried nothing.
  Carrying CarryingOf(std::int32_t id);
  void SetCarrying(std::int32_t id, const Carrying& carrying);

  // How many of the facts that left, in the order in which they did, these books need not be asked for any more.
  std::uint64_t LookedFor();
  void SetLookedFor(std::uint64_t count);
  CameBackUpTo CameBack();
  void SetCameBack(const CameBackUpTo& upTo);

  std::vector<PartnerKey> PartnerKeysOf(std::int32_t id);
  // In the place of what is known of that key.
  void SetPartnerKey(std::int32_t id, const PartnerKey& key);

  // The public keys of 32 bytes of this company: the last one is that by which these books sign now. One that is added
  // becomes that; one that is only known, and was not before, does not.
  void AddOwnKey(std::string_view publicKey);
  void KnowOwnKey(std::string_view publicKey);
  std::vector<std::string> OwnKeys();

 private:
  Database& database_;
  Statement insert_;
  Statement update_;
  Statement all_;
  Statement carrying_;
  Statement setCarrying_;
  Statement insertKey_;
  Statement insertKnownKey_;
  Statement keys_;
  Statement lookedFor_;
  Statement setLookedFor_;
  Statement cameBack_;
  Statement setCameBack_;
  Statement partnerKeys_;
  Statement setPartnerKey_;
};

}  // namespace standalone
