#pragma once

#include <initializer_list>
#include <optional>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>

#include "MultiEntity/Records.h"
#include "standalone/desk/inside/OpenCompany.h"
#include "standalone/desk/results/Refusal.h"

namespace desk {

// How a use case works on a company.
class Work {
 public:
  Work(OpenCompany& company, UseCase what) noexcept : company_(company), what_(what) {}

  standalone::StandaloneHost& Host() noexcept { return company_.Host(); }
  standalone::Session& Attached() noexcept { return company_.Attached(); }

  // One unit of work that only reads, or one that may write; returns what `operation` returns.
  template <typename Operation>
  auto Read(Operation&& operation) {
    return Host().Request(standalone::Access::kRead, std::forward<Operation>(operation));
  }
  template <typename Operation>
  auto Write(Operation&& operation) {
    return Host().Request(standalone::Access::kWrite, std::forward<Operation>(operation));
  }

  // The same for what ends with an answer of the module; throws Refused, after the unit has ended, which is taken back
  // if it might have written, unless the module did what it was asked.
  template <typename Operation>
  void AskToRead(Operation&& operation) {
    static_assert(std::is_same_v<std::invoke_result_t<Operation>, MEStatusCode>);
    Accept(Read(std::forward<Operation>(operation)));
  }
  template <typename Operation>
  void AskToWrite(Operation&& operation) {
    static_assert(std::is_same_v<std::invoke_result_t<Operation>, MEStatusCode>);
    Accept(Write(std::forward<Operation>(operation)));
  }

  // Throws Refused unless the user is an administrator now; `action` completes "... may only be done by one".
  void RequireAdministrator(std::string_view action);
  // Asked before a unit is begun that would wait for others, and once more within it.
  template <typename Operation>
  auto WriteAsAdministrator(std::string_view action, Operation&& operation) {
    RequireAdministrator(action);
    return Write([&] {
      RequireAdministrator(action);
      return std::forward<Operation>(operation)();
    });
  }
  // The same in a unit of work that is taken back whatever comes of it.
  template <typename Operation>
  auto RehearseAsAdministrator(std::string_view action, Operation&& operation) {
    RequireAdministrator(action);
    return Host().Rehearse([&] {
      RequireAdministrator(action);
      return std::forward<Operation>(operation)();
    });
  }
  // As RequireAdministrator(), for accountants, too; `what` begins "... may only be seen by them", or `done` instead of
  // seen.
  void RequireAdministratorOrAccountant(std::string_view what, std::string_view done = "seen");
  bool IsAdministratorOrAccountant() { return IsAdministrator() || Host().CurrentUserIsAccountant(); }
  // Within a unit of work: whether the user is an administrator or has the right now, or one of them.
  bool HasRight(standalone::FeatureRight right);
  bool HasOneOf(std::initializer_list<standalone::FeatureRight> rights);
  bool HasRight(standalone::ListRight right);
  // Throw Refused unless it is so.
  void RequireRight(standalone::FeatureRight right) { RequireOneOf({right}); }
  void RequireRight(standalone::ListRight right);
  void RequireOneOf(std::initializer_list<standalone::FeatureRight> rights);
  void RequireAllOf(std::initializer_list<standalone::FeatureRight> rights);
  // Throws Refused while what partners do with each other is switched off, as the module's own operations do. Within a
  // unit of work.
  void RequireFeature();
  // Whether the module will let the user change relations; and why not.
  bool MayManageRelations();
  std::string WhyNotManageRelations();

  // The day that it is by the company's clock.
  DateType32 Today();

  // The company's own realm id, as its file remembers it.
  std::optional<std::string> RememberedRealm();

  // Before the module is asked.
  [[noreturn]] void Refuse(std::string why, Remedy remedy = Remedy::kNone) const;
  // After the module has refused, when the books tell better why.
  [[noreturn]] void Refuse(MEStatusCode answer, std::string why, Remedy remedy) const;

  // What may have been meant by what is not there, such as " Did you mean "Birch"?"; said with the refusal to which it
  // leads.
  void Suggest(std::string suggestion) { suggestion_ = std::move(suggestion); }

  void Accept(MEStatusCode answer);
  // Why the module did not do it, to be kept and read later: it names the user who has no right to it.
  std::string WhyNotDone(UseCase what, MEStatusCode answer);

  // After the unit of work that made them.
  void Tell(const Lookalikes& names) { company_.Tell(names); }

  // Within a unit of work that writes: has the audit trail tell what was done, if the module did it; returns the
  // answer.
  template <typename DeedOfIt>
  MEStatusCode Recorded(MEStatusCode answer, DeedOfIt&& deed) {
    if (answer == MEStatusSuccess) Host().Record(std::forward<DeedOfIt>(deed)());
    return answer;
  }

  // The same for a record that somebody has changed; false when all of it is as it was, of which the trail has nothing
  // to tell.
  bool RecordChanges(const standalone::AuditDeed& deed) {
    if (deed.changes.empty()) return false;
    Host().Record(deed);
    return true;
  }

 private:
  std::string WithSuggestion(std::string why) const;
  bool IsAdministrator();
  [[noreturn]] void RefuseWithoutRight(const std::string& right);

  OpenCompany& company_;
  UseCase what_;
  std::string suggestion_;
};

}  // namespace desk
