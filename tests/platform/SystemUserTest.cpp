#include <gtest/gtest.h>

#include "platform/SystemUser.h"
#include "tests/support/EnvironmentVariable.h"

namespace platform {
namespace {

TEST(TheSystemUser, HasAName) {
  EXPECT_FALSE(SystemUserName().empty());
}

TEST(TheSystemUser, IsNotWhoTheEnvironmentSays) {
#ifdef _WIN32
  GTEST_SKIP() << "the environment of a Windows program is another one";
#else
  const std::string name = SystemUserName();
  const EnvironmentVariable user("USER", "somebody else");
  const EnvironmentVariable login("LOGNAME", "somebody else");

  EXPECT_EQ(SystemUserName(), name);
  EXPECT_NE(name, "somebody else");
#endif
}

}  // namespace
}  // namespace platform
