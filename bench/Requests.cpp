#include <fmt/format.h>

#include <memory>
#include <vector>

#include "MultiEntity/MultiEntityDriver.h"
#include "bench/Benchmarks.h"
#include "bench/HandWritten.h"
#include "bench/Logging.h"
#include "bench/SampleCompany.h"
#include "standalone/company/Session.h"
#include "standalone/company/StandaloneHost.h"

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

struct Request {
  std::string realm;
  std::string id;
};

// Line number n belongs to transaction n + (n - 1) / 3.
Request RequestOf(std::int64_t line) {
  const std::int64_t transaction = line + (line - 1) / 3;
  return {RealmId(static_cast<std::int32_t>(1 + transaction % kPartners)), RequestId(line)};
}

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

MEStatusCode Establish(StandaloneHost& host, const Request& request) {
  return host.Request(Access::kWrite, [&] {
    return MultiEntityDriver::UpdateTransactionWithState(std::string_view(request.realm), std::string_view(request.id),
                                                         MEStateEstablished);
  });
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

void RequireSameChanges(const std::filesystem::path& folder) {
  constexpr std::int64_t kLines = 1'000;
  const std::filesystem::path ours = CopyOf(CompanyWith(folder, kLines), ".states-check");
  const std::filesystem::path theirs = CopyOf(CompanyWith(folder, kLines), ".states-check-by-hand");
  const auto changeSome = [](auto&& establish) {
    Walk walk(kLines);
    for (int count = 0; count < 100; ++count) Require(establish(RequestOf(walk.Next())), "the state did not change");
  };
  {
    StandaloneHost host(ours);
    const Session session(host);
    changeSome([&](const Request& request) { return Establish(host, request) == MEStatusSuccess; });
  }
  {
    HandWritten hand(theirs);
    changeSome([&](const Request& request) { return hand.Establish(request.realm, request.id); });
  }
  Require(ContentOf(ours) == ContentOf(theirs), "the changed states differ");
}

void AddStateChange(Table& table, const std::filesystem::path& folder, std::int64_t lines, const Logging& logging) {
  const std::string title = logging.TitleOf(fmt::format("state change by request id among {} rows", lines));
  if (!table.Wants(title)) return;
  const std::filesystem::path company = CompanyWith(folder, lines);
  RequireSameChanges(folder);
  const std::filesystem::path ours = CopyOf(company, logging.SuffixOf(".states").c_str());
  const std::filesystem::path theirs = CopyOf(company, logging.SuffixOf(".states-by-hand").c_str());
  table.Add(
      {.what = title, .target = 1.2, .waitsForDisk = true},
      [ours, logging, walk = Walk(lines)](benchmark::State& state) mutable {
        StandaloneHost host(ours, standalone::kAdministratorName, logging.Options());
        const Session session(host);
        Repeat(state, [&] {
          if (Establish(host, RequestOf(walk.Next())) != MEStatusSuccess)
            state.SkipWithError("the state did not change");
        });
      },
      [theirs, walk = Walk(lines)](benchmark::State& state) mutable {
        HandWritten hand(theirs);
        Repeat(state, [&] {
          const Request request = RequestOf(walk.Next());
          if (!hand.Establish(request.realm, request.id)) state.SkipWithError("the state did not change");
        });
      });
}

}  // namespace

void AddRequests(Table& table, const std::filesystem::path& folder, const Sizes& sizes) {
  for (const Logging& logging : kLoggings) {
    AddExistence(table, folder, sizes.storedLines, logging);
    AddStateChange(table, folder, sizes.storedLines, logging);
  }
}

}  // namespace bench
