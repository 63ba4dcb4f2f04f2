#pragma once

#include <chrono>
#include <functional>
#include <memory>
#include <string_view>

#include "standalone/desk/results/Person.h"
#include "standalone/values/Dates.h"

namespace desk {

class Company;

// The module's messages.
enum class Delivery { kScheduler, kReminder };

// Told on the thread of the loop; empty ones are not.
struct DayEvents {
  std::function<void(Delivery delivery)> onDelivered;  // right before the message is processed
  // What it throws is lost; the timer is armed all the same.
  std::function<void(std::chrono::seconds delay, const standalone::DayAndTime& due)> onReminderArmed;
  std::function<void()> onReminderDue;
  std::function<void()> onNoReminder;                    // none was armed when the company was opened
  std::function<void(std::string_view what)> onFailure;  // of a message or a timer; the loop goes on
};

// A company that stays open, like the window of a desktop application: the daily reminder is armed if the company needs
// one and the bridge library is there to be asked, and comes when it is due. Others may work on the company meanwhile,
// also while a question is open.
class KeptOpen {
 public:
  // The company outlives this; nothing else is asked of it until this ends.
  KeptOpen(Company& company, Person person, DayEvents events);
  KeptOpen(const KeptOpen&) = delete;
  KeptOpen& operator=(const KeptOpen&) = delete;
  ~KeptOpen();

  // Returns after Quit(), as soon as what is just running has returned; whoever quits also ends a question that is
  // open.
  void Run();
  // From any thread, also before Run(), and for good.
  void Quit() noexcept;
  // From any thread: `task` runs on the thread of Run(), outside of units of work; never when Run() ends before that.
  void Post(std::function<void()> task);
  // After Run(): disarms the reminder. The company takes no more work.
  void Close() noexcept;

 private:
  class Day;

  std::unique_ptr<Day> day_;
};

}  // namespace desk
