#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>

namespace standalone {

// A name and another one that a reader may take for it.
struct AlikePair {
  std::string name;
  std::string other;
};

// Full names of a list that a reader takes for one but for capitals: they differ by more than the case of ASCII
// letters, and so are two to the company file, but not by more than the case of other letters or how the same letters
// are written. Of those in ASCII, of which the file has one of a kind, the list itself is asked.
class AlikeNames {
 public:
  using FindInList = std::function<std::optional<std::string>(std::string_view fullName)>;

  explicit AlikeNames(FindInList findInList) : findInList_(std::move(findInList)) {}

  void Add(std::string_view fullName);
  // Another name that is like this one, which has not been added; the first of several.
  std::optional<std::string> Find(std::string_view fullName) const;

 private:
  FindInList findInList_;
  std::unordered_map<std::string, std::string> byForm_;  // those that are not ASCII
};

}  // namespace standalone
