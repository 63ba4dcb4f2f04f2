#include "standalone/desk/inside/PersonAtWork.h"

#include <utility>

#include "MultiEntity/MultiEntityDriver.h"
#include "standalone/books/PendingWork.h"
#include "standalone/desk/inside/LineReader.h"
#include "standalone/desk/inside/RelationRows.h"
#include "standalone/desk/inside/WaitingPartners.h"

namespace desk {

namespace {

std::optional<Refusal> RefusalOf(UseCase what, MEStatusCode answer) {
  if (answer == MEStatusSuccess) return std::nullopt;
  return RefusalFor(what, answer);
}

Part<Relation> RelationsFor(Work& work) {
  Part<Relation> relations;
  relations.refusal = RefusalOf(UseCase::kReadRelations, ReadRelations(work, relations.items));
  return relations;
}

PendingWork PendingWorkFor(Work& work) {
  std::vector<METxnInfo> listed;
  const MEStatusCode answer = MultiEntityDriver::GetListOfTxnTargetEntries(listed, NullDate(), NullDate());
  std::erase_if(listed, [&work](const METxnInfo& line) { return !standalone::WaitsForAnswer(StateOf(work, line)); });
  PendingWork pending{
      .lines = {.items = LineReader(work).Read(listed), .refusal = RefusalOf(UseCase::kListTransactions, answer)},
      .relations = RelationsFor(work),
      .requests = RequestsToAnswer(work),
      .partners = PartnersToLookAfter(work)};
  std::erase_if(pending.relations.items,
                [](const Relation& relation) { return relation.state != standalone::RelationState::kPending; });
  return pending;
}

PluginScreen ScreenFor(Work& work, standalone::PluginView view) {
  switch (view) {
    case standalone::PluginView::kPendingTransactions:
      return PendingWorkFor(work);
    case standalone::PluginView::kRelationsAfterRealmReset:
      return RelationsAfterRealmReset{.rememberedRealm = work.RememberedRealm(), .relations = RelationsFor(work)};
    case standalone::PluginView::kRelationSetUp:
      break;
  }
  return RelationSetUp{.relations = RelationsFor(work)};
}

Question QuestionOf(const standalone::Question& asked) {
  const auto kind = [&asked] {
    switch (asked.kind) {
      case standalone::QuestionKind::kNotice:
        return Question::Kind::kNotice;
      case standalone::QuestionKind::kWarning:
        return Question::Kind::kWarning;
      case standalone::QuestionKind::kYesNo:
        break;
    }
    return Question::Kind::kYesNo;
  };
  return {.kind = kind(), .title = asked.title, .text = asked.text, .accept = asked.accept, .decline = asked.decline};
}

}  // namespace

PersonAtWork::PersonAtWork(Work work, Person person, FailureHandler onFailure)
    : work_(std::move(work)), person_(std::move(person)), onFailure_(std::move(onFailure)) {
  work_.Host().MessageBoxes().SetAnswerer([this](const standalone::Question& asked) { return Ask(asked); });
  work_.Host().App().SetCommandRunner([this](standalone::PluginView view, std::string_view url) { Show(view, url); });
}

PersonAtWork::~PersonAtWork() {
  work_.Host().MessageBoxes().SetAnswerer({});
  work_.Host().App().SetCommandRunner({});
}

bool PersonAtWork::Ask(const standalone::Question& asked) {
  bool accepted = false;
  Guard([&] {
    if (person_.answer) accepted = person_.answer(QuestionOf(asked));
  });
  return accepted;
}

void PersonAtWork::Show(standalone::PluginView view, std::string_view url) {
  Guard([&] {
    if (person_.show) person_.show(url, work_.Read([&] { return ScreenFor(work_, view); }));
  });
}

void PersonAtWork::Guard(const std::function<void()>& whatMayFail) const {
  try {
    whatMayFail();
  } catch (...) {
    if (!onFailure_) throw;
    onFailure_(std::current_exception());
  }
}

}  // namespace desk
