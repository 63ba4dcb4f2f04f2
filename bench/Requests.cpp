#include <fmt/format.h>

#include <memory>
#include <vector>

#include "MultiEntity/MultiEntityDriver.h"
#include "bench/Benchmarks.h"
#include "bench/HandWritten.h"
#include "bench/Logging.h"
#include "bench/SameRows.h"
#include "bench/SampleCompany.h"
#include "standalone/company/Session.h"
#include "standalone/company/StandaloneHost.h"
#include "standalone/desk/Company.h"
#include "standalone/desk/Transactions.h"
#include "standalone/desk/inside/Deeds.h"
#include "standalone/desk/inside/LineReader.h"
#include "standalone/desk/inside/Work.h"

namespace bench {

namespace {

using standalone::Access;
using standalone::Session;
using standalone::StandaloneHost;

// So many that their pages do not stay in the page cache.
constexpr std::int64_t kQuestions = 100'000;

// Walks over all stored requests in an order that no cache foresees.
class Walk {
 public:
  explicit Walk(std::int64_t lines) : lines_(lines) {}

  // A line's number, which gives its request id and partner.
  std::int64_t Next() {
    constexpr std::int64_t kStride = 387'420'489;
    at_ = (at_ + kStride) % lines_;
    return at_ + 1;
  }

