#include "standalone/values/OnlyRead.h"

namespace standalone {

std::string_view OnlyReadText(OnlyRead why) noexcept {
  switch (why) {
    case OnlyRead::kReadOnlyMedium:
      return "lies on a read-only medium";
    case OnlyRead::kNetworkShare:
      return "lies on a network share";
    case OnlyRead::kOtherNames:
      return "has another name on its disk (a hard link)";
    case OnlyRead::kWriteProtected:
      return "is write-protected";
    case OnlyRead::kWriteProtectedFolder:
      return "lies in a write-protected folder";
  }
  return "is only read";
}

}  // namespace standalone
