#include "standalone/desk/inside/OwnIdentity.h"

#include <algorithm>
#include <optional>
#include <string_view>
#include <utility>
#include <vector>

#include "standalone/books/PairingTable.h"
#include "standalone/company/FileNames.h"
#include "standalone/desk/inside/Pairings.h"
#include "standalone/exchange/IdentityFile.h"
#include "standalone/exchange/Kinds.h"
#include "standalone/values/Text.h"

namespace desk {

namespace {

using standalone::PathText;

exchange::KeyPair KeysIn(const std::filesystem::path& file) {
  return exchange::IdentityFile(file).Keys();
}

// By which the books sign now.
std::optional<std::string> LastKey(Work& work) {
  const std::vector<std::string> keys = work.Host().Pairings().OwnKeys();
  if (keys.empty()) return std::nullopt;
  return keys.back();
}

void TellOf(Work& work, const standalone::Pairing& pairing, const exchange::NewKey& key,
            const exchange::KeyPair& author) {
  Keep(work, pairing, exchange::MakeFact(key, pairing.pairingId, author), standalone::FactOrigin::kMade);
}

bool IsFormer(const exchange::IdentityFile& identity, std::string_view publicKey) {
  return std::ranges::any_of(identity.FormerKeys(), [publicKey](const exchange::KeyPair& former) {
    return former.Public().Bytes() == publicKey;
  });
}

bool IsLost(const exchange::IdentityFile& identity, std::string_view publicKey) {
  return std::ranges::any_of(identity.LostKeys(),
                             [publicKey](const exchange::PublicKey& lost) { return lost.Bytes() == publicKey; });
}

exchange::IdentityFile RequireIdentityOf(Work& work, const std::string& publicKey) {
  const std::filesystem::path file = IdentityFileOf(work);
  exchange::IdentityFile identity(file);
  if (IsFormer(identity, publicKey) || IsLost(identity, publicKey)) {
    work.Refuse("the key in " + PathText(file) + " came after the one that these books know: books of before have " +
                    "been restored, or the key was being replaced when a program was ended",
                Remedy::kTakeUpTheKey);
  }
  if (identity.Keys().Public().Bytes() != publicKey) {
    work.Refuse(PathText(file) + " is the identity of another company, or one of before its key was replaced, not " +
                    "the one by which these books sign",
                Remedy::kBringTheIdentity);
  }
  return identity;
}

// All that the identity knows, so that what they signed stays the company's own in books that never knew them.
void RememberAllKeys(Work& work, const exchange::IdentityFile& identity) {
  for (const exchange::PublicKey& lost : identity.LostKeys()) work.Host().Pairings().KnowOwnKey(lost.Bytes());
  for (const exchange::KeyPair& former : identity.FormerKeys()) {
    work.Host().Pairings().KnowOwnKey(former.Public().Bytes());
  }
  RememberKeys(work, identity.Keys());
}

void TellOfKeys(Work& work, const standalone::Pairing& pairing, const exchange::IdentityFile& identity) {
  const exchange::PublicKey now = identity.Keys().Public();
  for (const exchange::KeyPair& former : identity.FormerKeys()) TellOf(work, pairing, {.key = now}, former);
  for (const std::string& own : work.Host().Pairings().OwnKeys()) {
    const exchange::NewKey former{.key = exchange::PublicKey::FromBytes(own), .isFormer = true};
    if (former.key != now) TellOf(work, pairing, former, identity.Keys());
  }
}

}  // namespace

exchange::CarrierLock RequireCarrierLock(Work& work) {
  const std::filesystem::path file = IdentityFileOf(work);
  std::optional<exchange::CarrierLock> lock = exchange::CarrierLock::TryTake(file, work.Host().Clock());
  if (!lock) {
    work.Refuse("letters of this company are being carried by " + exchange::CarrierLock::Holder(file),
                Remedy::kWaitForTheOtherProgram);
  }
  return *std::move(lock);
}

std::filesystem::path IdentityFileOf(Work& work) {
  return standalone::IdentityOf(work.Host().CompanyFilePath());
}

exchange::KeyPair KeysBeside(Work& work) {
  return KeysIn(IdentityFileOf(work));
}

bool HasOwnKey(Work& work) {
  return LastKey(work).has_value();
}

void RequireAnIdentity(Work& work) {
  if (!HasOwnKey(work)) work.Refuse("this company has not been paired with anybody", Remedy::kPairFirst);
  const std::filesystem::path file = IdentityFileOf(work);
  if (standalone::IsThere(file)) return;
  work.Refuse("the identity of this company is not beside it: there is no " + PathText(file),
              Remedy::kBringTheIdentity);
}

exchange::IdentityFile RequireIdentity(Work& work) {
  RequireAnIdentity(work);
  return RequireIdentityOf(work, LastKey(work).value());
}

exchange::KeyPair RequireKeys(Work& work) {
  return RequireIdentity(work).Keys();
}

exchange::KeyPair RequireOrMakeKeys(Work& work) {
  if (work.Read([&] { return HasOwnKey(work); })) return work.Read([&] { return RequireKeys(work); });
  const std::filesystem::path file = IdentityFileOf(work);
  // That of books that were restored to before their first pairing.
  if (standalone::IsThere(file)) return KeysIn(file);
  exchange::KeyPair keys;
  exchange::IdentityFile::Make(file, keys);
  return keys;
}

void RememberKeys(Work& work, const exchange::KeyPair& keys) {
  const std::string publicKey(keys.Public().Bytes());
  if (LastKey(work) != publicKey) work.Host().Pairings().AddOwnKey(publicKey);
}

bool HasNewerKeys(Work& work) {
  const std::optional<std::string> publicKey = LastKey(work);
  const std::filesystem::path file = IdentityFileOf(work);
  if (!publicKey || !standalone::IsThere(file)) return false;
  const exchange::IdentityFile identity(file);
  return IsFormer(identity, *publicKey) || IsLost(identity, *publicKey);
}

standalone::AuditDeed TakeUpKeys(Work& work) {
  const exchange::IdentityFile identity(IdentityFileOf(work));
  const std::string before = LastKey(work).value();
  const exchange::PublicKey now = identity.Keys().Public();
  RememberAllKeys(work, identity);
  for (const standalone::Pairing& pairing : work.Host().Pairings().List()) {
    if (pairing.state == standalone::PairingState::kRemoved) continue;
    TellOfKeys(work, pairing, identity);
    PutLettersAnew(work, pairing);
  }
  // One that was made anew counts what leaves from its own beginning.
  if (IsLost(identity, before)) work.Host().Pairings().SetLookedFor(0);
  return {.action = "partner.rekey",
          .subject = "the identity " + exchange::Fingerprint(now),
          .transactions = {},
          .changes = {{"fingerprint", exchange::Fingerprint(exchange::PublicKey::FromBytes(before)),
                       exchange::Fingerprint(now)}}};
}

std::string RealmOfKey(const exchange::PublicKey& key) {
  constexpr std::size_t kDigits = 16;
  const exchange::Hash hash = exchange::HashOf("multientity-realm-1" + std::string(key.Bytes()));
  std::string realm;
  for (std::size_t i = 0; i < kDigits; ++i) {
    const unsigned int octet = hash.Data()[i];
    // One that began with a nought would be taken for a number of another length.
    realm += static_cast<char>(i == 0 ? '1' + octet % 9 : '0' + octet % 10);
  }
  return realm;
}

}  // namespace desk
