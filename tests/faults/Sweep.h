#pragma once

#include <cstddef>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "faults/Scenario.h"

namespace faults {

// What can be seen of one call of an operation.
struct Observation {
  std::string outcome;  // what it answered or threw
  Texts lines;
  Texts results;
  Texts tables;
  Texts asked;  // of the host, after the call that failed

  friend bool operator==(const Observation&, const Observation&) = default;
};

// A call that can fail, and how things stood when it was made.
struct Point {
  std::size_t position;  // among all calls, from 1
  std::string call;
  std::size_t linesBefore;
  Texts results;
  Texts tables;
};

// An operation that the host does not disturb.
struct Record {
  Observation unharmed;
  std::vector<Point> points;
};

// How one call fails: with a code or without, or by throwing.
struct Fault {
  std::size_t position;
  std::optional<Thrown> thrown;
  std::optional<long> code;
};

// The operation with the fault, the operation called again without it, and what the host that was harmed does after all
// that.
struct Outcome {
  Observation harmed;
  Observation next;
  Texts goingOn;
};

Record RecordOf(const Scenario& scenario);
Outcome Harm(const Scenario& scenario, const Fault& fault);

// Lets every call of an operation fail in every way and compares what happens with the scenario's table: the calls that
// fill the module's one-time tables each in a process of its own, the others here, where those tables are full. Answers
// what was not as promised.
Texts Sweep(const Scenario& scenario);

// How many times Sweep() has called an operation with a fault.
std::size_t FaultsPlayed();

// The part of Sweep() that runs in a process of its own: `arguments` are what Sweep() started it with.
int PlayInThisProcess(const std::vector<std::string>& arguments);

// The program that Sweep() starts: this one.
void SetProgram(const std::string& path);

}  // namespace faults
