#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <variant>

#include "MultiEntityHost/TString.h"

namespace Util {

// Where in the source a message box comes from; both texts outlive the call.
struct SourceContext {
  const char* sourceFile;
  const char* operation;
};

}  // namespace Util

// The instance whose resources hold the host's string lists; the number is the host's choice.
enum class ResourceInstance : std::uint64_t {};

// The user's answer to a yes/no question.
enum YNC_Tag : std::int32_t {
  kAnswerYes = 1,
};

// One of the trailing arguments of a message box.
using MessageArgument = std::variant<std::int32_t, Util::TString>;

// The string lists that the module asks for, and the strings in them.
//
// The company has no realm id.
inline constexpr std::int32_t kNoRealmStrings = 2003;
inline constexpr std::int32_t kNoRealmText = 3023;
// The reminder.
inline constexpr std::int32_t kReminderStrings = 14715;
inline constexpr std::int32_t kReminderTitle = 1;
inline constexpr std::int32_t kReminderOfBothText = 2;
inline constexpr std::int32_t kReminderOfTransactionsText = 3;
inline constexpr std::int32_t kReminderOfRelationsText = 4;
// The relations: the company has another realm id than before, or no relation is established.
inline constexpr std::int32_t kRelationsStrings = 14717;
inline constexpr std::int32_t kRelationsTitle = 1;
inline constexpr std::int32_t kRealmResetText = 2;
inline constexpr std::int32_t kNoRelationsText = 3;
inline constexpr std::int32_t kSetUpNowButton = 4;
inline constexpr std::int32_t kNotNowButton = 5;

// What message boxes are made of. One with OK alone has kMessageTextsFollow, its title and its text for arguments. One
// with two buttons of its own has the string of the title, the number of buttons, the button that goes on, the button
// that does nothing further, the string of each button, and the string of the text; buttons count from 0, and the
// answer is the one that was pressed. kMessageEndOfArguments ends both.
inline constexpr std::int32_t kMessageIconNotice = 3;
inline constexpr std::int32_t kMessageIconQuestion = 4;
inline constexpr std::int32_t kMessageButtonsOwn = 0;
inline constexpr std::int32_t kMessageButtonsOk = 3;
inline constexpr std::int32_t kMessageTextsFollow = -7;
inline constexpr std::int32_t kMessageEndOfArguments = -1;

// The host's message boxes and string resources. A host implements it; the module calls it on the user-interface
// thread, where the boxes are modal.
class Messages {
 public:
  // The instance with the string lists above; it is handed back with each question.
  virtual ResourceInstance GetKRWinInstance() = 0;
  // Copies a string of a string list, NUL-terminated, into `buffer` of `size` characters.
  virtual void GetIndStringC(char* buffer, std::size_t size, ResourceInstance instance, std::int32_t list,
                             std::int32_t index) = 0;

  // Asks yes or no with two strings of a list, of which the first heads the second. Both flags are true.
  virtual YNC_Tag YesNoInfoMsgO(const Util::SourceContext& source, ResourceInstance instance, std::int32_t list,
                                std::int32_t firstIndex, std::int32_t secondIndex, bool flag1, bool flag2) = 0;
  // Shows a message with the icon, the buttons and the arguments that are explained above, and answers the button that
  // was pressed. `window` is 0.
  virtual std::int32_t KRMSG_MessageO(std::uintptr_t window, std::int32_t icon, std::int32_t buttons, std::int32_t list,
                                      std::span<const MessageArgument> arguments) = 0;
  // Shows a warning of two texts, of which the first heads the second. `window` is 0, `flag` true.
  virtual void KRWarnMsgWithTitle02(std::uintptr_t window, const Util::SourceContext& source, const char* first,
                                    const char* second, bool flag) = 0;

 protected:
  ~Messages() = default;
};
