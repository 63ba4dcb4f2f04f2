#pragma once

#include <string>
#include <vector>

#include "MultiEntityHost/MultiEntityRows.h"
#include "standalone/books/PairingTable.h"
#include "standalone/desk/inside/Work.h"
#include "standalone/exchange/Keys.h"
#include "standalone/exchange/Kinds.h"

// How lines that this company entered become requests of partners.
namespace desk {

// The lines with a partner that are sent by themselves: entered after the pairing, and not sent yet. Within a unit of
// work.
std::vector<DBMultiEntityTransaction> LinesToSend(Work& work, const standalone::Pairing& pairing);

// Makes the proposal of a line that is entered, or was marked as sent by hand; within a unit of work that writes, whose
// line of the trail it adds. Refused for a request id that is not the line's alone, and unless the pairing and the
// relation are established; throws standalone::InvalidInput for what no proposal can say. Answers what the module
// answers.
MEStatusCode SendLine(Work& work, const standalone::Pairing& pairing, const exchange::KeyPair& keys,
                      const DBMultiEntityTransaction& row);

// Sends them, each in a unit of work of its own, but what the partner may have been sent before by a request that these
// books lost.
struct SentOfPartner {
  std::size_t sent = 0;
  std::vector<std::string> left;  // those that could not be sent, each with why
  std::vector<Remedy> remedies;   // what would be right for them, each once
};
SentOfPartner SendAllOf(Work& work, const standalone::Pairing& pairing, const exchange::KeyPair& keys);

}  // namespace desk
