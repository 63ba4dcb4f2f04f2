#include "crash/UnluckyPartners.h"

#include <algorithm>
#include <fstream>
#include <thread>
#include <utility>

#include <nlohmann/json.hpp>

#include "crash/Contents.h"
#include "partners/AtEveryMoment.h"
#include "partners/AtRest.h"
#include "standalone/exchange/FolderMailbox.h"
#include "standalone/values/States.h"

namespace {

using Json = nlohmann::json;
using partners::kCompanies;
using standalone::InboxState;
using standalone::TransactionState;
using std::chrono::nanoseconds;
using enum standalone::TransactionState;

constexpr std::size_t kCommandsToTell = 16;
constexpr int kMeasuredCarryings = 5;
constexpr int kChangesOfACarrying = 20;  // to begin with
// Of bills that a rule fits, as soon as they come.
constexpr const char* kBookedUpTo = "200";

constexpr std::string_view kAccounts =
    "name,type\n"
    "Checking,Bank\n"
    "Payables,Accounts Payable\n"
    "Utilities,Expense\n"
    "Due from Alder,Other Current Asset\n"
    "Due to Alder,Other Current Liability\n"
    "Due from Birch,Other Current Asset\n"
    "Due to Birch,Other Current Liability\n";
constexpr std::string_view kNames = "name,kind\nNorthern Power,vendor\nWalker,vendor\n";

using Words = std::vector<std::string>;

void Append(Words& words, const Words& more) {
  words.insert(words.end(), more.begin(), more.end());
}

// Nothing of none.
template <typename Row>
const Row* AnyOf(Random& random, const std::vector<const Row*>& rows) {
  if (rows.empty()) return nullptr;
  return rows[static_cast<std::size_t>(Pick(random, 0, static_cast<int>(rows.size()) - 1))];
}

std::size_t OtherOf(std::size_t who) {
  return 1 - who;
}

void WriteList(const std::filesystem::path& file, std::string_view text) {
  std::ofstream(file, std::ios::binary) << text;
}

const char* WordOf(int type) {
  return type == kBill ? "bill" : type == kCheck ? "check" : "entry";
}

// The files that lie in a folder, by what they are.
struct Lying {
  std::set<std::string> letters;
  std::set<std::string> drafts;
};

Lying LyingIn(const std::filesystem::path& folder) {
  Lying lying;
  for (const auto& entry : std::filesystem::directory_iterator(folder)) {
    const std::string ending = entry.path().extension().string();
    if (ending == exchange::kEnvelopeSuffix) lying.letters.insert(entry.path().filename().string());
    if (ending == exchange::kDraftSuffix) lying.drafts.insert(entry.path().filename().string());
  }
  return lying;
}

bool HasMore(const std::set<std::string>& after, const std::set<std::string>& before) {
  return !std::ranges::includes(before, after);
}

CarryingMoment MomentOf(const ProgramRun& run, Traces traces, const Lying& before, const Lying& after) {
  if (!run.out.empty()) return CarryingMoment::kReported;
  if (HasMore(after.letters, before.letters)) return CarryingMoment::kLetterPut;
  if (HasMore(after.drafts, before.drafts)) return CarryingMoment::kLetterBegun;
  if (traces.inLog || traces.inFile) return CarryingMoment::kBooksWritten;
  return run.hadFileOpen ? CarryingMoment::kNothingWritten : CarryingMoment::kBeforeOpening;
}

Words RequestsIn(const Json& answer, const char* list) {
  Words requests;
  for (const Json& item : answer.at(list)) {
    if (!item.at("requestId").is_null()) requests.push_back(item.at("requestId").get<std::string>());
  }
  return requests;
}

// Of what was entered, or of a reversal and what was entered in the place of the reversed.
Words EnteredRequestsIn(const Json& answer) {
  if (!answer.contains("reversal")) return RequestsIn(answer, "lines");
  Words requests = RequestsIn(answer.at("reversal"), "lines");
  if (answer.contains("correction")) Append(requests, RequestsIn(answer.at("correction"), "lines"));
  return requests;
}

}  // namespace

UnluckyPartners::UnluckyPartners(const Scene& scene) : scene_(scene), companies_(scene.directory, 2) {
  for (std::size_t who = 0; who < companies_.Size(); ++who) Make(who);
  Pair();
  companies_.Keep();
  Measure();
}

