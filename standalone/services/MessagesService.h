#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "MultiEntityHost/Messages.h"
#include "standalone/storage/Database.h"

namespace standalone {

enum class QuestionKind { kYesNo, kNotice, kWarning };

// A message box. Notices and warnings have the accepting button only.
struct Question {
  QuestionKind kind = QuestionKind::kYesNo;
  std::string title;
  std::string text;
  std::string accept = "Yes";  // the words on the button that goes on
  std::string decline = "No";  // the words on the button that does nothing further
};

// Shows a message box to the user, on the user-interface thread; true is the accepting button. Of notices and warnings
// the answer is not looked at.
using Answerer = std::function<bool(const Question&)>;

// Message boxes for a program without windows: what is asked goes to an answerer, outside of the unit of work. Without
// one every question is answered by no, which does nothing further.
class MessagesService final : public Messages {
 public:
  MessagesService(Database& database, Answerer answerer);

  void SetAnswerer(Answerer answerer) { answerer_ = std::move(answerer); }
  // Says, within a unit of work, what the reminder's question is about; empty for nothing that could be counted.
  void SetWaiting(std::function<std::string()> waiting) { waiting_ = std::move(waiting); }

  ResourceInstance GetKRWinInstance() override;
  void GetIndStringC(char* buffer, std::size_t size, ResourceInstance instance, std::int32_t list,
                     std::int32_t index) override;
  YNC_Tag YesNoInfoMsgO(const Util::SourceContext& source, ResourceInstance instance, std::int32_t list,
                        std::int32_t firstIndex, std::int32_t secondIndex, bool flag1, bool flag2) override;
  std::int32_t KRMSG_MessageO(std::uintptr_t window, std::int32_t icon, std::int32_t buttons, std::int32_t list,
                              std::span<const MessageArgument> arguments) override;
  void KRWarnMsgWithTitle02(std::uintptr_t window, const Util::SourceContext& source, const char* first,
                            const char* second, bool flag) override;

 private:
  bool Ask(const Question& question);
  std::string QuestionText(std::int32_t list, std::int32_t index) const;

  Database& database_;
  Answerer answerer_;
  std::function<std::string()> waiting_;
};

// The text of a string list; empty when there is none.
std::string_view StringResource(std::int32_t list, std::int32_t index) noexcept;

}  // namespace standalone
