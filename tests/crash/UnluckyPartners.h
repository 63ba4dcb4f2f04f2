#pragma once

#include <array>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include <nlohmann/json_fwd.hpp>

#include "crash/Commands.h"
#include "crash/Timing.h"
#include "crash/Wish.h"
#include "partners/Books.h"
#include "partners/Companies.h"
#include "partners/Holding.h"
#include "standalone/values/States.h"

// How far a carrying was when it was killed, as far as can be told from outside.
enum class CarryingMoment {
  kBeforeOpening,  // of the company file
  kNothingWritten,
  kBooksWritten,  // and no letter put
  kLetterBegun,
  kLetterPut,
  kReported,
};
inline constexpr std::size_t kCarryingMoments = 6;

// What became of the commands of one kind.
struct CommandTally {
  int done = 0;
  int refused = 0;
  int killed = 0;
};

struct PartnersTally {
  int kills = 0;
  std::array<int, kCarryingMoments> carrying{};
  std::map<std::string, CommandTally> commands;
  int rests = 0;    // at which both had to agree
  int settled = 0;  // requests that were, at the ends of histories
  std::chrono::nanoseconds took{};
};

// Two companies that are paired with each other, whose programs are killed again and again while people work with both
// and letters go between them.
class UnluckyPartners {
 public:
  // Makes and pairs them.
  explicit UnluckyPartners(const Scene& scene);

  // So many kills, beginning with the two as they were paired. The books of both are looked at whenever all programs
  // have ended, and after each `killsUntilRest` all is carried in peace until both agree. Throws BooksBroken.
  void Play(std::uint64_t seed, int kills, int killsUntilRest, PartnersTally& tally);

 private:
  // What the program promises by reporting that it has done it.
  enum class Promise { kEntered, kAccepted, kRejected, kWithdrawn, kCarried, kCarriedForBoth };
  struct Act {
    std::string kind;
    std::vector<std::string> words;
    Promise promise{};
  };
  struct Attempt {
    Act act;
    std::size_t who = 0;
    // One of them, or neither.
    std::optional<std::chrono::nanoseconds> killAfter;
    std::optional<int> killAtChange;
    ProgramRun run;
    Report report;
    CarryingMoment moment{};
  };
  using Lane = std::vector<Attempt>;
  // The books of one of the two, as they were found last.
  struct Seen {
    std::vector<partners::RequestRow> rows;
    std::vector<partners::InboxRow> inbox;
    std::map<partners::RequestName, partners::HeldRequest> requests;
    std::set<exchange::Hash> facts;
    std::set<exchange::Hash> factsOfPartner;
  };

  std::string File(std::size_t who) const { return companies_.FileOf(who).string(); }
  void Make(std::size_t who);
  void Pair();
  void Measure();

  std::string AnyDay();
  std::vector<std::string> Lines(int type, std::size_t who);
  Act Record(std::size_t who);
  Act Correct(std::size_t who);
  Act Reverse(std::size_t who);
  Act Withdraw(std::size_t who);
  Act Accept(std::size_t who);
  Act Reject(std::size_t who);
  Act AnyAct(std::size_t who);
  Act Carry(std::size_t who) const;
  Act CarryForBoth() const;
  const partners::RequestRow* AnyOwn(std::size_t who, std::initializer_list<standalone::TransactionState> states);
  const partners::InboxRow* AnyWaiting(std::size_t who);

  Attempt NewAttempt(std::size_t who, Act act, int killsOneIn);
  std::vector<Lane> NewLanes();
  void Try(Attempt& attempt) const;
  void Step(PartnersTally& tally);
  void Judge(const Attempt& attempt, PartnersTally& tally);
  void Learn(const Attempt& attempt);
  void RequirePromised(const Attempt& attempt) const;
  void RequireCarriedWell(std::size_t who, const nlohmann::json& answer) const;
  void Look();
  Seen LookAt(std::size_t who) const;
  void Rest(PartnersTally& tally);
  void Remember(const Attempt& attempt);
  [[noreturn]] void Fail(const std::string& fault) const;

  Scene scene_;
  partners::Companies companies_;
  Random random_;
  std::map<std::string, Timing> timings_;
  std::map<std::string, int> changes_;  // that commands make, as many as may be seen
  std::array<Seen, 2> seen_;
  std::vector<std::string> history_;
};
