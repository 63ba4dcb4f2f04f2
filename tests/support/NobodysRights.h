#pragma once

#include <gtest/gtest.h>
#include <unistd.h>

// Gives the test the rights of a user who owns nothing, as long as this lives, also when root runs it, to whom all is
// allowed.
class NobodysRights {
 public:
  NobodysRights() { Become(kNobody); }
  NobodysRights(const NobodysRights&) = delete;
  NobodysRights& operator=(const NobodysRights&) = delete;
  ~NobodysRights() { Become(owner_); }

 private:
  // Nobody else may become another one.
  void Become(uid_t user) const {
    const bool isRoots = owner_ == 0;
    EXPECT_TRUE(!isRoots || seteuid(user) == 0);
  }

  static constexpr uid_t kNobody = 65534;
  const uid_t owner_ = geteuid();
};
