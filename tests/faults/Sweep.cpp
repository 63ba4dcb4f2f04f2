#include "faults/Sweep.h"

#include <algorithm>
#include <array>
#include <exception>
#include <fstream>
#include <iterator>
#include <map>
#include <random>
#include <sstream>
#include <stdexcept>
#include <typeinfo>

#include "faults/FreshProcess.h"

namespace faults {

namespace {

constexpr std::array kEveryThrown{Thrown::kException, Thrown::kOutOfRange, Thrown::kNoException};
constexpr int kThrownNumber = 4711;
constexpr long kNoCode = 0;
constexpr std::size_t kUnharmed = 0;  // the position of no call

std::string program;
std::size_t faultsPlayed = 0;

// A failure of the host that nobody but the host knows. It carries more than its text.
class HostFailure final : public std::exception {
 public:
  explicit HostFailure(int number) : number_(number) {}
  const char* what() const noexcept override { return kWhatOfTheException; }
  int Number() const noexcept { return number_; }

 private:
  int number_;
};

std::string OutcomeOf(Thrown thrown) {
  switch (thrown) {
    case Thrown::kException:
      return "throws the host's failure " + std::to_string(kThrownNumber);
    case Thrown::kOutOfRange:
      return std::string("throws out of range: ") + kWhatOfOutOfRange;
    default:
      return "throws the number " + std::to_string(kThrownNumber);
  }
}

void Install(ScriptedHost& host, const Fault& fault) {
  if (!fault.thrown) return host.FailAtCall(fault.position, fault.code);
  switch (*fault.thrown) {
    case Thrown::kException:
      return host.ThrowAtCall(fault.position, HostFailure(kThrownNumber));
    case Thrown::kOutOfRange:
      return host.ThrowAtCall(fault.position, std::out_of_range(kWhatOfOutOfRange));
    default:
      return host.ThrowAtCall(fault.position, kThrownNumber);
  }
}

// What it answers; what it throws only when that is what the host threw, unchanged.
std::string Act(const Scenario& scenario, Company& company) {
  try {
    return "answers " + scenario.act(company);
  } catch (const HostFailure& failure) {
    return "throws the host's failure " + std::to_string(failure.Number());
  } catch (const std::exception& exception) {
    const bool asThrown = typeid(exception) == typeid(std::out_of_range);
    return std::string(asThrown ? "throws out of range: " : "throws something else: ") + exception.what();
  } catch (int number) {
    return "throws the number " + std::to_string(number);
  }
}

// Another user's transaction, beyond whose ids nothing was given out before.
constexpr std::int32_t kOthersTxnId = 90;
constexpr std::int32_t kOthersLine = 900;
constexpr const char* kNewRequest = "request-after-the-fault";

// What a company does in the hands of an administrator who books on: reads, books, lists, finds and removes an entry,
// remembers a rejected bill and forgets it.
Texts WorkOf(Company& company) {
  ScriptedHost& host = company.host;
  host.permissions.administrator = true;
  host.Forget();
  const Texts before = Describe(host);
  host.lines.lines[kOthersLine] = {.txnId = kOthersTxnId, .txnType = kTxnTypeBill};

  Results results;
  Texts texts{"relations " + Text(MultiEntityDriver::GetRelationsList(results.relations))};
  Results promised;
  if (texts.front() == "relations 1") promised.relations = host.store.relations;
  texts.push_back("as they stand " + Text(Describe(results) == Describe(promised)));
  texts.push_back("booked " + Text(MultiEntityDriver::RecordGeneralJournalEntry(
                                  "9130", {.name = "Rent", .type = KrEnumerations::kExpense, .accountId = 15}, 12,
                                  "12.00", kNewRequest, {.name = "Child", .nameId = 33}, results.txnId)));
  texts.push_back("as transaction " + std::to_string(results.txnId));
  texts.push_back("listed " + Text(MultiEntityDriver::GetListOfTxnTargetEntries(results.entries, results.txnId)));
  std::ranges::transform(results.entries, std::back_inserter(texts), [](const METxnInfo& entry) {
    return call_text::Of(entry.requestId) + ", " + call_text::Of(entry.amount);
  });
  texts.push_back("found " + Text(MultiEntityDriver::DoesTransactionExist("9130", kNewRequest)));
  texts.push_back("removed " + Text(MultiEntityDriver::RemoveGeneralJournalEntry(results.txnId)));
  texts.push_back("found no more " + Text(MultiEntityDriver::DoesTransactionExist("9130", kNewRequest)));
  texts.push_back("remembered " + Text(MultiEntityDriver::SaveRejectedTransaction(kNewRequest, kTxnTypeBill, "9130",
                                                                                  "12.00", "their-bill")));
  texts.push_back("found " + Text(MultiEntityDriver::DoesTransactionExist("9130", kNewRequest)));
  texts.push_back("forgotten " + Text(MultiEntityDriver::DeleteRejectedTransaction(kNewRequest)));

  host.lines.lines.erase(kOthersLine);
  texts.push_back("tables as before " + Text(Describe(host) == before));
  return texts;
}

Texts PromisedWork(bool featureIsOff) {
  return {featureIsOff ? "relations 2" : "relations 1",
          "as they stand true",
          "booked 1",
          "as transaction " + std::to_string(kOthersTxnId + 1),
          "listed 1",
          std::string(kNewRequest) + ", 12.00",
          "found 1",
          "removed 1",
          "found no more 0",
          "remembered 1",
          "found 1",
          "forgotten 1",
          "tables as before true"};
}

// A company in which the operation was not called yet.
class Stage {
 public:
  explicit Stage(const Scenario& scenario) : scenario_(scenario) {
    scenario.arrange(company_);
    resultsBefore_ = company_.results;
    company_.host.Forget();
    company_.host.ops.lines.clear();
    tablesBefore_ = Describe(company_.host);
    company_.host.OnEveryCall([this] { NotePoint(); });
  }

