#pragma once

#include <exception>

#include "standalone/desk/Person.h"
#include "standalone/desk/work/Work.h"

namespace desk {

// Has a person asked and shown what comes up, as long as it lives. One at a time.
class PersonAtWork {
 public:
  PersonAtWork(Work work, Person person);
  PersonAtWork(const PersonAtWork&) = delete;
  PersonAtWork& operator=(const PersonAtWork&) = delete;
  // Nobody is there any more.
  ~PersonAtWork();

 private:
  Work work_;
  Person person_;
};

// The same person, of whom it is remembered when asking or showing fails, which then counts as no, and to whom a screen
// that cannot be shown is as good as shown. The module takes what fails for a reason to let work go on.
Person Remembering(const Person& person, std::exception_ptr& failure);

}  // namespace desk
