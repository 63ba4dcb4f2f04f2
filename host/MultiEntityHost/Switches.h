#pragma once

#include "MultiEntityHost/TString.h"

// The remote feature switches. A host implements it; the module calls it on the user-interface thread.
class KillSwitchHelper {
 public:
  // Whether that switch is on. Both texts are ASCII and outlive the call. Throws when the switches cannot be read.
  virtual bool IsFeatureEnabled(const char* section, const char* flag) = 0;

 protected:
  ~KillSwitchHelper() = default;
};

namespace FileSystem {

// The remote configuration values. A host implements it; the module calls it on the user-interface thread.
class DCE {
 public:
  // Puts the value into `value`, or leaves it as it is when there is none. The answer, whether there is one, is not
  // looked at. Throws when the values cannot be read.
  virtual bool GetValue2(Util::TString section, Util::TString key, Util::TString& value) = 0;

 protected:
  ~DCE() = default;
};

}  // namespace FileSystem
