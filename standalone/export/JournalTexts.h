#pragma once

#include <cstdint>
#include <string>
#include <string_view>

// Texts as a journal in plain text holds them. What hledger or ledger would read as syntax or as the end of the text,
// and what is no plain character, stands as %XX, the byte in capital hexadecimal digits; a percent sign before two such
// digits, too, so that each text can be read back.
namespace standalone {

std::string AccountText(std::string_view fullName);
// Of one that is marked deleted while another account has its name: no other account is ever written so.
std::string DeletedAccountText(std::string_view fullName, std::int32_t id);

// What stands in parentheses before a description.
std::string CodeText(std::string_view code);
// Who is paid, and what for.
std::string DescriptionText(std::string_view name, std::string_view memo);
std::string CommentText(std::string_view text);
// Behind the name of a tag.
std::string TagText(std::string_view value);

}  // namespace standalone
