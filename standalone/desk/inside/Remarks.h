#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "standalone/books/AuditTable.h"
#include "standalone/books/PairingTable.h"
#include "standalone/desk/inside/HeldRequests.h"
#include "standalone/desk/inside/Work.h"
#include "standalone/desk/results/Remark.h"
#include "standalone/exchange/Fact.h"
#include "standalone/exchange/Keys.h"

// Disputes and notes, which people of both companies say about requests; they change nothing of what has become of one.
// Within a unit of work.
namespace desk {

// A dispute or a note.
bool IsRemark(const exchange::Fact& fact) noexcept;

// In the order in which they came into these books; none that is about a request of that id of the other one.
std::vector<Remark> RemarksAbout(Work& work, const standalone::Pairing& pairing, RequestOf whose,
                                 std::string_view request);
bool IsAnyDispute(const std::vector<Remark>& remarks) noexcept;

// What a remark that is kept comes to: told of its request from now on.
struct ToldRemark {
  std::string done;         // for people
  std::string outstanding;  // while its request is not here; empty when it is
};
// Throws exchange::NotUnderstood.
ToldRemark TellRemark(Work& work, const standalone::Pairing& pairing, const exchange::Fact& fact);

// What a person says about a request that is here.
struct RemarkToMake {
  bool isDispute = false;
  RequestOf whose = RequestOf::kPartner;
  std::string request;
  std::string month;  // of its proposal
  std::string text;
};
// Makes the fact and keeps it; answers what the trail tells of it.
standalone::AuditDeed MakeRemark(Work& work, const standalone::Pairing& pairing, const exchange::KeyPair& keys,
                                 const RemarkToMake& remark);

}  // namespace desk
