#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "standalone/desk/results/PairedPartner.h"
#include "standalone/desk/results/RelationAccounts.h"
#include "standalone/values/CheckedText.h"
#include "standalone/values/Money.h"

// How this company and a partner get to know each other, so that what they tell each other is signed and sealed: one
// invites, the other accepts, the first one confirms once a person has compared fingerprints. Those that begin or end a
// pairing need the right to manage relations, as the module asks for it.
namespace desk {

class Company;

struct Invitation {
  standalone::PartnerName partner;
  RelationAccounts accounts;     // reserved for the partner; both are needed
  std::filesystem::path folder;  // empty for none
  // The partner's, where it is known; a relation with it brings the accounts.
  std::optional<standalone::RealmId> realm = std::nullopt;
};
struct InvitationText {
  std::string text;                     // a block of text that can be mailed
  std::string fingerprint;              // of this company's key
  std::optional<std::string> newRealm;  // the realm id that this company got, if it had none
};
// Makes the company's identity and realm id if it has none.
InvitationText InvitePartner(Company& company, const Invitation& invitation);
// The text of an invitation of before.
std::string InvitationOnceMore(Company& company, const std::string& partner);

struct Acceptance {
  std::string invitation;                          // the text that the partner sent, or a mail with it
  std::optional<standalone::PartnerName> partner;  // the name that the partner gives itself when left out
  RelationAccounts accounts;                       // both, unless the relation exists already
  std::filesystem::path folder;
  bool useExistingRelation = false;  // with the partner's realm, made by hand
};
struct AcceptedInvitation {
  PairedPartner partner;
  std::string fingerprint;  // of this company's key
  std::optional<std::string> newRealm;
};
// Makes the relation, pending until the partner confirms. Refused for what is no invitation, for one of this company's
// own, for another home currency or other decimals, and for a realm that is this company's own or another partner's.
AcceptedInvitation AcceptInvitation(Company& company, const Acceptance& acceptance);

struct Confirmation {
  std::string partner;      // by name or realm id
  std::string fingerprint;  // as a person has compared it; blanks between the digits do not matter
  bool useExistingRelation = false;
};
// Establishes the relation with who has accepted. Refused unless the fingerprint is that of the key of who did. Of a
// partner as which somebody writes under another key: the key with that fingerprint is the partner's from now on, be it
// the other one or that of now, and letters under the others do not wait any more.
PairedPartner ConfirmPartner(Company& company, const Confirmation& confirmation);

// In the order in which they were begun; those that are removed only when asked for.
std::vector<PairedPartner> ListPairedPartners(Company& company, bool withRemoved = false);
PairedPartner ShowPairedPartner(Company& company, const std::string& partner);

// Nothing is sent to the partner and nothing taken from it until it is unblocked.
PairedPartner BlockPartner(Company& company, const std::string& partner);
PairedPartner UnblockPartner(Company& company, const std::string& partner);
// Ends the pairing. A relation that the partner has not confirmed goes with it; an established one stays.
PairedPartner RemovePairing(Company& company, const std::string& partner);
// Up to which amount the partner's requests are booked as soon as they come, where a rule fits; without one each waits
// for a person. Throws standalone::InvalidInput for an amount that is none of the company's or not above nothing.
PairedPartner SetBookedUpTo(Company& company, const std::string& partner,
                            const std::optional<standalone::LineAmount>& upTo);
// Where letters are put and looked for from now on; empty for nowhere.
PairedPartner SetPartnerFolder(Company& company, const std::string& partner, const std::filesystem::path& folder);

}  // namespace desk
