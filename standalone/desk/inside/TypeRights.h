#pragma once

#include <initializer_list>

#include "standalone/desk/inside/Work.h"

// Rights that depend on the type of a transaction; within a unit of work.
namespace desk {

// kFeatureNone for a type that no right guards.
ProgramFeature FeatureOf(std::int16_t txnType) noexcept;

// Who may do it with no type at all is told so before a transaction is looked up.
void RequireRightsToSomeType(Work& work, std::initializer_list<UserAction> actions);
void RequireRightsToType(Work& work, std::int16_t txnType, std::initializer_list<UserAction> actions);

}  // namespace desk
