#pragma once

#include <cstdint>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace standalone {

// The company file cannot be opened or created, is not one, was written by a newer program or is damaged. The message
// names the file and says what to do; the file is left as it was.
class CompanyFileError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

// Another program holds the company file.
class FileInUse : public CompanyFileError {
 public:
  using CompanyFileError::CompanyFileError;
};

// It is no company file.
class NotACompanyFile : public CompanyFileError {
 public:
  using CompanyFileError::CompanyFileError;
};

// It is damaged: only a backup helps.
class DamagedFile : public CompanyFileError {
 public:
  DamagedFile(const std::string& message, std::string reason) : CompanyFileError(message), reason_(std::move(reason)) {}
  // What is damaged, as a part of a sentence.
  const std::string& Reason() const noexcept { return reason_; }

 private:
  std::string reason_;
};

// A value that a person or a file handed in is not acceptable. The message names the value and what would be right.
class InvalidInput : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

// What is wrong with a row of a file.
struct BadRow {
  std::uint64_t line = 0;  // where it begins
  std::string reason;
};

// Rows of a file that are not acceptable: the first ones, and how many faults there are beside these. The message names
// the file and tells of all that are here.
class BadRows : public InvalidInput {
 public:
  BadRows(const std::string& message, std::vector<BadRow> first, std::uint64_t more)
      : InvalidInput(message), first_(std::move(first)), more_(more) {}

  const std::vector<BadRow>& First() const noexcept { return first_; }
  std::uint64_t More() const noexcept { return more_; }

 private:
  std::vector<BadRow> first_;
  std::uint64_t more_;
};

// A unit of work could not begin, go on or be committed: another program holds the file too long, the disk is full, the
// engine gave up. Nothing of the unit is in the file, but for what came before a question in it.
class UnitOfWorkError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

// The disk failed while a unit of work was committed: it is in the file as a whole or not at all, and which of them
// only a look tells.
class OutcomeUnknown : public UnitOfWorkError {
 public:
  using UnitOfWorkError::UnitOfWorkError;
};

// A change that the rules of the company file refuse, such as a name that is taken. The unit of work goes on.
class ConstraintViolation : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

}  // namespace standalone
