#include "exchange/MailboxContract.h"
#include "exchange/MemoryMailbox.h"

namespace exchange {
namespace {

class MemoryUnderTest final : public MailboxUnderTest {
 public:
  std::unique_ptr<Mailbox> Open() override { return std::make_unique<MemoryMailbox>(place_); }
  std::string ReasonOf(std::string_view name) override {
    const auto found = place_.setAside.find(name);
    return found == place_.setAside.end() ? "" : found->second;
  }

 private:
  MemoryPlace place_;
};

INSTANTIATE_TEST_SUITE_P(InMemory, AMailbox,
                         ::testing::Values(MailboxKind{"Memory",
                                                       [] {
                                                         return std::make_unique<MemoryUnderTest>();
                                                       }}),
                         NameOfKind);

}  // namespace
}  // namespace exchange
