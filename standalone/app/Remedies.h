#pragma once

#include <string_view>

#include "standalone/desk/results/Refusal.h"

namespace app {

// What to type to put right what was refused; empty when there is nothing to say.
std::string_view HintFor(desk::Remedy remedy) noexcept;

// What to type when the company file is damaged.
std::string_view HintWhenDamaged() noexcept;

// What to type when nobody knows whether the work was saved.
std::string_view HintWhenNotKnown() noexcept;

}  // namespace app
