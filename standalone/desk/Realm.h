#pragma once

#include <optional>
#include <string>

#include "standalone/desk/results/Person.h"
#include "standalone/values/CheckedText.h"

namespace desk {

class Company;

// The realm id under which the company does intercompany work, as its file remembers it.
std::optional<std::string> RememberedRealm(Company& company);

// For administrators. False when it is the one that the file remembers already; std::runtime_error when it cannot be
// stored.
bool RememberRealm(Company& company, const standalone::RealmId& realm);

enum class RealmOutcome {
  kNoRealm,  // the company reports none; blocked
  kReset,    // another one than is remembered; blocked
  kUnchanged,
  kRememberedNow,  // none was
  kNotChecked,     // the check is switched off, or what is remembered could be neither read nor given
};

struct RealmCheck {
  bool blocked = false;  // intercompany work must not go on
  RealmOutcome outcome = RealmOutcome::kNotChecked;
  std::optional<std::string> before;
  std::optional<std::string> after;
};

// Checks the realm id that the company reports now, none when it reports none, against the remembered one; a company
// that remembers none is given this one, which is for administrators. May ask the person, and throws what the person's
// answer throws.
RealmCheck CheckRealm(Company& company, const std::optional<standalone::RealmId>& realm, const Person& person);

// Whether the plug-in may be opened as it was asked for. False when no relation is established and the person took the
// offer to set one up; true after a no, and when it cannot be told. Throws what the person's answer throws.
bool CheckPlugin(Company& company, const Person& person);

}  // namespace desk
