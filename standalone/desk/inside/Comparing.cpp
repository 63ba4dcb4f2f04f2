#include "standalone/desk/inside/Comparing.h"

#include <algorithm>
#include <optional>
#include <string_view>
#include <utility>
#include <vector>

#include "standalone/books/FactTable.h"

namespace desk {

namespace {

using exchange::Hash;
using exchange::Months;
using exchange::Summary;
using standalone::Carrying;
using standalone::Pairing;

// Carrying::telling is this, or the months whose hashes are listed, a line each.
constexpr std::string_view kAllMonths = "months";
constexpr std::string_view kNoMonth = "-";

std::set<std::string> MonthsToList(const Carrying& carrying) {
  std::set<std::string> months;
  if (carrying.telling == kAllMonths) return months;
  const std::string& lines = carrying.telling;
  for (std::size_t begin = 0; begin < lines.size();) {
    const std::size_t end = lines.find('\n', begin);
    const std::string month = lines.substr(begin, end - begin);
    months.insert(month == kNoMonth ? std::string() : month);
    begin = end + 1;
  }
  return months;
}

void List(const std::set<std::string>& months, Carrying& carrying) {
  carrying.telling.clear();
  for (const std::string& month : months) {
    carrying.telling += month.empty() ? kNoMonth : month;
    carrying.telling += '\n';
  }
}

// Something was added to what the next letter tells, so that it wants to know anew that it was read.
void AskAnew(Carrying& carrying) {
  carrying.word.clear();
}

Months MonthsOfHeld(Work& work, const Pairing& pairing) {
  Months months;
  std::string month;
  std::optional<exchange::Summarizing> summarizing;
  work.Host().Facts().ForEachMonthsHash(pairing.id, [&](std::string_view of, std::string_view hash) {
    if (summarizing && of != month) months.emplace(month, summarizing->Finish());
    if (!summarizing || of != month) summarizing.emplace();
    month = of;
    summarizing->Add(Hash::FromBytes(hash));
  });
  if (summarizing) months.emplace(month, summarizing->Finish());
  return months;
}

std::vector<Hash> HashesOf(Work& work, const Pairing& pairing, const std::string& month) {
  std::vector<Hash> hashes;
  work.Host().Facts().ForEachHashOf(pairing.id, month,
                                    [&](std::string_view hash) { hashes.push_back(Hash::FromBytes(hash)); });
  return hashes;
}

// What is on its way, as far as one can tell, is not told anew: where letters cross each would be the reason for
// another.
bool HasMoreToTell(Work& work, const Pairing& pairing, const std::vector<Hash>& theyLack, const Carrying& carrying) {
  bool hasMore = carrying.isEchoed && !theyLack.empty();
  for (const Hash& hash : theyLack) {
    if (work.Host().Facts().MarkNotShown(pairing.id, hash.Bytes())) hasMore = true;
  }
  return hasMore;
}

}  // namespace

Summary SummaryOfHeld(Work& work, const Pairing& pairing) {
  exchange::Summarizing summarizing;
  work.Host().Facts().ForEachHash(pairing.id, [&](std::string_view hash) { summarizing.Add(Hash::FromBytes(hash)); });
  return summarizing.Finish();
}

bool IsSummaryOfHeld(Work& work, const Pairing& pairing, const Summary& summary) {
  return work.Host().Facts().Count(pairing.id) == summary.count && SummaryOfHeld(work, pairing) == summary;
}

std::string PairOf(const Summary& held, std::string_view theirs) {
  return held.Text() + ' ' + std::string(theirs);
}

void BeginComparing(Work& work, const Pairing& pairing, const Summary& held, Carrying& carrying) {
  if (carrying.theirSummary == held.Text()) {
    carrying.telling.clear();
    carrying.workedThrough.clear();
    return;
  }
  if (carrying.theirSummary.empty() || !carrying.telling.empty()) return;
  const bool isAllRead = carrying.isEchoed && carrying.wordFor == held.Text();
  if (!isAllRead && work.Host().Facts().HasNotShown(pairing.id)) return;
  std::string both = PairOf(held, carrying.theirSummary);
  if (both == carrying.workedThrough) return;
  carrying.workedThrough = std::move(both);
  carrying.telling = kAllMonths;
  AskAnew(carrying);
}

void TellOfMonths(Work& work, const Pairing& pairing, const Carrying& carrying, exchange::Letter& letter) {
  if (carrying.telling == kAllMonths) letter.months = MonthsOfHeld(work, pairing);
  for (const std::string& month : MonthsToList(carrying)) letter.hashes[month] = HashesOf(work, pairing, month);
}

// The partner holds nothing of a month that it does not name, so that it needs no list to be sent all of it.
void TakeMonths(Work& work, const Pairing& pairing, const exchange::Letter& letter, Carrying& carrying) {
  if (letter.months.empty()) return;
  const std::vector<std::string> differing = exchange::MonthsThatDiffer(MonthsOfHeld(work, pairing), letter.months);
  if (differing.empty()) return;
  std::set<std::string> toList = MonthsToList(carrying);
  for (const std::string& month : differing) {
    if (letter.months.contains(month)) {
      toList.insert(month);
    } else {
      work.Host().Facts().MarkMonthNotShown(pairing.id, month);
    }
  }
  List(toList, carrying);
  AskAnew(carrying);
}

void TakeLists(Work& work, const Pairing& pairing, const exchange::Letter& letter, const std::set<Hash>& notTaken,
               Carrying& carrying) {
  std::set<std::string> toList = MonthsToList(carrying);
  for (const auto& [month, theirs] : letter.hashes) {
    const std::vector<Hash> ours = HashesOf(work, pairing, month);
    std::vector<Hash> weLack = exchange::Lacking(ours, theirs);
    std::erase_if(weLack, [&](const Hash& hash) { return notTaken.contains(hash); });
    const bool isToBeListed = !weLack.empty() && toList.insert(month).second;
    for (const Hash& hash : theirs) work.Host().Facts().MarkShown(pairing.id, hash.Bytes());
    const bool isToBeTold = HasMoreToTell(work, pairing, exchange::Lacking(theirs, ours), carrying);
    if (isToBeListed || isToBeTold) AskAnew(carrying);
  }
  if (!toList.empty()) List(toList, carrying);
}

bool HoldsAllThatIsListed(Work& work, const Pairing& pairing, const exchange::Letter& letter) {
  if (letter.hashes.empty()) return false;
  std::vector<Hash> theirs;
  for (const auto& [month, listed] : letter.hashes) theirs.insert(theirs.end(), listed.begin(), listed.end());
  if (!std::ranges::all_of(theirs,
                           [&](const Hash& hash) { return work.Host().Facts().Has(pairing.id, hash.Bytes()); })) {
    return false;
  }
  work.Host().Facts().ForEachMonthsHash(pairing.id, [&](std::string_view month, std::string_view hash) {
    if (!letter.hashes.contains(std::string(month))) theirs.push_back(Hash::FromBytes(hash));
  });
  std::ranges::sort(theirs);
  const auto twice = std::ranges::unique(theirs);
  theirs.erase(twice.begin(), twice.end());
  return exchange::SummaryOf(theirs) == letter.summary;
}

}  // namespace desk
