#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "standalone/desk/Arriving.h"
#include "standalone/desk/results/Awaited.h"
#include "standalone/desk/results/Refusal.h"

// What travels between this company and its partners: letters of signed facts, sealed for who they are to. All that
// carry are refused, as MEStatusFeatureDisabled, while the feature is switched off; letters stay where they lie.
namespace desk {

class Company;

// A letter that was read, for people.
struct TakenLetter {
  std::string partner;                   // its name here; empty for a letter that was not taken
  std::size_t facts = 0;                 // that were new
  std::vector<std::string> done;         // such as "Birch has accepted the invitation"
  std::size_t moreDone = 0;              // of a run: things done besides, which it does not tell of
  std::vector<std::string> outstanding;  // what could not be applied, and why
};

// The letters for a partner as one block of text, for a mail or a stick; empty for a partner who is not known yet or is
// blocked. Needs the right to manage relations, like the ones below.
std::string ExportLetters(Company& company, const std::string& partner);
// Takes the letters of a block of text, or of a mail with it; each fact is one unit of work. One that is not for this
// company has no partner, and why is outstanding; standalone::InvalidInput when no letter in it is.
std::vector<TakenLetter> ImportLetters(Company& company, const std::string& text);

// Why nobody decides or sends for now; none when nothing is in the way, or the identity is not beside the books.
std::optional<Awaited> TellAwaited(Company& company);
// Goes on with books of before without having been compared with all partners, which may hold what they lack; for
// administrators. Refused where no comparison is awaited.
void InsistOnBooks(Company& company);
// Why facts of this company have come back that its books never made.
enum class WhyCameBack {
  kRestored,   // a backup was restored here
  kCopyEnded,  // a copy of the company was at work, and is not any more
};
// A person confirms it, so that things are decided and sent again; for administrators. Refused before all partners were
// compared with, and where nothing came back. Returns how many facts had.
std::int64_t ConfirmCameBack(Company& company, WhyCameBack why);

// What a run has done with one partner.
struct CarriedWith {
  std::string partner;
  std::filesystem::path folder;
  std::vector<TakenLetter> taken;
  std::vector<std::string> triedAgain{std::vector<std::string>()};  // what was outstanding, and was done now
  std::optional<Awaited> awaited = std::nullopt;                    // why nothing is decided or sent for now
  std::size_t sent = 0;                                             // entered lines that are requests now
  std::vector<std::string> notSent{std::vector<std::string>()};     // those that could not be, each with why
  std::vector<Remedy> remedies{std::vector<Remedy>()};              // what would be right for those, each once
  std::size_t put = 0;                                              // letters
  std::vector<std::string> setAside;                                // files, each with why
  // Letters under a key that nobody has confirmed, each once.
  std::vector<std::string> waiting{std::vector<std::string>()};
  std::string failure;  // why the folder could not be reached; empty if it could
};

// What a run tells as it goes on.
struct RunEvents {
  std::function<void(const LetterPlaces&)> onBegun = nullptr;  // before anything is taken
  std::function<void(const CarriedWith&)> onPartner = nullptr;
};
// Takes all that lies in the partners' folders for this company and puts what is to be told, once. One program at a
// time does so for a company: refused while another one does.
std::vector<CarriedWith> RunExchange(Company& company, const RunEvents& events = {});

}  // namespace desk
