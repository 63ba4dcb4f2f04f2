// Runs random histories of the module beside its model; see the section about the model in docs/reliability.md.
#include <algorithm>
#include <chrono>
#include <cstdint>
#include <cstdio>
#include <optional>
#include <thread>

#include <CLI/CLI.hpp>

#include "model/Coverage.h"
#include "model/Processes.h"

namespace {

int Run(const model::Extent& extent, bool wholeTable) {
  const auto began = std::chrono::steady_clock::now();
  model::Coverage coverage;
  const std::size_t failed = model::RunProcesses(extent, coverage);
  const std::chrono::duration<double> took = std::chrono::steady_clock::now() - began;

  std::printf("%s", model::Table(coverage).c_str());
  std::printf("%llu histories, %llu steps, %llu of them with a host call that failed, in %.1f s\n",
              static_cast<unsigned long long>(coverage.histories), static_cast<unsigned long long>(coverage.operations),
              static_cast<unsigned long long>(coverage.faults), took.count());
  if (failed != 0) return 1;
  if (!wholeTable) return 0;
  const auto missing = model::Missing(coverage);
  for (const std::string& line : missing) std::printf("%s\n", line.c_str());
  return missing.empty() ? 0 : 1;
}

}  // namespace

int main(int argc, char** argv) {
  CLI::App program("Runs random histories of the module and of a model of it side by side and compares them.");
  model::Extent extent;
  extent.atOnce = std::max(1U, std::thread::hardware_concurrency());
  std::optional<std::uint64_t> seed;
  program.add_option("--seed", seed, "Runs the one process of this seed again, as a failing run prints it");
  program.add_option("--first-seed", extent.firstSeed, "The first process's seed; the others follow")
      ->capture_default_str();
  program.add_option("--processes", extent.processes, "How many processes run")->capture_default_str();
  program.add_option("--histories", extent.histories, "How many histories a process lives through")
      ->capture_default_str();
  program.add_option("--operations", extent.operations, "How many steps a history has")->capture_default_str();
  CLI11_PARSE(program, argc, argv);
  if (seed.has_value()) {
    extent.firstSeed = *seed;
    extent.processes = 1;
  }
  const bool wholeRun = extent.processes * extent.histories >= 10'000;
  return Run(extent, wholeRun);
}