  Observation Play(std::size_t failingPosition) {
    company_.results = resultsBefore_;
    company_.host.Forget();
    company_.host.ops.lines.clear();
    points_.clear();
    Observation seen;
    seen.outcome = Act(scenario_, company_);
    if (MultiEntityDriver::GetGJEDeletionDueToFDPFailure()) seen.outcome += " and leaves the deletion flag set";
    for (const LogLine& line : company_.host.Lines()) {
      seen.lines.push_back(std::to_string(line.level) + "/" + std::to_string(line.eventType) + " " + line.message);
    }
    seen.results = Describe(company_.results);
    seen.tables = Describe(company_.host);
    if (failingPosition == kUnharmed) return seen;
    for (const Point& point : points_) {
      if (point.position > failingPosition) seen.asked.push_back(point.call);
    }
    return seen;
  }

  Texts GoOn() {
    try {
      return WorkOf(company_);
    } catch (const std::exception& exception) {
      return {std::string("throws ") + exception.what()};
    }
  }

  const std::vector<Point>& Points() const noexcept { return points_; }
  // Whether nothing was changed, not even for a moment: a host does not give an id twice.
  bool IsAsBefore() {
    return Describe(company_.host) == tablesBefore_ &&
           std::ranges::all_of(points_, [&](const Point& point) { return point.tables == tablesBefore_; });
  }
  ScriptedHost& Host() noexcept { return company_.host; }

 private:
  void NotePoint() {
    points_.push_back({company_.host.Calls().size(), company_.host.Calls().back(), company_.host.Lines().size(),
                       Describe(company_.results), Describe(company_.host)});
  }

