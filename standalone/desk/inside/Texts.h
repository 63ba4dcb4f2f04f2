#pragma once

#include <string>

#include "MultiEntityHost/TString.h"

namespace desk {

inline std::string TextOf(const Util::TString& text) {
  return std::string(text.view());
}

}  // namespace desk
