#pragma once

#include <string>
#include <string_view>

#include "standalone/app/terminal/Table.h"
#include "standalone/desk/Pairing.h"

// What people are told of partners that this company exchanges letters with.
namespace app {

// The partner in quotes, as a command takes it.
std::string AsTyped(std::string_view name);

struct NextStep {
  std::string_view waitsFor;  // "us", "partner", "nobody"
  std::string_view why;       // how far the two companies are
  std::string toDo;           // what to type, or whom to call; empty for nothing
};
// `file` is the company as people type it.
NextStep NextStepWith(const desk::PairedPartner& partner, const std::string& file);

// How what is to be told gets to the partner: by its folder, or as text.
std::string HowToSend(const desk::PairedPartner& partner, const std::string& file);

Table PartnersTable(const std::vector<desk::PairedPartner>& partners);
// All of one partner, a line for each value.
std::string PartnerText(const desk::PairedPartner& partner, const std::string& file);

}  // namespace app
