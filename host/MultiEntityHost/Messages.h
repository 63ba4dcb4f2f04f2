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

// The host's message boxes and string resources. A host implements it; the module calls it on the user-interface
// thread, where the boxes are modal.
class Messages {
 public:
  virtual ResourceInstance GetKRWinInstance() = 0;
  // Copies a string of a string list, NUL-terminated, into `buffer` of `size` characters.
  virtual void GetIndStringC(char* buffer, std::size_t size, ResourceInstance instance, std::int32_t list,
                             std::int32_t index) = 0;

  // Asks yes or no with two strings of a list, of which the first heads the second. Both flags are true.
  virtual YNC_Tag YesNoInfoMsgO(const Util::SourceContext& source, ResourceInstance instance, std::int32_t list,
                                std::int32_t firstIndex, std::int32_t secondIndex, bool flag1, bool flag2) = 0;
  // Shows a message; icon, buttons and the arguments after the list have the host's meaning, and so has the answer.
  virtual std::int32_t KRMSG_MessageO(std::uintptr_t window, std::int32_t icon, std::int32_t buttons, std::int32_t list,
                                      std::span<const MessageArgument> arguments) = 0;
  // Shows a warning of two texts, of which the first heads the second. `window` is 0, `flag` true.
  virtual void KRWarnMsgWithTitle02(std::uintptr_t window, const Util::SourceContext& source, const char* first,
                                    const char* second, bool flag) = 0;

 protected:
  ~Messages() = default;
};
