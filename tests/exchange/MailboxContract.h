#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>
#include <string_view>

#include "standalone/exchange/Mailbox.h"

namespace exchange {

// A mailbox that several may use, for the tests that each one has to pass.
class MailboxUnderTest {
 public:
  virtual ~MailboxUnderTest() = default;

  // Of one more program that uses it.
  virtual std::unique_ptr<Mailbox> Open() = 0;
  // Why it was set aside; empty when it was not.
  virtual std::string ReasonOf(std::string_view name) = 0;

 protected:
  MailboxUnderTest() = default;
  MailboxUnderTest(const MailboxUnderTest&) = default;
  MailboxUnderTest& operator=(const MailboxUnderTest&) = default;
};

struct MailboxKind {
  const char* name = nullptr;
  std::function<std::unique_ptr<MailboxUnderTest>()> make;
};

class AMailbox : public ::testing::TestWithParam<MailboxKind> {
 protected:
  static constexpr std::size_t kMost = 1'000;

  const std::unique_ptr<MailboxUnderTest> place_ = GetParam().make();
  const std::unique_ptr<Mailbox> mailbox_ = place_->Open();
  const std::string birch_ = "0123456789abcdef";
  const std::string cedar_ = "fedcba9876543210";
};

inline std::string NameOfKind(const ::testing::TestParamInfo<MailboxKind>& info) {
  return info.param.name;
}

}  // namespace exchange
