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

// By name.
std::vector<Name> ListNames(Company& company);

}  // namespace desk
