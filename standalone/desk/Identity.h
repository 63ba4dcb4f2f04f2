#pragma once

#include <filesystem>
#include <optional>
#include <string>

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

}  // namespace desk
