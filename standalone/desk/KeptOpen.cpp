#include "standalone/desk/KeptOpen.h"

#include <utility>

#include "MultiEntity/MultiEntityScheduler.h"
#include "standalone/desk/Company.h"
#include "standalone/desk/inside/LocalTimes.h"
#include "standalone/desk/inside/PersonAtWork.h"
#include "standalone/desk/inside/Work.h"

namespace desk {

class KeptOpen::Day {
 public:
  Day(Company& company, Person person, DayEvents events)
      : work_(company.Opened(), UseCase::kKeepOpen), events_(std::move(events)), present_(work_, std::move(person)) {
    standalone::StandaloneHost& host = work_.Host();
    host.SetTimerObserver({.onArmed = [this](std::chrono::milliseconds period) { OnArmed(period); },
                           .onDue =
                               [this] {
                                 OnDue();
                               }});
    host.App().SetMessageObserver([this](const AppMsg& message) { OnDelivery(message); });
    host.Loop().SetFailureHandler([this](std::string_view what) { OnFailure(what); });
  }
  Day(const Day&) = delete;
  Day& operator=(const Day&) = delete;
  ~Day() {
    standalone::StandaloneHost& host = work_.Host();
    host.SetTimerObserver({});
    host.App().SetMessageObserver({});
    host.Loop().SetFailureHandler({});
  }

  void Run() {
    // What the timer would end in asks the bridge.
    if (work_.Attached().HasBridge()) {
      work_.Attached().QueueReminder();
    } else {
      work_.Host().Loop().Post([this] { TellIfNotArmed(); });
    }
    work_.Host().Loop().Run();
  }
  void Quit() noexcept { work_.Host().Loop().Quit(); }
  void Post(std::function<void()> task) { work_.Host().Loop().Post(std::move(task)); }
  void Close() noexcept { work_.Host().App().Close(); }

 private:
  void OnArmed(std::chrono::milliseconds period) {
    isArmed_ = true;
    const auto delay = std::chrono::floor<std::chrono::seconds>(period);
    if (events_.onReminderArmed) events_.onReminderArmed(delay, LocalTimeAfter(work_.Host().Clock(), delay));
  }

  void OnDue() {
    isArmed_ = false;
    if (events_.onReminderDue) events_.onReminderDue();
  }

  void OnDelivery(const AppMsg& message) {
    const bool isScheduler = dynamic_cast<const MultiEntityScheduler*>(&message) != nullptr;
    if (events_.onDelivered) events_.onDelivered(isScheduler ? Delivery::kScheduler : Delivery::kReminder);
    if (isScheduler) work_.Host().Loop().Post([this] { TellIfNotArmed(); });
  }

  void TellIfNotArmed() {
    if (!isArmed_ && events_.onNoReminder) events_.onNoReminder();
  }

  void OnFailure(std::string_view what) {
    if (events_.onFailure) events_.onFailure(what);
  }

  Work work_;
  DayEvents events_;
  PersonAtWork present_;
  bool isArmed_ = false;
};

KeptOpen::KeptOpen(Company& company, Person person, DayEvents events)
    : day_(std::make_unique<Day>(company, std::move(person), std::move(events))) {}

KeptOpen::~KeptOpen() = default;

void KeptOpen::Run() {
  day_->Run();
}

void KeptOpen::Quit() noexcept {
  day_->Quit();
}

void KeptOpen::Post(std::function<void()> task) {
  day_->Post(std::move(task));
}

void KeptOpen::Close() noexcept {
  day_->Close();
}

}  // namespace desk
