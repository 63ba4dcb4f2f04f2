#pragma once

#include "standalone/values/Errors.h"

namespace exchange {

// Bytes that are not what they have to be: cut off, not canonical, not signed, sealed for another company. The message
// says what is wrong, as a whole sentence.
class Malformed : public standalone::InvalidInput {
 public:
  using standalone::InvalidInput::InvalidInput;
};

// A fact that is one, but says what this version does not take. It is held all the same; the message is the reason.
class NotUnderstood : public standalone::InvalidInput {
 public:
  using standalone::InvalidInput::InvalidInput;
};

}  // namespace exchange
