#include "bench/Comparison.h"

#include <fmt/format.h>

#include <algorithm>
#include <cstdio>
#include <stdexcept>

namespace bench {

namespace {

std::string NameOf(const std::string& what, const char* side) {
  return what + " | " + side;
}

std::string Duration(double seconds) {
  if (seconds < 1e-6) return fmt::format("{:.0f} ns", seconds * 1e9);
  if (seconds < 1e-3) return fmt::format("{:.2f} us", seconds * 1e6);
  if (seconds < 1) return fmt::format("{:.2f} ms", seconds * 1e3);
  return fmt::format("{:.3f} s", seconds);
}

}  // namespace

// Keeps the medians for the table, and shows each as it comes.
class Reporter : public benchmark::BenchmarkReporter {
 public:
  explicit Reporter(Table& table) : table_(table) {}

  bool ReportContext(const Context& /*context*/) override { return true; }

  void ReportRuns(const std::vector<Run>& runs) override {
    for (const Run& run : runs) {
      if (run.error_occurred) {
        failed_ = true;
        fmt::print("{}: {}\n", run.run_name.function_name, run.error_message);
      }
      if (run.run_type != Run::RT_Aggregate || run.aggregate_name != "median") continue;
      const double unit = benchmark::GetTimeUnitMultiplier(run.time_unit);
      const Table::Median median{run.GetAdjustedRealTime() / unit, run.GetAdjustedCPUTime() / unit};
      table_.medians_[run.run_name.function_name] = median;
      fmt::print("  {:<75} {:>10}\n", run.run_name.function_name, Duration(median.seconds));
      std::fflush(stdout);
    }
  }

  bool Failed() const noexcept { return failed_; }

 private:
  Table& table_;
  bool failed_ = false;
};

void Table::Add(Comparison comparison, Body ours, Body byHand) {
  const std::string name = NameOf(comparison.what, kByHand);
  Register(NameOf(comparison.what, kOurs), comparison, std::move(ours));
  Register(name, comparison, std::move(byHand));
  hands_[comparison.what].push_back(name);
  comparisons_.push_back(std::move(comparison));
}

void Table::AddOtherHand(const std::string& what, const char* side, Body byHand) {
  Register(NameOf(what, side), Comparison(), std::move(byHand));
  hands_[what].push_back(NameOf(what, side));
}

void Table::Register(const std::string& name, const Comparison& comparison, Body body) {
  auto* const registered = benchmark::RegisterBenchmark(name.c_str(), std::move(body))->UseRealTime();
  if (comparison.waitsForDisk) registered->Repetitions(durable_.repetitions)->Iterations(durable_.requests);
  if (comparison.rounds != 0) registered->Repetitions(comparison.rounds)->Iterations(1);
}

void Table::Run(int repetitions, double minimumSeconds) {
  std::vector<std::string> arguments{"multientity_bench", fmt::format("--benchmark_repetitions={}", repetitions),
                                     fmt::format("--benchmark_min_time={}", minimumSeconds),
                                     "--benchmark_enable_random_interleaving=true"};
  std::vector<char*> pointers;
  for (std::string& argument : arguments) pointers.push_back(argument.data());
  auto count = static_cast<int>(pointers.size());
  benchmark::Initialize(&count, pointers.data());
  Reporter reporter(*this);
  benchmark::RunSpecifiedBenchmarks(&reporter);
  Print();
  if (reporter.Failed()) throw std::runtime_error("a benchmark failed");
}

void Table::Print() const {
  fmt::print("\n| what | multientity | by hand | ratio | CPU ratio | at most |\n|---|---:|---:|---:|---:|---:|\n");
  for (const Comparison& comparison : comparisons_) PrintLine(comparison);
}

void Table::PrintLine(const Comparison& comparison) const {
  const auto ours = medians_.find(NameOf(comparison.what, kOurs));
  if (ours == medians_.end()) return;
  Median best;
  for (const std::string& hand : hands_.at(comparison.what)) {
    const auto found = medians_.find(hand);
    if (found == medians_.end()) continue;
    if (best.seconds == 0.0 || found->second.seconds < best.seconds) best = found->second;
  }
  const std::optional<double> perItem = SecondsPerItem(comparison.what);
  fmt::print("| {} | {}{} | {} | {:.2f} | {:.2f} | {:.1f} |\n", comparison.what, Duration(ours->second.seconds),
             perItem ? fmt::format(" ({} each)", Duration(*perItem)) : "", Duration(best.seconds),
             ours->second.seconds / best.seconds, ours->second.cpuSeconds / best.cpuSeconds, comparison.target);
}

std::optional<double> Table::SecondsPerItem(const std::string& what) const {
  const auto comparison = std::ranges::find(comparisons_, what, &Comparison::what);
  const auto ours = medians_.find(NameOf(what, kOurs));
  if (comparison == comparisons_.end() || comparison->items == 0.0 || ours == medians_.end()) return std::nullopt;
  return ours->second.seconds / comparison->items;
}

}  // namespace bench