  const Scenario& scenario_;
  Company company_;
  Results resultsBefore_;
  Texts tablesBefore_;
  std::vector<Point> points_;
};

std::string NameOf(const std::string& call) {
  return call.substr(0, call.find('('));
}

bool Fits(const Row& row, const Point& point, std::size_t nthOfItsName) {
  const std::string name = NameOf(point.call);
  return row.call == point.call || row.call == name || row.call == name + "#" + std::to_string(nthOfItsName);
}

// The row that a point has, and the how manieth point with that row it is.
struct Place {
  const Row* row;
  std::size_t nthOfRow;
};

Place PlaceOf(const Table& table, const Record& record, const Point& point) {
  std::map<std::string, std::size_t> ofName;
  std::map<const Row*, std::size_t> ofRow;
  for (const Point& other : record.points) {
    const std::size_t nth = ++ofName[NameOf(other.call)];
    const auto found = std::ranges::find_if(table, [&](const Row& row) { return Fits(row, other, nth); });
    const Row* row = found == table.end() ? nullptr : &*found;
    ++ofRow[row];
    if (other.position == point.position) return {row, ofRow[row]};
  }
  return {nullptr, 0};
}

void ReplaceNth(Texts& texts, std::size_t nth, const std::string& what, const std::string& instead) {
  for (std::string& text : texts) {
    const std::size_t at = text.find(what);
    if (at == std::string::npos || --nth != 0) continue;
    text.replace(at, what.size(), instead);
    return;
  }
}

void Amend(Texts& texts, const Substitutions& substitutions, const Texts& missing, std::size_t nth) {
  for (const auto& [what, instead] : substitutions) ReplaceNth(texts, nth, what, instead);
  for (const std::string& beginning : missing) {
    std::erase_if(texts, [&](const std::string& text) { return text.starts_with(beginning); });
  }
}

Texts TablesAt(const Record& record, const std::string& name) {
  const auto found =
      std::ranges::find_if(record.points, [&](const Point& point) { return NameOf(point.call) == name; });
  return found == record.points.end() ? Texts{"there is no call " + name} : found->tables;
}

Observation Promised(const Record& record, const Point& point, const Handling& handling, const Fault& fault,
                     std::size_t nthOfRow) {
  const bool goesOn = handling.ending == Handling::Ending::kGoesOn;
  const Observation& unharmed = record.unharmed;
  Observation promised;
  promised.outcome = goesOn                                         ? unharmed.outcome
                     : handling.ending == Handling::Ending::kPasses ? OutcomeOf(*fault.thrown)
                                                                    : "answers " + handling.answer;
  promised.lines.assign(unharmed.lines.begin(),
                        unharmed.lines.begin() + static_cast<std::ptrdiff_t>(point.linesBefore));
  promised.lines.insert(promised.lines.end(), handling.lines.begin(), handling.lines.end());
  const std::size_t rest = unharmed.lines.size() - point.linesBefore;
  const std::size_t left = goesOn ? rest - std::min(rest, handling.replacedLines) : 0;
  promised.lines.insert(promised.lines.end(), unharmed.lines.end() - static_cast<std::ptrdiff_t>(left),
                        unharmed.lines.end());
  promised.lines.insert(promised.lines.end(), handling.lastLines.begin(), handling.lastLines.end());
  promised.results = goesOn ? unharmed.results : point.results;
  promised.tables = goesOn ? unharmed.tables : point.tables;
  if (!handling.undoneTo.empty()) promised.tables = TablesAt(record, handling.undoneTo);
  Amend(promised.results, handling.inResults, handling.missing, nthOfRow);
  Amend(promised.tables, handling.inTables, handling.missing, nthOfRow);
  promised.asked = handling.asked;
  return promised;
}

std::string Listed(const Texts& texts) {
  std::string list;
  for (const std::string& text : texts) list.append("\n    ").append(text);
  return list;
}

bool AreTheCalls(const Texts& asked, const Texts& promised) {
  return std::ranges::equal(asked, promised, [](const std::string& call, const std::string& text) {
    return call == text || NameOf(call) == text;
  });
}

class Judge {
 public:
  Judge(Texts& complaints, std::string where) : complaints_(complaints), where_(std::move(where)) {}

  void Compare(const std::string& what, const Texts& seen, const Texts& promised) {
    if (seen != promised) Complain(what, seen, promised);
  }
  void CompareCalls(const Texts& asked, const Texts& promised) {
    if (!AreTheCalls(asked, promised)) Complain("calls that follow", asked, promised);
  }
  void Complain(const std::string& what, const Texts& seen, const Texts& promised) {
    complaints_.push_back(where_ + ": " + what + Listed(seen) + "\n  instead of" + Listed(promised));
  }

