#pragma once

#include <filesystem>
#include <string_view>

// A text for somebody else, such as an invitation, that a person wants in a file of its own: for its owner, there as a
// whole or not at all, and never in the place of another file or of what belongs to the company.
namespace desk {

class Company;

// Both throw standalone::InvalidInput where one of that name is there or the name is none, std::runtime_error when it
// cannot be written. The first one is asked before that is done of which the text tells.
void RequireNewFile(Company& company, const std::filesystem::path& file);
void WriteNewFile(Company& company, const std::filesystem::path& file, std::string_view text);

}  // namespace desk
