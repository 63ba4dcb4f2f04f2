#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace desk {

class Company;

// Somebody whom transactions name.
struct Name {
  std::int32_t id = 0;  // record number
  std::string name;     // colon-separated, from the top
  std::string kind;     // "customer", "vendor", "employee", "other"
};

struct NameToAdd {
  std::string name;  // colon-separated, from the top; those above it are there
  std::string kind;
};

struct RenamedName {
  Name name;
  std::string before;         // its full name, which may be the same
  std::int64_t subNames = 0;  // whose full names have changed with it
};

// By name.
std::vector<Name> ListNames(Company& company);

// Names are given by record number or full name, as standalone::NameTable::Require() takes them. One that another has
// is standalone::InvalidInput. Needs one of the rights to create bills, checks and journal entries.
Name AddName(Company& company, const NameToAdd& name);
// The others are for administrators and accountants. It stays where it stands.
RenamedName RenameName(Company& company, const std::string& name, const std::string& ownName);
// One that no transaction carries and that none stands below.
Name DeleteName(Company& company, const std::string& name);

}  // namespace desk
