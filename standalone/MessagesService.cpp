#include "standalone/MessagesService.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <utility>
#include <vector>

namespace standalone {

namespace {

struct ListedText {
  std::int32_t list;
  std::int32_t index;
  std::string_view text;
};

constexpr std::array kTexts{
    ListedText{2003, 3023,
               "This company has no online company id yet. Connect the company file to its online company before you "
               "work with intercompany transactions."},
    ListedText{14715, 1, "Intercompany transactions"},
    ListedText{14715, 2,
               "Intercompany transactions from your partner companies are waiting to be booked. Do you want "
               "to look at them now?"},
    ListedText{14715, 3,
               "Your partner companies have answered intercompany transactions of yours. Do you want to look "
               "at them now?"},
    ListedText{14715, 4,
               "Intercompany data could not be brought up to date. Check the connection to the online "
               "company; your books are unchanged."},
    ListedText{14717, 1, "Intercompany relations need your attention"},
    ListedText{14717, 2,
               "Intercompany transactions cannot go on: the online company of this file has changed, or no "
               "relation with a partner company is established. Do you want to open the intercompany "
               "relations now?"},
};

constexpr ResourceInstance kResources{1};
constexpr YNC_Tag kAnswerNo{2};
// Of the boxes with buttons: the first one, and the one that does nothing further.
constexpr std::int32_t kFirstButton = 0;
constexpr std::int32_t kLastButton = 1;
// Before a text of its own, and at the end of the arguments.
constexpr std::int32_t kOwnTexts = -7;

// Arguments are either two indices of the list, or kOwnTexts and the title and the text themselves.
Question QuestionFor(std::int32_t list, std::span<const MessageArgument> arguments) {
  Question question;
  question.kind = QuestionKind::kYesNo;
  std::vector<std::string> texts;
  const bool hasOwnTexts = !arguments.empty() && std::holds_alternative<std::int32_t>(arguments[0]) &&
                           std::get<std::int32_t>(arguments[0]) == kOwnTexts;
  for (const MessageArgument& argument : arguments) {
    if (const auto* text = std::get_if<Util::TString>(&argument)) {
      texts.emplace_back(text->view());
    } else if (!hasOwnTexts && texts.size() < 2) {
      texts.emplace_back(StringResource(list, std::get<std::int32_t>(argument)));
    }
  }
  texts.resize(2);
  question.title = std::move(texts[0]);
  question.text = std::move(texts[1]);
  if (hasOwnTexts) question.kind = QuestionKind::kNotice;
  return question;
}

}  // namespace

MessagesService::MessagesService(Database& database, Answerer answerer)
    : database_(database), answerer_(std::move(answerer)) {}

ResourceInstance MessagesService::GetKRWinInstance() {
  return kResources;
}

void MessagesService::GetIndStringC(char* buffer, std::size_t size, ResourceInstance /*instance*/, std::int32_t list,
                                    std::int32_t index) {
  if (size == 0) return;
  const std::string_view text = StringResource(list, index).substr(0, size - 1);
  std::copy(text.begin(), text.end(), buffer);
  buffer[text.size()] = '\0';
}

YNC_Tag MessagesService::YesNoInfoMsgO(const Util::SourceContext& /*source*/, ResourceInstance /*instance*/,
                                       std::int32_t list, std::int32_t firstIndex, std::int32_t secondIndex,
                                       bool /*flag1*/, bool /*flag2*/) {
  const bool isYes = Ask({QuestionKind::kYesNo, std::string(StringResource(list, firstIndex)),
                          std::string(StringResource(list, secondIndex))});
  return isYes ? kAnswerYes : kAnswerNo;
}

std::int32_t MessagesService::KRMSG_MessageO(std::uintptr_t /*window*/, std::int32_t /*icon*/, std::int32_t /*buttons*/,
                                             std::int32_t list, std::span<const MessageArgument> arguments) {
  return Ask(QuestionFor(list, arguments)) ? kFirstButton : kLastButton;
}

void MessagesService::KRWarnMsgWithTitle02(std::uintptr_t /*window*/, const Util::SourceContext& /*source*/,
                                           const char* first, const char* second, bool /*flag*/) {
  Ask({QuestionKind::kWarning, first, second});
}

bool MessagesService::Ask(const Question& question) {
  if (!answerer_) return false;
  bool answer = false;
  OutsideUnit(database_, [&] { answer = answerer_(question); });
  return answer;
}

std::string_view StringResource(std::int32_t list, std::int32_t index) noexcept {
  const auto* const found = std::find_if(
      kTexts.begin(), kTexts.end(), [=](const ListedText& text) { return text.list == list && text.index == index; });
  return found != kTexts.end() ? found->text : std::string_view();
}

}  // namespace standalone