void UnluckyPartners::Make(std::size_t who) {
  const std::filesystem::path folder = companies_.FolderOf(who);
  WriteList(folder / "accounts.csv", kAccounts);
  WriteList(folder / "names.csv", kNames);
  RunToItsEnd(scene_, {"init", File(who), "--name", kCompanies.at(who)});
  RunToItsEnd(scene_, {"import", "accounts", File(who), folder / "accounts.csv"});
  RunToItsEnd(scene_, {"import", "names", File(who), folder / "names.csv"});
}

// Each books what a rule fits up to an amount as soon as it comes.
void UnluckyPartners::Pair() {
  RunToItsEnd(scene_, {"partner", "pair", File(0), File(1), "--due-from", "Due from Birch", "--due-to", "Due to Birch",
                       "--other-due-from", "Due from Alder", "--other-due-to", "Due to Alder", "--folder",
                       companies_.Shared()});
  for (std::size_t who = 0; who < companies_.Size(); ++who) {
    const std::string partner = kCompanies.at(OtherOf(who));
    RunToItsEnd(scene_, {"rules", "add", File(who), "--partner", partner, "--name", "Northern Power", "--expense",
                         "Utilities"});
    RunToItsEnd(scene_, {"partner", "auto", File(who), partner, "--up-to", kBookedUpTo});
  }
}

// How long commands take that are not killed; the commands that a history has first are measured there.
void UnluckyPartners::Measure() {
  std::vector<nanoseconds> times;
  for (int round = 0; round < kMeasuredCarryings; ++round) {
    for (std::size_t who = 0; who < companies_.Size(); ++who) {
      RunToItsEnd(scene_, Record(who).words);
      times.push_back(RunToItsEnd(scene_, Carry(who).words).took);
    }
  }
  std::ranges::sort(times);
  timings_.emplace(Carry(0).kind, Timing(times[times.size() / 2]));
  changes_.emplace(Carry(0).kind, kChangesOfACarrying);
}

std::string UnluckyPartners::AnyDay() {
  const int day = Pick(random_, 1, 28);
  return "2026-05-" + std::string(day < 10 ? "0" : "") + std::to_string(day);
}

