#pragma once

#include <stdexcept>
#include <string>
#include <string_view>

#include <nlohmann/json.hpp>

namespace app {

// Keys stay in the order in which they were added.
using Json = nlohmann::ordered_json;

// An object whose lists have one element per line, so that line-wise tools can read them too. No text in it steers a
// terminal.
std::string JsonText(const Json& object);
// An object on one line.
std::string JsonLine(const Json& object);

// Standard output cannot be written.
class OutputFailed : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

// Writes lines for people to standard output; what else would steer a terminal is shown as standalone::Shown has it.
// Throws OutputFailed when it cannot be written, unless whoever read it has stopped reading: then the rest is not
// written.
void Print(std::string_view text);
// The same for what another program is to have byte by byte, such as CSV; it stays as it is.
void PrintData(std::string_view bytes);
// Makes sure that everything printed has arrived; throws like Print.
void FinishPrinting();
// Throws OutputFailed when something was not written as nobody reads any more; for who must not lose it.
void RequireAReader();

// Writes to standard error, as far as it goes, in lines as Print() has them.
void PrintError(std::string_view text) noexcept;

}  // namespace app
