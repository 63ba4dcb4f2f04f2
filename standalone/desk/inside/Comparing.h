#pragma once

#include <set>
#include <string>
#include <string_view>

#include "standalone/books/PairingTable.h"
#include "standalone/desk/inside/Work.h"
#include "standalone/exchange/Envelope.h"
#include "standalone/exchange/Summary.h"

// How this company and a partner whose summaries differ find out which facts one of the two lacks: one tells its
// months, the other one lists the hashes of those that differ, and who reads a list sends what it lacks, and lists in
// turn when it lacks something itself. All within a unit of work that writes, but for the questions.
namespace desk {

exchange::Summary SummaryOfHeld(Work& work, const standalone::Pairing& pairing);
// The same as comparing it with that; of another number of facts, none of them is read.
bool IsSummaryOfHeld(Work& work, const standalone::Pairing& pairing, const exchange::Summary& summary);

// Has the next letter begin to look for the difference, unless the two hold the same, nothing was told yet about what
// this company holds now, or the same two summaries were worked through.
void BeginComparing(Work& work, const standalone::Pairing& pairing, const exchange::Summary& held,
                    standalone::Carrying& carrying);
// What of months and hashes the next letter has.
void TellOfMonths(Work& work, const standalone::Pairing& pairing, const standalone::Carrying& carrying,
                  exchange::Letter& letter);

// What the months and the lists of a letter ask for. Those facts are asked for no more that the letters read meanwhile
// had, and that were not taken.
void TakeMonths(Work& work, const standalone::Pairing& pairing, const exchange::Letter& letter,
                standalone::Carrying& carrying);
void TakeLists(Work& work, const standalone::Pairing& pairing, const exchange::Letter& letter,
               const std::set<exchange::Hash>& notTaken, standalone::Carrying& carrying);

// Whether a letter whose summary differs from ours tells by its lists of all that the sender holds, and all of it is
// held here.
bool HoldsAllThatIsListed(Work& work, const standalone::Pairing& pairing, const exchange::Letter& letter);

// The two summaries, for Carrying::workedThrough.
std::string PairOf(const exchange::Summary& held, std::string_view theirs);

}  // namespace desk
