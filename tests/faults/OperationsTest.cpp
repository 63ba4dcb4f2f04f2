// Holds that no operation of the library is left out of the scenarios.
#include <gmock/gmock.h>

#include <algorithm>
#include <fstream>
#include <iterator>
#include <memory>
#include <set>
#include <string>
#include <utility>

#include "MultiEntity/MESchedulerUtil.h"
#include "MultiEntity/MultiEntityScheduler.h"
#include "faults/Scenario.h"
#include "platform/SystemTime.h"

namespace faults {

namespace {

using Names = std::multiset<std::string>;

#if defined(_WIN32)
constexpr const char* kExportedHere = "exported_names_windows.txt";
#else
constexpr const char* kExportedHere = "exported_names_posix.txt";
#endif

std::string WithoutArguments(const std::string& declaration) {
  return declaration.substr(0, declaration.find_first_of("([\r"));
}

// An overloaded name as often as it is overloaded.
Names ExportedOperations() {
  Names names;
  for (const char* file : {"exported_names.txt", kExportedHere}) {
    std::ifstream in(std::string(MULTIENTITY_EXPORTED_NAMES) + "/" + file);
    for (std::string line; std::getline(in, line);) {
      if (!line.starts_with("typeinfo ") && !line.starts_with("vtable ")) names.insert(WithoutArguments(line));
    }
  }
  return names;
}

Names OperationsOfTheScenarios() {
  std::set<std::string> each;
  std::ranges::transform(Scenarios(), std::inserter(each, each.end()), &Scenario::operation);
  Names names;
  for (const std::string& operation : each) names.insert(WithoutArguments(operation));
  return names;
}

// They ask the host nothing that can fail.
const Names& OperationsWithoutHostCalls() {
  static const Names kNames{
      "DetachHost",
      "MESchedulerUtil::DateToString",
      "MESchedulerUtil::StringToDate",
      "MESchedulerUtil::SystemTimeToDate",
      "MultiEntityDriver::GetGJEDeletionDueToFDPFailure",
      "MultiEntityDriver::SetGJEDeletionDueToFDPFailure",
      "MultiEntityScheduler::MultiEntityScheduler",
      "MultiEntityScheduler::MultiEntityScheduler",
      "MultiEntityScheduler::MultiEntityScheduler",
      "MultiEntityScheduler::operator delete",
      "MultiEntityScheduler::operator new",
      "MultiEntityScheduler::operator=",
      "MultiEntityScheduler::operator=",
      "MultiEntityScheduler::~MultiEntityScheduler",
  };
  return kNames;
}

TEST(EveryExportedOperation, HasAScenarioOrAsksTheHostNothingThatCanFail) {
  Names covered = OperationsOfTheScenarios();
  covered.insert(OperationsWithoutHostCalls().begin(), OperationsWithoutHostCalls().end());

  EXPECT_THAT(covered, testing::ContainerEq(ExportedOperations()));
}

TEST(OperationsWithoutHostCalls, AskTheHostNothingThatCanFail) {
  ScriptedHost host;
  Texts asked;
  host.OnEveryCall([&] { asked.push_back(host.Calls().back()); });
  AttachHost(host.Services());

  MultiEntityDriver::SetGJEDeletionDueToFDPFailure(MultiEntityDriver::GetGJEDeletionDueToFDPFailure());
  MESchedulerUtil::DateToString(MESchedulerUtil::StringToDate("20240303"));
  MESchedulerUtil::SystemTimeToDate(SYSTEMTIME{});
  new MultiEntityScheduler;
  MultiEntityScheduler message;
  const auto copy = std::make_unique<MultiEntityScheduler>(message);
  MultiEntityScheduler taken(std::move(message));
  message = *copy;
  taken = MultiEntityScheduler();
  DetachHost();

  EXPECT_THAT(asked, testing::IsEmpty());
}

}  // namespace

}  // namespace faults
