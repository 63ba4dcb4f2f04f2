#include "standalone/desk/Identity.h"

#include <algorithm>
#include <exception>
#include <system_error>
#include <vector>

#include "standalone/books/PairingTable.h"
#include "standalone/company/FileNames.h"
#include "standalone/desk/Company.h"
#include "standalone/desk/inside/OwnIdentity.h"
#include "standalone/desk/inside/Pairings.h"
#include "standalone/desk/inside/Work.h"
#include "standalone/exchange/CarrierLock.h"
#include "standalone/exchange/ExportedIdentity.h"
#include "standalone/exchange/IdentityFile.h"
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
    if (!own.empty() && own.back() != keys.Public().Bytes() && !HasNewerKeys(work)) {
      work.Refuse("the identity in the text is not the one by which these books sign", Remedy::kBringTheIdentity);
    }
    work.Host().Record(DeedOfIdentity("identity.import", keys));
    return IdentityOf(work, keys);
  });
}

constexpr std::string_view kReplace = "another key";

// Who has no key of the partner's yet, or is not known to it, can be told of no other one but under the one of now.
void RequireNoneBegun(Work& work) {
  for (const standalone::Pairing& pairing : work.Host().Pairings().List()) {
    const bool isBegun = pairing.state == standalone::PairingState::kInvited ||
                         pairing.state == standalone::PairingState::kAccepted ||
                         pairing.state == standalone::PairingState::kAnswered;
    if (!isBegun) continue;
    work.Refuse("the pairing with " + PartnerText(pairing) + " was begun under the key that is lost, and is " +
                    std::string(NameOf(pairing.state)),
                Remedy::kRemoveThePairingFirst);
  }
}

// Whether the identity has another key already, and only the books lack it.
bool MayReplace(Work& work, KeyOfNow key) {
  work.RequireAdministrator(kReplace);
  if (!HasOwnKey(work)) work.Refuse("this company has not been paired with anybody", Remedy::kPairFirst);
  if (HasNewerKeys(work)) return true;
  if (key == KeyOfNow::kIsThere) {
    static_cast<void>(RequireKeys(work));
    return false;
  }
  const std::filesystem::path file = IdentityFileOf(work);
  if (standalone::IsThere(file)) {
    work.Refuse("the identity is not lost: there is " + standalone::PathText(file), Remedy::kMoveTheIdentityAway);
  }
  RequireNoneBegun(work);
  return false;
}

// Those of the company up to now, the last one first.
std::vector<exchange::PublicKey> KeysUpToNow(Work& work) {
  std::vector<exchange::PublicKey> keys;
  for (const std::string& key : work.Host().Pairings().OwnKeys()) keys.push_back(exchange::PublicKey::FromBytes(key));
  std::ranges::reverse(keys);
  return keys;
}

ReplacedKey TakeUpReplaced(Work& work) {
  return work.WriteAsAdministrator(kReplace, [&] {
    const standalone::AuditDeed deed = TakeUpKeys(work);
    work.Host().Record(deed);
    ReplacedKey replaced{.identity = IdentityOf(work, KeysBeside(work)),
                         .before = deed.changes.front().before.value_or(""),
                         .partners = {}};
    for (const standalone::Pairing& pairing : work.Host().Pairings().List()) {
      if (pairing.state != standalone::PairingState::kRemoved) replaced.partners.push_back(pairing.partnerName);
    }
    return replaced;
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

// The identity first, as books that know a key whose seed nobody has could never sign again.
ReplacedKey ReplaceKey(Company& company, KeyOfNow key) {
  Work work(company.Opened(), UseCase::kUseIdentity);
  static_cast<void>(work.Read([&] { return MayReplace(work, key); }));
  const std::filesystem::path file = IdentityFileOf(work);
  const exchange::CarrierLock lock = RequireCarrierLock(work);
  // Somebody else may have replaced it until now.
  if (work.Read([&] { return MayReplace(work, key); })) return TakeUpReplaced(work);
  if (key == KeyOfNow::kIsLost) {
    const std::vector<exchange::PublicKey> lost = work.Read([&] { return KeysUpToNow(work); });
    exchange::IdentityFile::MakeForLost(file, exchange::KeyPair(), lost);
  } else {
    exchange::IdentityFile::Replace(lock, file, exchange::KeyPair());
  }
  return TakeUpReplaced(work);
}

}  // namespace desk
