#include "standalone/app/HowToOpen.h"

#include <fmt/format.h>

#include "standalone/desk/json/Json.h"
#include "standalone/values/Text.h"

namespace app {

namespace {

using standalone::PathText;

std::string BroughtForwardText(const std::string& what, const desk::BroughtForward& done) {
  std::string text = fmt::format("{} was brought from schema version {} to {}.", what, done.from, done.to);
  if (!done.before.empty()) {
    text += fmt::format(" As it was before it is kept in {}, which the older program opens.", PathText(done.before));
  }
  if (!done.left.empty()) {
    text += fmt::format(" What others had added to it and does not fit any more was left out: {}.",
                        fmt::join(done.left, ", "));
  }
  return text;
}

std::string OpeningText(const std::string& file, const desk::Opening& opening) {
  if (!opening.onlyRead) return BroughtForwardText(file, *opening.broughtForward);
  return fmt::format("{} {} and is read from a copy in a temporary folder; nothing can be saved.", file,
                     standalone::OnlyReadText(*opening.onlyRead)) +
         (opening.broughtForward ? ' ' + BroughtForwardText("The copy", *opening.broughtForward) : "");
}

void Tell(bool json, const std::string& file, const desk::Opening& opening) {
  if (!json) {
    PrintError(fmt::format("note: {}\n", standalone::Shown(OpeningText(file, opening))));
    return;
  }
  Json note{{"message", OpeningText(file, opening)}, {"file", file}};
  note.update(desk::JsonOf(opening));
  PrintError(JsonText({{"note", note}}));
}

std::string LookalikesText(const desk::Lookalikes& found) {
  const bool accounts = found.list == desk::Lookalikes::List::kAccounts;
  std::string text;
  for (const desk::Lookalikes::Pair& pair : found.first) {
    text += fmt::format("{}{} is like {}", text.empty() ? "" : ", ", standalone::Quoted(pair.name),
                        standalone::Quoted(pair.other));
  }
  const auto told = static_cast<std::int64_t>(found.first.size());
  if (found.count > told) text += fmt::format(", and {} more", found.count - told);
  return fmt::format(
      "among the {}, {}: they differ only by capitals or by how the same letters are written; look whether both are "
      "meant",
      accounts ? "accounts" : "names", text);
}

void Tell(bool json, const desk::Lookalikes& found) {
  if (!json) {
    PrintError(fmt::format("note: {}\n", standalone::Shown(LookalikesText(found))));
    return;
  }
  Json note{{"message", LookalikesText(found)}};
  note.update(desk::JsonOf(found));
  PrintError(JsonText({{"note", note}}));
}

}  // namespace

desk::CompanyOptions HowToOpen(Invocation& invocation, const std::string& file) {
  desk::CompanyOptions options;
  options.user = invocation.options.user;
  options.networkShare = invocation.options.networkShare;
  options.onOpened = [json = invocation.options.json, file](const desk::Opening& opening) {
    Tell(json, file, opening);
  };
  options.onAnswer = [&invocation](std::int32_t status) {
    invocation.TakeAnswer(status);
  };
  options.onSaved = [&invocation] {
    invocation.TakeSaved();
  };
  options.onLookalikes = [json = invocation.options.json](const desk::Lookalikes& found) {
    Tell(json, found);
  };
  if (invocation.options.trace) {
    options.onLogLine = [&trace = invocation.trace](const desk::NewLogLine& line) {
      trace.push_back(line);
    };
  }
  return options;
}

}  // namespace app