 private:
  std::int64_t lines_;
  std::int64_t at_ = 0;
};

// Every other question is about a request that the company does not know.
std::vector<Request> Questions(std::int64_t lines, std::int64_t count) {
  Walk walk(lines);
  std::vector<Request> questions;
  for (std::int64_t number = 0; number < count; ++number) {
    questions.push_back(RequestOf(walk.Next()));
    if (number % 2 == 1) questions.back().id = RequestId(lines + number);
  }
  return questions;
}

// Asks them one after the other and then from the start again.
template <typename Answer>
void AskAll(benchmark::State& state, const std::vector<Request>& questions, Answer&& answer) {
  std::size_t next = 0;
  for (auto _ : state) {
    benchmark::DoNotOptimize(answer(questions[next]));
    if (++next == questions.size()) next = 0;
  }
}

MEStatusCode Ask(StandaloneHost& host, const Request& request) {
  return host.Request(Access::kRead, [&] {
    return MultiEntityDriver::DoesTransactionExist(std::string_view(request.realm), std::string_view(request.id));
  });
}

// As the desk does when the partner has answered.
void EstablishAtTheDesk(desk::Company& company, const Request& request) {
  desk::SetState(company, standalone::RealmId(request.realm), standalone::RequestId(request.id),
                 standalone::TransactionState::kEstablished);
}

// The operation of the module and the line of the audit trail, without what the desk asks besides.
bool EstablishByModule(desk::OpenCompany& company, const Request& request) {
  desk::Work work(company, desk::UseCase::kSetTransactionState);
  return work.Write([&] {
    DBMultiEntityRelation relation{};
    DBMultiEntityTransaction row{};
    work.Host().Relations().Find(request.realm, relation);
    work.Host().Intercompany().FindRequest(relation.relationId, request.id, row);
    const desk::IntercompanyLine before = desk::LineReader(work).ReadRequest(row);
    const MEStatusCode answer = MultiEntityDriver::UpdateTransactionWithState(
        std::string_view(request.realm), std::string_view(request.id), MEStateEstablished);
    return work.Recorded(answer, [&] {
      return desk::DeedOfState(before, {standalone::TransactionState::kEstablished, before.state.ofBefore});
    });
  }) == MEStatusSuccess;
}

void RequireSameAnswers(const std::filesystem::path& company, std::int64_t lines) {
  StandaloneHost host(company);
  const Session session(host);
  HandWritten hand(company);
  bool exists = true;
  for (const Request& request : Questions(lines, 100)) {
    Require((Ask(host, request) == MEStatusSuccess) == exists && hand.Exists(request.realm, request.id) == exists,
            "the answers to the existence of a request differ");
    exists = !exists;
  }
}

void AddExistence(Table& table, const std::filesystem::path& folder, std::int64_t lines, const Logging& logging) {
  const std::string title = logging.TitleOf(fmt::format("existence of a request id among {} rows", lines));
  if (!table.Wants(title)) return;
  const std::filesystem::path company = CompanyWith(folder, lines);
  RequireSameAnswers(company, lines);
  const auto questions = std::make_shared<const std::vector<Request>>(Questions(lines, kQuestions));
  table.Add(
      {.what = title, .target = 1.2},
      [company, questions, logging](benchmark::State& state) {
        StandaloneHost host(company, standalone::kAdministratorName, logging.Options());
        const Session session(host);
        AskAll(state, *questions, [&](const Request& request) { return Ask(host, request); });
      },
      [company, questions](benchmark::State& state) {
        HandWritten hand(company);
        AskAll(state, *questions, [&](const Request& request) { return hand.Exists(request.realm, request.id); });
      });
}

constexpr std::int64_t kCheckedLines = 1'000;
constexpr std::size_t kCheckedChanges = 100;

void RequireSameChanges(const std::filesystem::path& folder,
                        const std::function<void(const std::filesystem::path& company)>& changeSome) {
  RequireSameRows(CompanyWith(folder, kCheckedLines), "the changed states differ", changeSome,
                  [](HandWritten& hand, Moments moments) {
                    Require(moments.size() == kCheckedChanges, "a change has no line of its own in the audit trail");
                    Walk walk(kCheckedLines);
                    for (const HandWritten::Moment moment : moments) {
                      const Request request = RequestOf(walk.Next());
                      Require(hand.Establish(request.realm, request.id, moment), "the state did not change");
                    }
                  });
}

template <typename OpenedCompany, typename EstablishOne>
void ChangeSome(OpenedCompany& company, EstablishOne&& establish) {
  Walk walk(kCheckedLines);
  for (std::size_t count = 0; count < kCheckedChanges; ++count) establish(company, RequestOf(walk.Next()));
}

Body EstablishByHand(const std::filesystem::path& company, std::int64_t lines) {
  return [company, walk = Walk(lines)](benchmark::State& state) mutable {
    HandWritten hand(company);
    Repeat(state, [&] {
      const Request request = RequestOf(walk.Next());
      if (!hand.Establish(request.realm, request.id, platform::SystemClock().Now())) {
        state.SkipWithError("the state did not change");
      }
    });
  };
}

void AddStateChangeByModule(Table& table, const std::filesystem::path& folder, std::int64_t lines,
                            const Logging& logging) {
  const std::string title = logging.TitleOf(fmt::format("state change by request id among {} rows", lines));
  if (!table.Wants(title)) return;
  const std::filesystem::path company = CompanyWith(folder, lines);
  RequireSameChanges(folder, [&](const std::filesystem::path& copy) {
    desk::OpenCompany opened = logging.Open(copy);
    ChangeSome(opened, EstablishByModule);
  });
  const std::filesystem::path ours = CopyOf(company, logging.SuffixOf(".states").c_str());
  const std::filesystem::path theirs = CopyOf(company, logging.SuffixOf(".states-by-hand").c_str());
  table.Add(
      {.what = title, .target = 1.2, .waitsForDisk = true},
      [ours, logging, walk = Walk(lines)](benchmark::State& state) mutable {
        desk::OpenCompany opened = logging.Open(ours);
        Repeat(state, [&] {
          if (!EstablishByModule(opened, RequestOf(walk.Next()))) state.SkipWithError("the state did not change");
        });
      },
      EstablishByHand(theirs, lines));
}

void AddStateChangeAtTheDesk(Table& table, const std::filesystem::path& folder, std::int64_t lines) {
  const std::string title = fmt::format("state change by request id among {} rows at the desk", lines);
  if (!table.Wants(title)) return;
  const std::filesystem::path company = CompanyWith(folder, lines);
  RequireSameChanges(folder, [](const std::filesystem::path& copy) {
    desk::Company opened(copy);
    ChangeSome(opened, EstablishAtTheDesk);
  });
  const std::filesystem::path ours = CopyOf(company, ".states-at-the-desk");
  const std::filesystem::path theirs = CopyOf(company, ".states-at-the-desk-by-hand");
  table.Add(
      {.what = title, .target = 1.2, .waitsForDisk = true},
      [ours, walk = Walk(lines)](benchmark::State& state) mutable {
        desk::Company opened(ours);
        Repeat(state, [&] { EstablishAtTheDesk(opened, RequestOf(walk.Next())); });
      },
      EstablishByHand(theirs, lines));
}

}  // namespace

void AddRequests(Table& table, const std::filesystem::path& folder, const Sizes& sizes) {
  for (const Logging& logging : kLoggings) {
    AddExistence(table, folder, sizes.storedLines, logging);
    AddStateChangeByModule(table, folder, sizes.storedLines, logging);
  }
  AddStateChangeAtTheDesk(table, folder, sizes.storedLines);
}

}  // namespace bench
