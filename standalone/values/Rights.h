#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "MultiEntityHost/Enumerations.h"
#include "standalone/values/CheckedText.h"

namespace standalone {

struct FeatureRight {
  ProgramFeature feature = kFeatureNone;
  UserAction action = kActionView;
  friend bool operator==(const FeatureRight&, const FeatureRight&) = default;
};

struct ListRight {
  ListType list = kListAccounts;
  UserAction action = kActionView;
  friend bool operator==(const ListRight&, const ListRight&) = default;
};

// Texts for people: features "checks", "journal", "bills"; actions "create", "view", "delete", "modify"; lists
// "accounts". Rights are written "bills:create" and "accounts:view". The parsers throw InvalidInput.
std::string FeatureRightText(FeatureRight right);
std::string ListRightText(ListRight right);
FeatureRight ParseFeatureRight(std::string_view text);
ListRight ParseListRight(std::string_view text);

// Whether the text is about a list rather than a feature.
bool IsListRight(std::string_view text) noexcept;
// Throws InvalidInput unless the text is a right.
std::string_view RequireRight(std::string_view text);
// "bills:create" and so on.
using Right = CheckedText<RequireRight>;
std::vector<Right> AllRights();

}  // namespace standalone
