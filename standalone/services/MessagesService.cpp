#include "standalone/services/MessagesService.h"

#include <algorithm>
#include <array>
#include <stdexcept>
#include <utility>

namespace standalone {

namespace {

struct ListedText {
  std::int32_t list;
  std::int32_t index;
  std::string_view text;
};

constexpr std::array kTexts{
    ListedText{
        kNoRealmStrings, kNoRealmText,
        "The company reports no online company id. Connect the company file to its online company before you work "
        "with intercompany transactions."},
    ListedText{kReminderStrings, kReminderTitle, "Intercompany transactions"},
    ListedText{kReminderStrings, kReminderOfBothText,
               "Intercompany transactions are waiting for your answer, and a relation with a partner company is not "
               "established yet. Do you want to look at them now?"},
    ListedText{kReminderStrings, kReminderOfTransactionsText,
               "Intercompany transactions are waiting for your answer. Do you want to look at them now?"},
    ListedText{kReminderStrings, kReminderOfRelationsText,
               "A relation with a partner company is still pending. It is established as soon as the partner company "
               "has agreed to it; until then nothing has to be done here."},
    ListedText{kRelationsStrings, kRelationsTitle, "Intercompany relations"},
    ListedText{kRelationsStrings, kRealmResetText,
               "This company file now belongs to another online company than the one under which its relations with "
               "partner companies were set up. Intercompany work is stopped until the relations are checked. Do you "
               "want to look at the relations now?"},
    ListedText{kRelationsStrings, kNoRelationsText,
               "No relation with a partner company is established yet. Intercompany transactions need one. Do you "
               "want to set it up now?"},
    ListedText{kRelationsStrings, kSetUpNowButton, "Set up now"},
    ListedText{kRelationsStrings, kNotNowButton, "Not now"},
};

constexpr ResourceInstance kResources{1};
constexpr YNC_Tag kAnswerNo{2};
constexpr const char* kOk = "OK";

// The arguments of a message box, read one after the other.
class ArgumentReader {
 public:
  ArgumentReader(std::int32_t list, std::span<const MessageArgument> arguments) : list_(list), arguments_(arguments) {}

  std::int32_t Number() { return Next<std::int32_t>("a number"); }
  std::string OwnText() { return std::string(Next<Util::TString>("a text").view()); }
  std::string ListedString() { return std::string(StringResource(list_, Number())); }

 private:
  template <typename Value>
  const Value& Next(const char* what) {
    const auto* value = at_ < arguments_.size() ? std::get_if<Value>(&arguments_[at_]) : nullptr;
    ++at_;
    if (value != nullptr) return *value;
    throw std::invalid_argument("Argument " + std::to_string(at_) + " of a message box of list " +
                                std::to_string(list_) + " is not " + what + ".");
  }

  std::int32_t list_;
  std::span<const MessageArgument> arguments_;
  std::size_t at_ = 0;
};

struct MessageBox {
  Question question;
  std::int32_t acceptingButton = 0;
  std::int32_t decliningButton = 0;
};

// A box with OK alone: kMessageTextsFollow, title, text.
MessageBox NoticeFor(ArgumentReader& arguments) {
  if (arguments.Number() != kMessageTextsFollow)
    throw std::invalid_argument("A message box with OK alone brings its own texts.");
  MessageBox box;
  box.question.kind = QuestionKind::kNotice;
  box.question.title = arguments.OwnText();
  box.question.text = arguments.OwnText();
  box.question.accept = kOk;
  box.question.decline.clear();
  return box;
}

// A box with two buttons of its own: the string index of the title, the number of buttons (2), the button that goes on,
// the button that does nothing further, the string index of each button's words, and the string index of the text.
// Buttons count from 0, and the answer is the one that was pressed.
MessageBox QuestionFor(ArgumentReader& arguments) {
  MessageBox box;
  box.question.title = arguments.ListedString();
  const std::int32_t buttons = arguments.Number();
  box.acceptingButton = arguments.Number();
  box.decliningButton = arguments.Number();
  const bool areTwo = buttons == 2 && box.acceptingButton + box.decliningButton == 1 &&
                      (box.acceptingButton == 0 || box.acceptingButton == 1);
  if (!areTwo)
    throw std::invalid_argument("A message box with buttons of its own has two, one to go on and one not to.");
  std::array<std::string, 2> words;
  for (std::string& button : words) button = arguments.ListedString();
  box.question.accept = words[static_cast<std::size_t>(box.acceptingButton)];
  box.question.decline = words[static_cast<std::size_t>(box.decliningButton)];
  box.question.text = arguments.ListedString();
  return box;
}

MessageBox BoxFor(std::int32_t icon, std::int32_t buttons, ArgumentReader arguments) {
  if (icon == kMessageIconNotice && buttons == kMessageButtonsOk) return NoticeFor(arguments);
  if (icon == kMessageIconQuestion && buttons == kMessageButtonsOwn) return QuestionFor(arguments);
  throw std::invalid_argument("There is no message box with icon " + std::to_string(icon) + " and buttons " +
                              std::to_string(buttons) + ".");
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
  Question question;
  question.title = StringResource(list, firstIndex);
  question.text = QuestionText(list, secondIndex);
  return Ask(question) ? kAnswerYes : kAnswerNo;
}

std::int32_t MessagesService::KRMSG_MessageO(std::uintptr_t /*window*/, std::int32_t icon, std::int32_t buttons,
                                             std::int32_t list, std::span<const MessageArgument> arguments) {
  const MessageBox box = BoxFor(icon, buttons, ArgumentReader(list, arguments));
  return Ask(box.question) ? box.acceptingButton : box.decliningButton;
}

void MessagesService::KRWarnMsgWithTitle02(std::uintptr_t /*window*/, const Util::SourceContext& /*source*/,
                                           const char* first, const char* second, bool /*flag*/) {
  Ask({QuestionKind::kWarning, first, second, kOk, {}});
}

// The module says in words that something waits; the company says what.
std::string MessagesService::QuestionText(std::int32_t list, std::int32_t index) const {
  std::string text(StringResource(list, index));
  const bool asksWhetherToLook =
      list == kReminderStrings && (index == kReminderOfBothText || index == kReminderOfTransactionsText);
  const std::string waiting = asksWhetherToLook && waiting_ ? waiting_() : "";
  return waiting.empty() ? text : "Waiting for you: " + waiting + ". Do you want to look at it now?";
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
