#pragma once

#include <exception>
#include <functional>
#include <string_view>

#include "standalone/desk/inside/Work.h"
#include "standalone/desk/results/Person.h"

namespace desk {

// Has a person asked and shown what comes up, as long as it lives. One at a time.
class PersonAtWork {
 public:
  using FailureHandler = std::function<void(std::exception_ptr failure)>;

  // What fails while the person is asked or shown something goes to `onFailure` and counts as no, or as shown; without
  // one it goes to whoever asked. The module takes it for a reason to let work go on.
  PersonAtWork(Work work, Person person, FailureHandler onFailure = {});
  PersonAtWork(const PersonAtWork&) = delete;
  PersonAtWork& operator=(const PersonAtWork&) = delete;
  // Nobody is there any more.
  ~PersonAtWork();

 private:
  bool Ask(const standalone::Question& asked);
  void Show(standalone::PluginView view, std::string_view url);
  void Guard(const std::function<void()>& whatMayFail) const;

  Work work_;
  Person person_;
  FailureHandler onFailure_;
};

}  // namespace desk
