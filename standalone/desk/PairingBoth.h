#pragma once

#include <filesystem>
#include <optional>
#include <string>

#include "standalone/desk/Company.h"
#include "standalone/desk/results/PairedPartner.h"
#include "standalone/desk/results/RelationAccounts.h"

// How two companies that lie in one place, as those of a group do, get to know each other in one go.
namespace desk {

struct CompanyToPair {
  std::filesystem::path file;
  CompanyOptions options;     // who pairs it; a user with the right to manage relations
  RelationAccounts accounts;  // for the other company; both, unless the relation exists already
};
struct CompaniesToPair {
  CompanyToPair one;
  CompanyToPair other;
  std::filesystem::path folder;       // by which letters go from now on; empty for none
  bool useExistingRelations = false;  // with each other's realm, made by hand
};

// One of both, afterwards.
struct PairedCompany {
  std::string name;                     // by which the other one calls it
  std::string fingerprint;              // of its own key
  std::optional<std::string> newRealm;  // the realm id that it got, if it had none
  PairedPartner partner;                // the other one
};
struct PairedBoth {
  PairedCompany one;
  PairedCompany other;
};

// Invites, accepts, compares the keys of both and confirms; afterwards both are established. Each company is opened for
// what it does and closed again, so none may be open. What either would refuse is looked for before anything is
// written; a pairing of both that was begun, in whichever way, is gone on with. Refused where both are paired already,
// and like InvitePartner(), AcceptInvitation() and ConfirmPartner(); what is thrown names the company's file.
PairedBoth PairBoth(const CompaniesToPair& companies);

}  // namespace desk
