#include "standalone/app/CarriedTexts.h"

#include <fmt/format.h>

#include <cstdint>
#include <vector>

#include "standalone/app/ExchangeTexts.h"
#include "standalone/app/Remedies.h"
#include "standalone/desk/results/Awaited.h"
#include "standalone/values/Counted.h"
#include "standalone/values/Text.h"

namespace app {

namespace {

std::string LinesOf(const desk::Json& texts, std::string_view before) {
  std::string lines;
  for (const desk::Json& text : texts) {
    lines += fmt::format("{}{}\n", before, standalone::Shown(text.get<std::string>()));
  }
  return lines;
}

// Null is an empty one.
std::string TextIn(const desk::Json& object, const char* key) {
  const desk::Json& text = object.at(key);
  return text.is_null() ? "" : standalone::Shown(text.get<std::string>());
}

desk::Awaited AwaitedIn(const desk::Json& object) {
  return {.isIdentityLost = object.at("identityLost").get<bool>(),
          .missing = object.at("missing").get<std::int64_t>(),
          .cameBack = object.at("cameBack").get<std::int64_t>(),
          .fromElsewhere = object.at("fromElsewhere").get<std::int64_t>(),
          .firstThatCameBack = object.at("first").get<std::vector<std::string>>(),
          .toCompare = object.at("toCompare").get<std::vector<std::string>>()};
}

}  // namespace

std::string TakenText(const desk::Json& letter, std::string_view indent) {
  std::string text = LinesOf(letter.at("done"), indent);
  if (const auto more = letter.at("moreDone").get<std::int64_t>(); more != 0) {
    text += fmt::format("{}and {} more, of which inbox list, outbox list and the audit trail tell\n", indent, more);
  }
  return text + LinesOf(letter.at("outstanding"), fmt::format("{}outstanding: ", indent));
}

desk::Json CarriedJson(const desk::CarriedWith& carried) {
  desk::Json json = desk::JsonOf(carried);
  json["hints"] = desk::Json::array();
  for (const desk::Remedy remedy : carried.remedies) {
    if (const std::string_view hint = HintFor(remedy); !hint.empty()) json["hints"].emplace_back(hint);
  }
  return json;
}

desk::Json CarriedJson(const std::vector<desk::CarriedWith>& all) {
  desk::Json json = desk::Json::array();
  for (const desk::CarriedWith& carried : all) json.push_back(CarriedJson(carried));
  return json;
}

std::string CarriedText(const desk::Json& carried, const std::string& file) {
  const std::string name = TextIn(carried, "partner");
  if (const std::string failure = TextIn(carried, "failure"); !failure.empty()) {
    return fmt::format("{}: its folder could not be reached: {}\n", name, failure);
  }
  std::string text =
      fmt::format("{}: took {}, put {} into {}\n", name,
                  standalone::Counted(static_cast<std::int64_t>(carried.at("taken").size()), "letter"),
                  standalone::Counted(carried.at("put").get<std::int64_t>(), "letter"), TextIn(carried, "folder"));
  for (const desk::Json& letter : carried.at("taken")) text += TakenText(letter, "  ");
  text += LinesOf(carried.at("triedAgain"), "  ");
  if (const desk::Json& awaited = carried.at("awaited"); !awaited.is_null()) {
    text += AwaitedText(AwaitedIn(awaited), file, "  ");
  }
  if (const auto sent = carried.at("sent").get<std::int64_t>(); sent != 0) {
    text += fmt::format("  sent {}\n", standalone::Counted(sent, "request"));
  }
  return text + LinesOf(carried.at("notSent"), "  not sent: ") + LinesOf(carried.at("hints"), "    ") +
         LinesOf(carried.at("waiting"), "  waiting: ") + LinesOf(carried.at("setAside"), "  set aside: ");
}

}  // namespace app
