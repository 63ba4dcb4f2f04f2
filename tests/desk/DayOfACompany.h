#pragma once

#include <chrono>
#include <optional>
#include <string>
#include <vector>

#include "standalone/desk/KeptOpen.h"

namespace desk {

// What happened while a company was kept open.
struct DayOfACompany {
  std::vector<Delivery> delivered;
  std::optional<std::chrono::seconds> armed;  // the first time
  std::optional<standalone::DayAndTime> due;
  int timesArmed = 0;
  int timesDue = 0;
  int timesNotArmed = 0;
  std::vector<std::string> failures;
};

// Keeps a company open until the reminder is armed the given number of times or not at all.
inline DayOfACompany KeepOpen(Company& company, Person person = {}, int timesArmed = 1) {
  DayOfACompany day;
  KeptOpen* open = nullptr;
  KeptOpen kept(company, std::move(person),
                {.onDelivered = [&](Delivery delivery) { day.delivered.push_back(delivery); },
                 .onReminderArmed =
                     [&](std::chrono::seconds delay, const standalone::DayAndTime& due) {
                       if (day.timesArmed++ == 0) {
                         day.armed = delay;
                         day.due = due;
                       }
                       if (day.timesArmed == timesArmed) open->Quit();
                     },
                 .onReminderDue = [&] { ++day.timesDue; },
                 .onNoReminder =
                     [&] {
                       ++day.timesNotArmed;
                       open->Quit();
                     },
                 .onFailure =
                     [&](std::string_view what) {
                       day.failures.emplace_back(what);
                     }});
  open = &kept;
  kept.Run();
  return day;
}

}  // namespace desk
