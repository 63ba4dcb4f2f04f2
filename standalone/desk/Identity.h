#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace desk {

class Company;

// Who this company is to its partners.
struct OwnIdentity {
  std::filesystem::path file;
  std::string fingerprint;
  std::string realm;
};
// Whether one lies beside a company, as beside each that was ever paired and was not moved away.
bool HasIdentity(const std::filesystem::path& company);
// None while it has never been paired. Refused where the identity that belongs to the books is missing or another one.
std::optional<OwnIdentity> ShowIdentity(Company& company);
// The identity as a text that only the passphrase opens, for a move to another machine. For administrators.
std::string ExportIdentity(Company& company, const std::string& passphrase);
// Refused where there is one, and unless it is the one of these books or they have none. For administrators.
OwnIdentity ImportIdentity(Company& company, const std::string& text, const std::string& passphrase);

enum class KeyOfNow { kIsThere, kIsLost };
struct ReplacedKey {
  OwnIdentity identity;
  std::string before;                 // the fingerprint that it had
  std::vector<std::string> partners;  // who have to confirm the new one
};
// Gives the company another key, of which each partner is told under the one before, if that is there. The identity is
// replaced, or made anew where it is lost; refused where it is there and said to be lost, while letters are being
// carried, and for a company that is paired with nobody. For administrators.
ReplacedKey ReplaceKey(Company& company, KeyOfNow key);

}  // namespace desk
