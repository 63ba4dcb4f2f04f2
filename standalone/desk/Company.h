#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "standalone/desk/results/Lookalikes.h"
#include "standalone/values/OnlyRead.h"

namespace desk {

class OpenCompany;

struct NewCompany {
  std::filesystem::path file;
  std::string name;                  // 1 to 59 bytes of UTF-8 without control characters
  std::string homeCurrency = "USD";  // ISO 4217: three capital letters
  bool multiCurrency = false;
  bool sampleFile = false;
  bool accountantsCopy = false;
  bool networkShare = false;  // it is made also where CompanyOptions::networkShare is needed to work on it
};

// The one user that a new company has, an administrator.
inline constexpr const char* kFirstUser = "Admin";

// Makes a company file. standalone::CompanyFileError when something of that name exists already or the file cannot be
// made; standalone::InvalidInput for the company's own values.
void CreateCompany(const NewCompany& company);

// A company of an older version that was brought forward.
struct BroughtForward {
  std::size_t from = 0;  // schema versions
  std::size_t to = 0;
  std::filesystem::path before;   // the company as it was; empty for a copy in a temporary folder
  std::vector<std::string> left;  // what others had added and does not fit any more
};

// What the opening of a company did besides, for people to be told.
struct Opening {
  std::optional<BroughtForward> broughtForward;
  std::optional<standalone::OnlyRead> onlyRead;  // why a copy is read, and nothing can be saved
};

// A line that the operations log gained.
struct NewLogLine {
  std::int32_t level = 0;
  std::int32_t eventType = 0;
  std::string shortName;
  std::string message;
};

// Who works on a company, and who is told what happens meanwhile, on the company's thread; empty ones are not.
struct CompanyOptions {
  std::string user = kFirstUser;
  // Insists on working on a company although it lies on a network share, which only an administrator may do; nobody
  // else can have it open meanwhile. Without, it is only read there.
  bool networkShare = false;
  std::function<void(const Opening& opening)> onOpened;
  std::function<void(const NewLogLine& line)> onLogLine;
  std::function<void(std::int32_t status)> onAnswer;  // of the module
  std::function<void()> onSaved = nullptr;            // work is in the company file; throws nothing
  std::function<void(const Lookalikes& names)> onLookalikes = nullptr;
};

// A company that is open for one user, on the thread that opened it; one at a time in a process, as the module has one
// host. Everything that a person can ask for is a function that takes it. Besides what they say, they throw Refused,
// standalone::InvalidInput for a value or record that is none, standalone::ConstraintViolation for a change that the
// company's own rules refuse, and standalone::UnitOfWorkError when another program holds the company too long or the
// disk fails; a unit of work that throws leaves nothing behind, unless it throws standalone::OutcomeUnknown.
//
// The environment variable MULTIENTITY_NOW, a local time such as 2026-01-31T09:30:00, sets the clock for tests and
// scripts; it goes on from there, and the operations log says so.
class Company {
 public:
  // standalone::CompanyFileError, or standalone::InvalidInput when the company has no such user.
  explicit Company(const std::filesystem::path& file, CompanyOptions options = {});
  Company(const Company&) = delete;
  Company& operator=(const Company&) = delete;
  // Closes the company.
  ~Company();

  const std::filesystem::path& File() const noexcept;
  const std::string& UserName() const noexcept;
  // Without the bridge library beside the program nobody is an accountant, and no reminder comes.
  bool HasBridge() const noexcept;

  // For the use cases; to front ends it is nothing.
  OpenCompany& Opened() noexcept { return *opened_; }

 private:
  std::unique_ptr<OpenCompany> opened_;
};

}  // namespace desk