std::vector<std::string> UnluckyPartners::Lines(int type, std::size_t who) {
  const std::int64_t amount = Pick(random_, 300, 150'000);
  Words words{"--line", "Utilities", AmountText(amount)};
  if (type == kJournalEntry) Append(words, {"--line", "Checking", "-" + AmountText(amount)});
  Append(words, {"--partner", kCompanies.at(OtherOf(who)), "--share", "1/3", "--date", AnyDay()});
  return words;
}

UnluckyPartners::Act UnluckyPartners::Record(std::size_t who) {
  const int dice = Pick(random_, 1, 4);
  const int type = dice <= 2 ? kBill : dice == 3 ? kCheck : kJournalEntry;
  Words words{WordOf(type), "record", File(who)};
  if (type != kJournalEntry) Append(words, {"--name", OneIn(random_, 3) ? "Walker" : "Northern Power"});
  Append(words, Lines(type, who));
  return {.kind = "record", .words = std::move(words), .promise = Promise::kEntered};
}

const partners::RequestRow* UnluckyPartners::AnyOwn(std::size_t who, std::initializer_list<TransactionState> states) {
  std::vector<const partners::RequestRow*> rows;
  for (const partners::RequestRow& row : seen_.at(who).rows) {
    if (row.isOwn && std::ranges::find(states, TransactionState{row.state}) != states.end()) rows.push_back(&row);
  }
  return AnyOf(random_, rows);
}

const partners::InboxRow* UnluckyPartners::AnyWaiting(std::size_t who) {
  std::vector<const partners::InboxRow*> rows;
  for (const partners::InboxRow& row : seen_.at(who).inbox) {
    if (row.state == InboxState::kNew || row.state == InboxState::kHeld) rows.push_back(&row);
  }
  return AnyOf(random_, rows);
}

UnluckyPartners::Act UnluckyPartners::Correct(std::size_t who) {
  const partners::RequestRow* row = AnyOwn(who, {kEntered, kCameBack, kEstablished});
  if (row == nullptr) return Record(who);
  Words words{WordOf(row->type), "correct", File(who), std::to_string(row->txnId)};
  Append(words, Lines(row->type, who));
  return {.kind = "correct", .words = std::move(words), .promise = Promise::kEntered};
}

UnluckyPartners::Act UnluckyPartners::Reverse(std::size_t who) {
  const partners::RequestRow* row = AnyOwn(who, {kEntered, kCameBack, kEstablished});
  if (row == nullptr) return Record(who);
  return {.kind = "reverse",
          .words = {"reverse", File(who), std::to_string(row->txnId), "--date", AnyDay()},
          .promise = Promise::kEntered};
}

UnluckyPartners::Act UnluckyPartners::Withdraw(std::size_t who) {
  const partners::RequestRow* row = AnyOwn(who, {kSent});
  if (row == nullptr) return Record(who);
  return {.kind = "withdraw", .words = {"outbox", "withdraw", File(who), row->request}, .promise = Promise::kWithdrawn};
}

// One that is named, or many at once.
UnluckyPartners::Act UnluckyPartners::Accept(std::size_t who) {
  const partners::InboxRow* row = AnyWaiting(who);
  if (row == nullptr) return Record(who);
  Act act{.kind = "accept", .words = {"inbox", "accept", File(who)}, .promise = Promise::kAccepted};
  const int dice = Pick(random_, 1, 6);
  Append(act.words, {dice <= 2 ? "--all" : row->request});
  Append(act.words, dice == 1 ? Words{"--by", "rule"} : Words{"--expense", "Utilities", "--name", "Walker"});
  return act;
}

UnluckyPartners::Act UnluckyPartners::Reject(std::size_t who) {
  const partners::InboxRow* row = AnyWaiting(who);
  if (row == nullptr) return Record(who);
  return {.kind = "reject",
          .words = {"inbox", "reject", File(who), row->request, "--reason", "Not ours"},
          .promise = Promise::kRejected};
}

UnluckyPartners::Act UnluckyPartners::AnyAct(std::size_t who) {
  const int dice = Pick(random_, 1, 20);
  if (dice <= 8) return Record(who);
  if (dice <= 12) return Accept(who);
  if (dice <= 14) return Reject(who);
  if (dice <= 16) return Withdraw(who);
  return dice <= 18 ? Reverse(who) : Correct(who);
}

UnluckyPartners::Act UnluckyPartners::Carry(std::size_t who) const {
  return {.kind = "exchange run", .words = {"exchange", "run", File(who)}, .promise = Promise::kCarried};
}

// By one program, which has another one for each at work.
UnluckyPartners::Act UnluckyPartners::CarryForBoth() const {
  return {.kind = "run for both", .words = {"exchange", "run", File(0), File(1)}, .promise = Promise::kCarriedForBoth};
}

// Half of them anywhere, half of them at one of the changes that they make; a command of which nobody knows how long it
// takes is not killed.
UnluckyPartners::Attempt UnluckyPartners::NewAttempt(std::size_t who, Act act, int killsOneIn) {
  Attempt attempt{.act = std::move(act), .who = who, .killAfter = {}, .killAtChange = {}, .run = {}, .report = {}};
  const auto timing = timings_.find(attempt.act.kind);
  if (timing == timings_.end() || !OneIn(random_, killsOneIn)) return attempt;
  if (OneIn(random_, 2)) {
    attempt.killAtChange = Pick(random_, 1, changes_.at(attempt.act.kind));
  } else {
    attempt.killAfter = OneIn(random_, 8) ? kWhenItPrints : timing->second.NextKill(random_);
  }
  return attempt;
}

// Of each company one that carries, or one of both, and mostly a person at work, before it or beside it.
std::vector<UnluckyPartners::Lane> UnluckyPartners::NewLanes() {
  std::vector<Lane> lanes;
  const bool isOneForBoth = OneIn(random_, 5);
  for (std::size_t who = 0; who < companies_.Size(); ++who) {
    Lane lane;
    if (!OneIn(random_, 4)) {
      lane.push_back(NewAttempt(who, AnyAct(who), 4));
      if (isOneForBoth || OneIn(random_, 3)) lanes.push_back(std::exchange(lane, {}));
    }
    if (isOneForBoth) continue;
    lane.push_back(NewAttempt(who, Carry(who), OneIn(random_, 6) ? 2 : 1));
    lanes.push_back(std::move(lane));
  }
  if (isOneForBoth) lanes.push_back({NewAttempt(0, CarryForBoth(), OneIn(random_, 6) ? 2 : 1)});
  return lanes;
}

void UnluckyPartners::Try(Attempt& attempt) const {
  const std::filesystem::path file = companies_.FileOf(attempt.who);
  std::vector<std::filesystem::path> folders{file.parent_path(), companies_.Shared()};
  if (attempt.act.promise == Promise::kCarriedForBoth) folders.push_back(companies_.FolderOf(OtherOf(attempt.who)));
  const Stamps stamps(file);
  const Lying before = LyingIn(companies_.Shared());
  attempt.run = Run(CommandOf(scene_, attempt.act.words), {.directory = scene_.directory,
                                                           .watchedFile = file,
                                                           .killAfter = attempt.killAfter,
                                                           .watchedFolders = std::move(folders),
                                                           .killAtChange = attempt.killAtChange});
  attempt.report = ReportOf(attempt.run);
  attempt.moment = MomentOf(attempt.run, stamps.Until(Stamps(file)), before, LyingIn(companies_.Shared()));
}

void UnluckyPartners::Step(PartnersTally& tally) {
  std::vector<Lane> lanes = NewLanes();
  {
    std::vector<std::jthread> threads;
    threads.reserve(lanes.size());
    for (Lane& lane : lanes) {
      threads.emplace_back([this, &lane] { std::ranges::for_each(lane, [this](Attempt& attempt) { Try(attempt); }); });
    }
  }
  for (const Lane& lane : lanes) std::ranges::for_each(lane, [this](const Attempt& attempt) { Remember(attempt); });
  Look();
  for (const Lane& lane : lanes) {
    for (const Attempt& attempt : lane) Judge(attempt, tally);
  }
}

void UnluckyPartners::Judge(const Attempt& attempt, PartnersTally& tally) {
  const bool wasKilled = attempt.run.ending == Ending::kKilled;
  const bool isForOne = attempt.act.promise == Promise::kCarried;
  const bool isCarrying = isForOne || attempt.act.promise == Promise::kCarriedForBoth;
  CommandTally& commands = tally.commands[attempt.act.kind];
  if (wasKilled) {
    ++tally.kills;
    ++commands.killed;
    if (isForOne) ++tally.carrying.at(static_cast<std::size_t>(attempt.moment));
  }
  const bool isRefused = attempt.report.kind == Report::Kind::kRefused;
  if (attempt.report.kind == Report::Kind::kFailed || (isRefused && isCarrying)) {
    Fail(attempt.act.kind + " failed: " + attempt.report.text);
  }
  if (attempt.report.kind == Report::Kind::kDone) RequirePromised(attempt);
  if (!wasKilled) ++(isRefused ? commands.refused : commands.done);
  Learn(attempt);
}

void UnluckyPartners::Learn(const Attempt& attempt) {
  const std::string& kind = attempt.act.kind;
  const auto timing = timings_.try_emplace(kind, attempt.run.took).first;
  if (attempt.killAfter && attempt.killAfter != kWhenItPrints) {
    timing->second.Learn(*attempt.killAfter, attempt.run, attempt.moment >= CarryingMoment::kBooksWritten);
  }
  int& changes = changes_.try_emplace(kind, attempt.run.changes + 1).first->second;
  if (attempt.run.ending == Ending::kByItself) changes += (attempt.run.changes + 1 - changes) / 2;
  if (attempt.killAtChange == changes) ++changes;
}

// Nobody but the partner undoes what was reported, and not at once.
void UnluckyPartners::RequirePromised(const Attempt& attempt) const {
  const Json answer = Json::parse(attempt.report.text);
  const Seen& seen = seen_.at(attempt.who);
  const auto isInInbox = [&seen](const std::string& request, InboxState state) {
    return std::ranges::any_of(
        seen.inbox, [&](const partners::InboxRow& row) { return row.request == request && row.state == state; });
  };
  const auto require = [&](bool isThere, const std::string& what) {
    if (!isThere) Fail(std::string(kCompanies.at(attempt.who)) + " was told that it is done, and it is not: " + what);
  };
  switch (attempt.act.promise) {
    case Promise::kEntered:
      for (const std::string& request : EnteredRequestsIn(answer)) {
        require(std::ranges::find(seen.rows, request, &partners::RequestRow::request) != seen.rows.end(),
                "entered " + request);
      }
      return;
    case Promise::kAccepted:
      for (const std::string& request : RequestsIn(answer, "booked")) {
        require(isInInbox(request, InboxState::kAccepted), "accepted " + request);
      }
      return;
    case Promise::kRejected:
      for (const std::string& request : RequestsIn(answer, "rejected")) {
        require(isInInbox(request, InboxState::kRejected), "rejected " + request);
      }
      return;
    case Promise::kWithdrawn:
      require(std::ranges::any_of(seen.requests,
                                  [&](const auto& held) {
                                    return held.first.isOwn && held.first.request == attempt.act.words.back() &&
                                           held.second.isWithdrawn;
                                  }),
              "withdrawn " + attempt.act.words.back());
      return;
    case Promise::kCarried:
      RequireCarriedWell(attempt.who, answer);
      return;
    case Promise::kCarriedForBoth:
      for (std::size_t who = 0; who < companies_.Size(); ++who) {
        RequireCarriedWell(who, answer.at("companies").at(who).at("answer"));
      }
  }
}

// Kills break no letter, make nobody forget what it told, and close no folder.
void UnluckyPartners::RequireCarriedWell(std::size_t who, const nlohmann::json& answer) const {
  for (const Json& with : answer.at("partners")) {
    if (with.at("setAside").empty() && with.at("awaited").is_null() && with.at("failure").is_null()) continue;
    Fail(std::string(kCompanies.at(who)) + " carried with something amiss: " + with.dump());
  }
}

// On a copy, so that the next program finds the file as the one before it left it.
UnluckyPartners::Seen UnluckyPartners::LookAt(std::size_t who) const {
  const std::string name = kCompanies.at(who);
  const std::filesystem::path copy = CopyOf(companies_.FileOf(who));
  const Inspection found = Inspect(copy);
  if (!found.faults.empty()) Fail(name + ": " + found.faults.front());
  partners::Books books(copy);
  if (const std::optional<std::int64_t> at = books.TrailBreak()) {
    Fail(name + ": the audit trail breaks at line " + std::to_string(*at));
  }
  try {
    partners::RequireSound(name, books);
  } catch (const partners::Violation& violation) {
    Fail(violation.what());
  }
  Seen seen{
      .rows = books.Rows(), .inbox = books.Inbox(), .requests = HeldRequests(books), .facts = {}, .factsOfPartner = {}};
  for (const auto& [pairing, facts] : books.Facts()) {
    for (const partners::HeldFact& fact : facts) {
      seen.facts.insert(fact.fact.Id());
      if (!fact.isOwn) seen.factsOfPartner.insert(fact.fact.Id());
    }
  }
  return seen;
}

// Nothing is told before it is in the books of who tells it.
void UnluckyPartners::Look() {
  for (std::size_t who = 0; who < companies_.Size(); ++who) seen_.at(who) = LookAt(who);
  for (std::size_t who = 0; who < companies_.Size(); ++who) {
    const Seen& teller = seen_.at(OtherOf(who));
    if (!std::ranges::includes(teller.facts, seen_.at(who).factsOfPartner)) {
      Fail(std::string(kCompanies.at(who)) + " was told by " + kCompanies.at(OtherOf(who)) +
           " what is not in the books there");
    }
  }
}

void UnluckyPartners::Rest(PartnersTally& tally) {
  try {
    partners::ComeToRest(companies_);
    partners::RequireAgreement(companies_, /*hasRestores=*/false);
  } catch (const partners::Violation& violation) {
    companies_.CloseAll();
    Fail(violation.what());
  }
  companies_.CloseAll();
  for (std::size_t who = 0; who < companies_.Size(); ++who) {
    Attempt attempt{.act = Carry(who), .who = who, .killAfter = {}, .killAtChange = {}, .run = {}, .report = {}};
    Try(attempt);
    Remember(attempt);
    Look();
    Judge(attempt, tally);
  }
  ++tally.rests;
}

void UnluckyPartners::Remember(const Attempt& attempt) {
  history_.push_back("multientity " + Joined(attempt.act.words) +
                     (attempt.killAfter ? AfterMilliseconds(*attempt.killAfter) : "") +
                     (attempt.killAtChange ? " at change " + std::to_string(*attempt.killAtChange) : "") + ": " +
                     Description(attempt.run));
  if (history_.size() > kCommandsToTell) history_.erase(history_.begin());
}

void UnluckyPartners::Fail(const std::string& fault) const {
  std::string text = fault + "\nThe last commands, each with the moment at which it was to be killed:\n";
  for (const std::string& command : history_) text += "  " + command;
  throw BooksBroken(text);
}

void UnluckyPartners::Play(std::uint64_t seed, int kills, int killsUntilRest, PartnersTally& tally) {
  const auto began = std::chrono::steady_clock::now();
  random_.seed(seed);
  history_.clear();
  companies_.Begin();
  Look();
  const int until = tally.kills + kills;
  while (tally.kills < until) {
    const int untilRest = std::min(tally.kills + killsUntilRest, until);
    while (tally.kills < untilRest) Step(tally);
    Rest(tally);
  }
  for (const Seen& seen : seen_) {
    tally.settled += static_cast<int>(std::ranges::count_if(
        seen.requests, [](const auto& held) { return held.first.isOwn && held.second.Outcome().has_value(); }));
  }
  tally.took += std::chrono::steady_clock::now() - began;
}
