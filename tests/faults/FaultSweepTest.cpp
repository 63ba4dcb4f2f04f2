#include <gmock/gmock.h>

#include <iostream>
#include <string>
#include <vector>

#include "faults/Sweep.h"

namespace faults {

void PrintTo(const Scenario& scenario, std::ostream* out) {
  *out << scenario.name;
}

namespace {

class EveryHostCall : public testing::TestWithParam<Scenario> {};

TEST_P(EveryHostCall, MayFailAndThrowAndTheOperationKeepsItsPromises) {
  const Texts complaints = Sweep(GetParam());

  EXPECT_THAT(complaints, testing::IsEmpty());
  std::cout << FaultsPlayed() << " faults played\n";
}

INSTANTIATE_TEST_SUITE_P(While, EveryHostCall, testing::ValuesIn(Scenarios()),
                         [](const auto& scenario) { return scenario.param.name; });

}  // namespace

}  // namespace faults

// A sweep starts this program again for what needs a process of its own.
int main(int argc, char** argv) {
  const std::vector<std::string> arguments(argv, argv + argc);
  if (argc == 7 && arguments[1] == "--play") {
    testing::InitGoogleMock();
    const int code = faults::PlayInThisProcess({arguments.begin() + 2, arguments.end()});
    return testing::UnitTest::GetInstance()->ad_hoc_test_result().Failed() ? 1 : code;
  }
  testing::InitGoogleMock(&argc, argv);
  faults::SetProgram(argv[0]);
  return RUN_ALL_TESTS();
}
