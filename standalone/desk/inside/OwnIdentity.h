#pragma once

#include <filesystem>
#include <string>

#include "standalone/books/AuditTable.h"
#include "standalone/desk/inside/Work.h"
#include "standalone/exchange/CarrierLock.h"
#include "standalone/exchange/IdentityFile.h"
#include "standalone/exchange/Keys.h"

// Who this company is to its partners: the keys beside its books.
namespace desk {

std::filesystem::path IdentityFileOf(Work& work);

// Refused while another program carries this company's letters.
exchange::CarrierLock RequireCarrierLock(Work& work);

// Whether these books have ever signed anything; within a unit of work.
bool HasOwnKey(Work& work);

// The identity by whose keys these books sign. Refused where they have none yet, and where the one beside them is
// missing or another one. Within a unit of work, like those that follow.
exchange::IdentityFile RequireIdentity(Work& work);
exchange::KeyPair RequireKeys(Work& work);
// That it is there, whoever's it is.
void RequireAnIdentity(Work& work);

// Those beside the books, whoever's they are; it is there.
exchange::KeyPair KeysBeside(Work& work);

// The same as RequireKeys(), and makes the identity where there is none and the books never had one: it is on the disk
// when this returns. Outside of a unit of work.
exchange::KeyPair RequireOrMakeKeys(Work& work);

// Has the books remember that they sign with these keys; within a unit of work that writes.
void RememberKeys(Work& work, const exchange::KeyPair& keys);

// Whether the identity beside the books has a key that came after the one that they know: it was replaced, and they are
// of before, or did not get as far. Within a unit of work.
bool HasNewerKeys(Work& work);
// Has the books sign with the key of the identity beside them from now on, and tells each partner so under those
// before, as far as the identity has them. In a unit of work that writes.
standalone::AuditDeed TakeUpKeys(Work& work);

// The realm id that a company gets from its key when it has none: sixteen digits that nobody chose, and the same ones
// when books of before the pairing are restored and paired anew.
std::string RealmOfKey(const exchange::PublicKey& key);

}  // namespace desk
