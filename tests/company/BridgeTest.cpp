#include <gtest/gtest.h>

#include <optional>
#include <stdexcept>

#include "MultiEntity/MultiEntityDriver.h"
#include "platform/NativePlatform.h"
#include "standalone/company/Session.h"
#include "tests/company/CompanyFixture.h"

namespace standalone {
namespace {

// The library as the module loads it, from beside the program.
class TheBridge : public CompanyFixture {
 protected:
  TheBridge() : library_(NativePlatform().LoadLibraryA("AddinBridge.DLL")) {}
  ~TheBridge() override { NativePlatform().FreeLibrary(library_); }

  template <typename Entry>
  Entry* Find(const char* name) const {
    return reinterpret_cast<Entry*>(NativePlatform().GetProcAddress(library_, name));
  }
  std::uint8_t IsAccountant() const { return Find<decltype(IsSybaseAccountant)>("IsSybaseAccountant")(); }
  std::int32_t SyncNeed() const { return Find<decltype(NeedDataSyncUp)>("NeedDataSyncUp")(); }
  void HandOver(const BridgeAnswers* answers) const { Find<decltype(SetBridgeAnswers)>("SetBridgeAnswers")(answers); }

  void AddUser(const char* name, bool accountant) {
    User user;
    user.name = name;
    user.accountant = accountant;
    StandaloneHost host(path_);
    host.Request(Access::kWrite, [&] { host.Users().Add(user); });
  }

  LibraryHandle library_;
};

TEST_F(TheBridge, LiesBesideTheProgram) {
  EXPECT_NE(library_, nullptr);
  EXPECT_EQ(NativePlatform().GetProcAddress(library_, "SomethingElse"), nullptr);
}

TEST_F(TheBridge, AnswersNothingWhileNobodyAnswersForIt) {
  EXPECT_EQ(IsAccountant(), 0);
  EXPECT_EQ(SyncNeed(), 0);
}

TEST_F(TheBridge, AsksWhoeverAnswersForIt) {
  std::int32_t need = 3;
  const BridgeAnswers answers{&need, [](void*) -> std::uint8_t { return 1; },
                              [](void* host) {
                                return *static_cast<std::int32_t*>(host);
                              }};

  HandOver(&answers);
  EXPECT_EQ(IsAccountant(), 1);
  EXPECT_EQ(SyncNeed(), 3);

  HandOver(nullptr);
  EXPECT_EQ(IsAccountant(), 0);
  EXPECT_EQ(SyncNeed(), 0);
}

TEST_F(TheBridge, LetsNoExceptionOut) {
  const BridgeAnswers answers{nullptr, [](void*) -> std::uint8_t { throw std::runtime_error("no"); },
                              [](void*) -> std::int32_t {
                                throw std::runtime_error("no");
                              }};

  HandOver(&answers);

  EXPECT_EQ(IsAccountant(), 0);
  EXPECT_EQ(SyncNeed(), 0);
}

TEST_F(TheBridge, TellsTheModuleThatTheUserIsAnAccountant) {
  AddUser("Vera", true);
  StandaloneHost host(path_, "Vera");
  const Session session(host);

  const bool mayManage = host.Request(
      Access::kRead, [] { return MultiEntityDriver::HasMEPermission(MEPermissionManageRelations, kFeatureNone); });

  EXPECT_TRUE(session.HasBridge());
  EXPECT_TRUE(mayManage);
}

TEST_F(TheBridge, TellsTheModuleThatTheUserIsNoAccountant) {
  AddUser("Paul", false);
  StandaloneHost host(path_, "Paul");
  const Session session(host);

  EXPECT_FALSE(host.Request(
      Access::kRead, [] { return MultiEntityDriver::HasMEPermission(MEPermissionManageRelations, kFeatureNone); }));
}

TEST_F(TheBridge, TellsTheMarkThatTheUserHasNow) {
  AddUser("Paul", false);
  StandaloneHost host(path_, "Paul");
  const Session session(host);
  StandaloneHost administration(path_);

  administration.Request(Access::kWrite, [&] {
    User user = administration.Users().Require("Paul");
    user.accountant = true;
    administration.Users().Change(user);
  });

  EXPECT_EQ(IsAccountant(), 1);
}

TEST_F(TheBridge, TellsWhatWaitsInTheCompanyFile) {
  StandaloneHost host(path_);
  const Session session(host);
  DBMultiEntityRelation relation{};
  relation.realmId[0] = '1';
  relation.state = MEStatePending;

  const std::int32_t before = SyncNeed();
  host.Request(Access::kWrite, [&] { host.Services().multiEntity.SaveRelation(relation); });

  EXPECT_EQ(before, 0);
  EXPECT_EQ(SyncNeed(), 2);
}

TEST_F(TheBridge, AnswersNothingOnceTheSessionIsOver) {
  AddUser("Vera", true);
  StandaloneHost host(path_, "Vera");
  std::optional<Session> session(std::in_place, host);
  ASSERT_EQ(IsAccountant(), 1);

  session.reset();

  EXPECT_EQ(IsAccountant(), 0);
}

TEST_F(TheBridge, AnswersNothingOfAFileThatCannotBeRead) {
  AddUser("Vera", true);
  StandaloneHost host(path_, "Vera");
  const Session session(host);
  FileOf(host).Execute("DROP TABLE me_transaction; ALTER TABLE user RENAME TO people");

  EXPECT_EQ(SyncNeed(), 0);
  EXPECT_EQ(IsAccountant(), 0);
}

TEST(ASharedLibrary, ThatIsNotThereIsNotLoaded) {
  EXPECT_EQ(NativePlatform().LoadLibraryA("NoSuchBridge.DLL"), nullptr);
}

}  // namespace
}  // namespace standalone
