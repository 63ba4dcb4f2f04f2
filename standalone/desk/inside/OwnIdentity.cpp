#include "standalone/desk/inside/OwnIdentity.h"

#include <optional>
#include <vector>

#include "standalone/books/PairingTable.h"
#include "standalone/company/FileNames.h"
#include "standalone/exchange/IdentityFile.h"
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

exchange::KeyPair RequireKeysOf(Work& work, const std::string& publicKey) {
  const std::filesystem::path file = IdentityFileOf(work);
  if (!standalone::IsThere(file)) {
    work.Refuse("the identity of this company is not beside it: there is no " + PathText(file),
                Remedy::kBringTheIdentity);
  }
  exchange::KeyPair keys = KeysIn(file);
  if (keys.Public().Bytes() != publicKey) {
    work.Refuse(PathText(file) + " is the identity of another company, not the one by which these books sign",
                Remedy::kBringTheIdentity);
  }
  return keys;
}

}  // namespace

std::filesystem::path IdentityFileOf(Work& work) {
  return standalone::IdentityOf(work.Host().CompanyFilePath());
}

exchange::KeyPair KeysBeside(Work& work) {
  return KeysIn(IdentityFileOf(work));
}

bool HasOwnKey(Work& work) {
  return LastKey(work).has_value();
}

exchange::KeyPair RequireKeys(Work& work) {
  const std::optional<std::string> publicKey = LastKey(work);
  if (!publicKey) work.Refuse("this company has not been paired with anybody", Remedy::kPairFirst);
  return RequireKeysOf(work, *publicKey);
}

exchange::KeyPair RequireOrMakeKeys(Work& work) {
  if (const auto publicKey = work.Read([&] { return LastKey(work); })) {
    return work.Read([&] { return RequireKeysOf(work, *publicKey); });
  }
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
