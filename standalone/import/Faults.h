#pragma once

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "standalone/values/Errors.h"

namespace standalone {

// What is wrong with the rows of a file: the first hundred faults by their lines, and how many there are.
class Faults {
 public:
  void Add(std::uint64_t line, std::string reason) { Add(Fault{{line, std::move(reason)}, /*ofTheWhole=*/false}); }
  // Of the rows from that line on as a whole.
  void AddOfTheWhole(std::uint64_t line, std::string reason) {
    Add(Fault{{line, std::move(reason)}, /*ofTheWhole=*/true});
  }
  // What was said of them as a whole is not so.
  void ReplaceThatOfTheWhole(std::uint64_t line, std::string reason);
  // All of `others`.
  void Add(const Faults& others);
  void Add(const BadRows& others);
  void Clear();

  bool Any() const noexcept { return count_ != 0; }
  // Whether a fault of that line would be among the first hundred.
  bool Shows(std::uint64_t line) const noexcept;

  // There are some.
  BadRows In(const std::string& file) const;

 private:
  struct Fault : BadRow {
    bool ofTheWhole = false;
  };

  void Add(Fault fault);

  std::vector<Fault> first_;
  std::uint64_t count_ = 0;
};

}  // namespace standalone
