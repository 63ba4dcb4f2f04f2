#include <gtest/gtest.h>

#include <cstdlib>

#include "platform/SystemUser.h"

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
  setenv("USER", "somebody else", /*overwrite=*/1);
  setenv("LOGNAME", "somebody else", /*overwrite=*/1);

  EXPECT_EQ(SystemUserName(), name);
  EXPECT_NE(name, "somebody else");
#endif
}

}  // namespace
}  // namespace platform
