#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "standalone/desk/results/IntercompanyLine.h"
#include "standalone/desk/results/PairedPartner.h"
#include "standalone/desk/results/Refusal.h"
#include "standalone/desk/results/Relation.h"
#include "standalone/desk/results/WaitingRequest.h"

namespace desk {

// A message box. Notices and warnings have the accepting button only.
struct Question {
  enum class Kind { kYesNo, kNotice, kWarning };

  Kind kind = Kind::kYesNo;
  std::string title;
  std::string text;
  std::string accept;   // the words on the button that goes on
  std::string decline;  // the words on the button that does nothing further
};

// What could be read, and why it is not all when it is not.
template <typename Item>
struct Part {
  std::vector<Item> items;
  std::optional<Refusal> refusal;
};

// The screens of the intercompany plug-in. What waits for this company's answer; of requests what the user may see, of
// partners, for who manages relations, those that are to be confirmed or of whom something is outstanding:
struct PendingWork {
  Part<IntercompanyLine> lines;
  Part<Relation> relations;
  std::vector<WaitingRequest> requests{std::vector<WaitingRequest>()};
  std::vector<PairedPartner> partners{std::vector<PairedPartner>()};
};
// The relations, with the question what becomes of them now that the company's realm is another one.
struct RelationsAfterRealmReset {
  std::optional<std::string> rememberedRealm;
  Part<Relation> relations;
};
// How to set up the first relation.
struct RelationSetUp {
  Part<Relation> relations;
};
using PluginScreen = std::variant<PendingWork, RelationsAfterRealmReset, RelationSetUp>;

// Whoever is asked and shown things while a use case runs, on its thread and outside of its units of work. Nobody:
// every question is answered by no, which does nothing further, and no screen is shown.
struct Person {
  // Of notices and warnings the answer is not looked at.
  std::function<bool(const Question& question)> answer;
  // `url` is the command that opens the screen.
  std::function<void(std::string_view url, const PluginScreen& screen)> show;
};

}  // namespace desk
