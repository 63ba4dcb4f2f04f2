#include "standalone/app/PartnerTexts.h"

#include <fmt/format.h>

#include <vector>

#include "standalone/app/Listings.h"
#include "standalone/app/RequestTexts.h"
#include "standalone/desk/json/Json.h"
#include "standalone/values/Text.h"

namespace app {

namespace {

using desk::PairedPartner;
using standalone::PairingState;
using standalone::Shown;

std::string StateText(const PairedPartner& partner) {
  return std::string(standalone::NameOf(partner.state));
}

std::string_view WhyOf(const PairedPartner& partner) {
  if (!partner.offeredKeys.empty()) return "somebody writes as it under another key, and a person has to see who";
  switch (partner.state) {
    case PairingState::kInvited:
      return "invited, and nobody has accepted yet";
    case PairingState::kAnswered:
      return "somebody has accepted the invitation, and a person has to see that it is the partner";
    case PairingState::kAccepted:
      return "this company has accepted, and the partner has to confirm";
    case PairingState::kEstablished:
      return partner.hasLetterToSend ? "established; the partner has not shown yet that it has all letters"
                                     : "established; both have the same";
    case PairingState::kBlocked:
      return "blocked: nothing is sent and nothing is taken";
    case PairingState::kRemoved:
      break;
  }
  return "the pairing is ended";
}

std::string_view WaitsFor(const PairedPartner& partner) {
  if (!partner.offeredKeys.empty()) return "us";
  switch (partner.state) {
    case PairingState::kInvited:
    case PairingState::kAccepted:
      return "partner";
    case PairingState::kAnswered:
      return "us";
    case PairingState::kEstablished:
      return partner.hasLetterToSend ? "partner" : "nobody";
    case PairingState::kBlocked:
    case PairingState::kRemoved:
      break;
  }
  return "nobody";
}

std::string HowToTake(const PairedPartner& partner, const std::string& file) {
  return partner.folder.empty() ? fmt::format("multientity exchange import {} LETTER", AsTyped(file))
                                : fmt::format("multientity exchange run {}", AsTyped(file));
}

std::string OfferedText(const desk::OfferedKey& offered) {
  return fmt::format("{}{}", offered.fingerprint, offered.isAnnounced ? ", announced under the key of now" : "");
}

std::string ToDoWith(const PairedPartner& partner, const std::string& file) {
  if (!partner.offeredKeys.empty()) {
    return fmt::format(
        "call the partner under a number that you know, have it read out its fingerprint, and confirm that, whichever "
        "of the two it is: multientity partner confirm {} {} --fingerprint DIGITS",
        AsTyped(file), AsTyped(partner.name));
  }
  switch (partner.state) {
    case PairingState::kInvited:
      return fmt::format("take the answer, once it is there, with: {}", HowToTake(partner, file));
    case PairingState::kAnswered:
      return fmt::format("call the partner, have it read out its fingerprint, then: multientity partner confirm {} {}",
                         AsTyped(file), AsTyped(partner.name));
    case PairingState::kAccepted:
      return fmt::format(
          "tell the partner, by phone, this company's fingerprint (multientity partner fingerprint {}); "
          "{}; take its answer with: {}",
          AsTyped(file), HowToSend(partner, file), HowToTake(partner, file));
    case PairingState::kEstablished:
      return partner.hasLetterToSend ? HowToSend(partner, file) : std::string();
    case PairingState::kBlocked:
      return fmt::format("to go on with it: multientity partner unblock {} {}", AsTyped(file), AsTyped(partner.name));
    case PairingState::kRemoved:
      break;
  }
  return {};
}

std::string OrNone(std::string text) {
  return text.empty() ? "none" : Shown(text);
}

}  // namespace

// Partners choose their names themselves, and commands are copied to a shell.
std::string AsTyped(std::string_view name) {
  constexpr std::string_view kPlain = "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789._/:+-\\";
  constexpr std::string_view kSteersAShell = "\"$`%!^&|<>;'";
  const std::string shown = Shown(name);
  if (!shown.empty() && shown.find_first_not_of(kPlain) == std::string::npos) return shown;
  if (shown.find_first_of(kSteersAShell) == std::string::npos && !shown.ends_with('\\')) return '"' + shown + '"';
  std::string quoted = "'";
  for (const char character : shown) quoted += character == '\'' ? std::string("'\\''") : std::string(1, character);
  return quoted + '\'';
}

NextStep NextStepWith(const PairedPartner& partner, const std::string& file) {
  return {.waitsFor = WaitsFor(partner), .why = WhyOf(partner), .toDo = ToDoWith(partner, file)};
}

std::string HowToSend(const PairedPartner& partner, const std::string& file) {
  if (!partner.folder.empty()) {
    return fmt::format("have the letters carried by {} with: multientity exchange run {}",
                       Shown(standalone::PathText(partner.folder)), AsTyped(file));
  }
  return fmt::format("mail the partner what this prints: multientity exchange export {} {}", AsTyped(file),
                     AsTyped(partner.name));
}

Table PartnersTable(const std::vector<PairedPartner>& partners) {
  using enum Importance;
  Table table({{.title = "Partner"},
               {.title = "Realm", .importance = kMinor, .fit = Fit::kWhole},
               {.title = "State", .fit = Fit::kWhole},
               {.title = "Due from", .importance = kDetail},
               {.title = "Due to", .importance = kDetail},
               {.title = "Folder", .importance = kMinor},
               {.title = "Fingerprint", .importance = kMajor, .fit = Fit::kWhole}});
  for (const PairedPartner& partner : partners) {
    table.Add({partner.name, partner.realm, StateText(partner), AccountText(partner.dueFrom),
               AccountText(partner.dueTo), standalone::PathText(partner.folder), partner.fingerprint});
  }
  return table;
}

std::string PartnerText(const PairedPartner& partner, const std::string& file) {
  const NextStep next = NextStepWith(partner, file);
  std::string text = fmt::format(
      "Partner:     {}\nRealm:       {}\nState:       {} ({})\nFingerprint: {}\nDue from:    {}\nDue to:      {}\n"
      "Folder:      {}\n",
      Shown(partner.name), OrNone(partner.realm), StateText(partner), next.why, OrNone(partner.fingerprint),
      OrNone(AccountText(partner.dueFrom)), OrNone(AccountText(partner.dueTo)),
      OrNone(standalone::PathText(partner.folder)));
  if (partner.bookedUpTo) text += fmt::format("By rule:     up to {}\n", AmountWithCurrency(*partner.bookedUpTo));
  for (const std::string& outstanding : partner.outstanding) {
    text += fmt::format("Outstanding: {}\n", Shown(outstanding));
  }
  for (const std::string& notUnderstood : partner.notUnderstood) {
    text += fmt::format("Not understood before a later version reads it: {}\n", Shown(notUnderstood));
  }
  for (const desk::OfferedKey& offered : partner.offeredKeys) {
    text += fmt::format("Other key:   {}\n", OfferedText(offered));
  }
  if (!next.toDo.empty()) text += fmt::format("Next:        {}\n", next.toDo);
  return text;
}

}  // namespace app
