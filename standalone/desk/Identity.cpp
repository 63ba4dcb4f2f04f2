#include "standalone/desk/Identity.h"

#include <exception>
#include <system_error>

#include "standalone/books/PairingTable.h"
#include "standalone/company/FileNames.h"
#include "standalone/desk/Company.h"
#include "standalone/desk/inside/OwnIdentity.h"
#include "standalone/desk/inside/Work.h"
#include "standalone/exchange/ExportedIdentity.h"
#include "standalone/values/Text.h"

namespace desk {

namespace {

constexpr std::string_view kImport = "an import of the identity";

OwnIdentity IdentityOf(Work& work, const exchange::KeyPair& keys) {
  return {.file = IdentityFileOf(work),
          .fingerprint = exchange::Fingerprint(keys.Public()),
          .realm = work.RememberedRealm().value_or("")};
}

standalone::AuditDeed DeedOfIdentity(std::string action, const exchange::KeyPair& keys) {
  return {.action = std::move(action),
          .subject = "the identity " + exchange::Fingerprint(keys.Public()),
          .transactions = {},
          .changes = {}};
}

// Of books that sign with it, or have signed nothing yet.
OwnIdentity AdoptImported(Work& work) {
  return work.WriteAsAdministrator(kImport, [&] {
    const exchange::KeyPair keys = KeysBeside(work);
    const std::vector<std::string> own = work.Host().Pairings().OwnKeys();
    if (!own.empty() && own.back() != keys.Public().Bytes()) {
      work.Refuse("the identity in the text is not the one by which these books sign", Remedy::kBringTheIdentity);
    }
    work.Host().Record(DeedOfIdentity("identity.import", keys));
    return IdentityOf(work, keys);
  });
}

}  // namespace

bool HasIdentity(const std::filesystem::path& company) {
  return standalone::IsThere(standalone::IdentityOf(company));
}

std::optional<OwnIdentity> ShowIdentity(Company& company) {
  Work work(company.Opened(), UseCase::kUseIdentity);
  return work.Read([&]() -> std::optional<OwnIdentity> {
    if (!HasOwnKey(work)) return std::nullopt;
    return IdentityOf(work, RequireKeys(work));
  });
}

std::string ExportIdentity(Company& company, const std::string& passphrase) {
  Work work(company.Opened(), UseCase::kUseIdentity);
  return work.WriteAsAdministrator("an export of the identity", [&] {
    const exchange::KeyPair keys = RequireKeys(work);
    std::string text = exchange::ExportIdentity(IdentityFileOf(work), passphrase);
    work.Host().Record(DeedOfIdentity("identity.export", keys));
    return text;
  });
}

OwnIdentity ImportIdentity(Company& company, const std::string& text, const std::string& passphrase) {
  Work work(company.Opened(), UseCase::kUseIdentity);
  const std::filesystem::path file = IdentityFileOf(work);
  work.Read([&] {
    work.RequireAdministrator(kImport);
    if (!standalone::IsThere(file)) return;
    work.Refuse("this company has an identity already, which stays: " + standalone::PathText(file));
  });
  exchange::ImportIdentity(file, text, passphrase);
  try {
    return AdoptImported(work);
  } catch (const std::exception&) {
    std::error_code ignored;
    std::filesystem::remove(file, ignored);
    throw;
  }
}

}  // namespace desk
