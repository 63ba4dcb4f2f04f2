#pragma once

#include <benchmark/benchmark.h>

#include <functional>
#include <map>
#include <optional>
#include <regex>
#include <string>
#include <vector>

namespace bench {

// One line of the table: what is measured on both sides in the same run. Each side's name is `what` and the side.
struct Comparison {
  std::string what;
  double target = 0.0;  // the most that the ratio of the medians may be
  // How many of what one measured iteration does, such as lines; 0 when the line itself is one.
  double items = 0.0;
  // Waits for the disk, whose time changes from one moment to the next: measured in many short repetitions. Both sides
  // do the same number of times, because a write-ahead log that still grows takes longer than one that is used again.
  bool waitsForDisk = false;
  // Of work that takes minutes, in place of the other numbers: how often it is measured, once each time.
  int rounds = 0;
};

inline constexpr const char* kOurs = "multientity";
inline constexpr const char* kByHand = "by hand";
inline constexpr const char* kByHandAddedBySql = "by hand, added up by SQL";
inline constexpr const char* kByHandAsText = "by hand, formatted by SQL";

// How often a side that waits for the disk is measured, and how many requests each time.
struct DurableRuns {
  int repetitions = 51;
  int requests = 500;
};

using Body = std::function<void(benchmark::State&)>;

// Measures one piece of work after another, but not the first: that one prepares statements and fills caches, which a
// side may also have done when it was made.
template <typename Work>
void Repeat(benchmark::State& state, Work&& work) {
  work();
  for (auto _ : state) work();
}

// Registers both sides of a comparison. With several hand-written sides the fastest one counts.
class Table {
 public:
  // What does not match the regular expression is left out.
  Table(const std::string& only, DurableRuns durable) : only_(only), durable_(durable) {}
  bool Wants(const std::string& what) const { return std::regex_search(what, only_); }

  void Add(Comparison comparison, Body ours, Body byHand);
  void AddOtherHand(const std::string& what, const char* side, Body byHand);

  std::size_t Size() const noexcept { return comparisons_.size(); }

  // Runs what is registered, each side as often as `repetitions` says and in an order mixed at random, and prints the
  // table of medians.
  void Run(int repetitions, double minimumSeconds);

  // Of the module's side, once it has run.
  std::optional<double> SecondsPerItem(const std::string& what) const;

 private:
  friend class Reporter;

  struct Median {
    double seconds = 0.0;
    double cpuSeconds = 0.0;
  };

  void Print() const;
  void PrintLine(const Comparison& comparison) const;
  void Register(const std::string& name, const Comparison& comparison, Body body);

  std::regex only_;
  DurableRuns durable_;
  std::vector<Comparison> comparisons_;
  std::map<std::string, std::vector<std::string>> hands_;
  std::map<std::string, Median> medians_;
};

}  // namespace bench