 private:
  Texts& complaints_;
  std::string where_;
};

void Compare(Judge& judge, const Outcome& seen, const Observation& promised, const Handling& handling,
             const Observation& next) {
  judge.Compare("outcome", {seen.harmed.outcome}, {promised.outcome});
  judge.Compare("lines", seen.harmed.lines, promised.lines);
  if (!handling.resultsUnspecified) judge.Compare("results", seen.harmed.results, promised.results);
  judge.Compare("tables", seen.harmed.tables, promised.tables);
  if (handling.ending != Handling::Ending::kGoesOn) judge.CompareCalls(seen.harmed.asked, promised.asked);

  const Observation& nextPromised = handling.forGood ? promised : next;
  judge.Compare("outcome of the next call", {seen.next.outcome}, {nextPromised.outcome});
  judge.Compare("lines of the next call", seen.next.lines, nextPromised.lines);
  judge.Compare("results of the next call", seen.next.results, nextPromised.results);
  judge.Compare("tables after the next call", seen.next.tables, nextPromised.tables);
  judge.Compare("work of the company that was harmed", seen.goingOn, PromisedWork(handling.forGood));
}

void Write(std::ostream& out, const Texts& texts) {
  out << texts.size() << '\n';
  for (const std::string& text : texts) out << text << '\n';
}

Texts ReadTexts(std::istream& in) {
  std::string line;
  std::getline(in, line);
  Texts texts(line.empty() ? 0 : std::stoul(line));
  for (std::string& text : texts) std::getline(in, text);
  return texts;
}

void Write(std::ostream& out, const Observation& seen) {
  Write(out, Texts{seen.outcome});
  Write(out, seen.lines);
  Write(out, seen.results);
  Write(out, seen.tables);
  Write(out, seen.asked);
}

Observation ReadObservation(std::istream& in) {
  const Texts outcome = ReadTexts(in);
  Observation seen;
  seen.outcome = outcome.empty() ? "nothing" : outcome.front();
  seen.lines = ReadTexts(in);
  seen.results = ReadTexts(in);
  seen.tables = ReadTexts(in);
  seen.asked = ReadTexts(in);
  return seen;
}

void Write(std::ostream& out, const Point& point) {
  Write(out, Texts{point.call});
  out << point.position << '\n' << point.linesBefore << '\n';
  Write(out, point.results);
  Write(out, point.tables);
}

std::size_t ReadNumber(std::istream& in) {
  std::string line;
  std::getline(in, line);
  return line.empty() ? 0 : std::stoul(line);
}

Point ReadPoint(std::istream& in) {
  Point point;
  point.call = ReadTexts(in).at(0);
  point.position = ReadNumber(in);
  point.linesBefore = ReadNumber(in);
  point.results = ReadTexts(in);
  point.tables = ReadTexts(in);
  return point;
}

void Write(std::ostream& out, const Record& record) {
  Write(out, record.unharmed);
  out << record.points.size() << '\n';
  for (const Point& point : record.points) Write(out, point);
}

Record ReadRecord(std::istream& in) {
  Record record;
  record.unharmed = ReadObservation(in);
  const std::size_t points = ReadNumber(in);
  std::generate_n(std::back_inserter(record.points), points, [&] { return ReadPoint(in); });
  return record;
}

// What a process of its own writes, whose arguments are: scenario, position, what is thrown or -1, the code or 0, the
// file to write to.
struct Written {
  std::stringstream text;
  int code = 0;
};

Written PlayInAFreshProcess(const Scenario& scenario, const Fault& fault) {
  const auto file = std::filesystem::temp_directory_path() /
                    ("multientity-fault-" + scenario.name + "-" + std::to_string(std::random_device{}()));
  Written written;
  written.code = RunToTheEnd(program, {"--play", scenario.name, std::to_string(fault.position),
                                       std::to_string(fault.thrown ? static_cast<int>(*fault.thrown) : -1),
                                       std::to_string(fault.code.value_or(kNoCode)), file.string()});
  written.text << std::ifstream(file).rdbuf();
  std::filesystem::remove(file);
  return written;
}

Outcome HarmInAFreshProcess(const Scenario& scenario, const Fault& fault) {
  auto [in, code] = PlayInAFreshProcess(scenario, fault);
  Outcome outcome;
  outcome.harmed = ReadObservation(in);
  outcome.next = ReadObservation(in);
  outcome.goingOn = ReadTexts(in);
  if (code != 0) outcome.harmed.outcome += " and ends the process with " + std::to_string(code);
  return outcome;
}

Record RecordOfAFreshProcess(const Scenario& scenario) {
  auto [in, code] = PlayInAFreshProcess(scenario, {kUnharmed, std::nullopt, std::nullopt});
  if (code != 0) throw std::runtime_error(scenario.name + " ends its process with " + std::to_string(code));
  return ReadRecord(in);
}

std::string Described(const Fault& fault) {
  if (fault.thrown) return OutcomeOf(*fault.thrown);
  return fault.code ? "fails with " + std::to_string(*fault.code) : "fails";
}

using Player = Outcome (*)(const Scenario&, const Fault&);

void SweepPoint(Texts& complaints, const Scenario& scenario, const Record& record, const Point& point, Player player,
                const Observation& next) {
  const std::string where = scenario.name + ", call " + std::to_string(point.position) + ", " + point.call;
  const auto [row, nthOfRow] = PlaceOf(scenario.table, record, point);
  if (row == nullptr) {
    complaints.push_back(where + ": the table has no row for it");
    return;
  }
  const auto play = [&, nth = nthOfRow](const Fault& fault, const Handling& handling) {
    const testing::ScopedTrace trace(__FILE__, __LINE__, where + " " + Described(fault));
    ++faultsPlayed;
    Judge judge(complaints, where + " " + Described(fault));
    Compare(judge, player(scenario, fault), Promised(record, point, handling, fault, nth), handling, next);
  };
  for (const auto& [code, handling] : row->failing.byCode) {
    if (handling.ending != Handling::Ending::kNoSuchFailure) play({point.position, std::nullopt, code}, handling);
  }
  for (const Thrown thrown : kEveryThrown) play({point.position, thrown, std::nullopt}, row->throwing.of(thrown));
}

// The points of the first call in a process that the second does not have: they fill the one-time tables.
std::vector<Point> PointsOnlyIn(const Record& first, const Record& second) {
  std::map<std::string, std::size_t> again;
  for (const Point& point : second.points) ++again[point.call];
  std::vector<Point> only;
  for (const Point& point : first.points) {
    auto& left = again[point.call];
    if (left == 0)
      only.push_back(point);
    else
      --left;
  }
  return only;
}

}  // namespace

Record RecordOf(const Scenario& scenario) {
  Stage stage(scenario);
  Record record;
  record.unharmed = stage.Play(kUnharmed);
  record.points = stage.Points();
  return record;
}

Outcome Harm(const Scenario& scenario, const Fault& fault) {
  Outcome outcome;
  bool sameCompany = false;
  {
    Stage stage(scenario);
    Install(stage.Host(), fault);
    outcome.harmed = stage.Play(fault.position);
    sameCompany = stage.IsAsBefore();
    stage.Host().ClearFaults();
    if (sameCompany) outcome.next = stage.Play(kUnharmed);
    outcome.goingOn = stage.GoOn();
  }
  if (!sameCompany) outcome.next = Stage(scenario).Play(kUnharmed);
  return outcome;
}

Texts Sweep(const Scenario& scenario) {
  Texts complaints;
  const Record first = RecordOfAFreshProcess(scenario);
  RecordOf(scenario);
  const Record later = RecordOf(scenario);
  for (const Point& point : PointsOnlyIn(first, later)) {
    SweepPoint(complaints, scenario, first, point, HarmInAFreshProcess, later.unharmed);
  }
  for (const Point& point : later.points) SweepPoint(complaints, scenario, later, point, Harm, later.unharmed);
  return complaints;
}

std::size_t FaultsPlayed() {
  return faultsPlayed;
}

int PlayInThisProcess(const std::vector<std::string>& arguments) {
  const auto scenario = std::ranges::find(Scenarios(), arguments.at(0), &Scenario::name);
  if (scenario == Scenarios().end()) return 2;
  const int thrown = std::stoi(arguments.at(2));
  const long code = std::stol(arguments.at(3));
  const Fault fault{std::stoul(arguments.at(1)), thrown < 0 ? std::nullopt : std::optional(static_cast<Thrown>(thrown)),
                    code == kNoCode ? std::nullopt : std::optional(code)};
  std::ofstream out(arguments.at(4));
  if (fault.position == kUnharmed) {
    Write(out, RecordOf(*scenario));
    return out.flush() ? 0 : 3;
  }
  const Outcome outcome = Harm(*scenario, fault);
  Write(out, outcome.harmed);
  Write(out, outcome.next);
  Write(out, outcome.goingOn);
  return out.flush() ? 0 : 3;
}

void SetProgram(const std::string& path) {
  program = path;
}

}  // namespace faults
