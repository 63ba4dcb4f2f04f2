#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "platform/Clock.h"
#include "standalone/exchange/IdentityFile.h"
#include "support/TemporaryFolder.h"

namespace exchange {

// A place for an identity, and what its lines look like.
class IdentityFixture : public ::testing::Test {
 protected:
  static KeyPair KeysOf(char byte) { return KeyPair(std::string(kSeedBytes, byte)); }
  static Hash HashFrom(int byte) { return Hash::FromBytes(std::string(kOctets, static_cast<char>(byte))); }
  static std::string SeedOf(const IdentityFile& identity) { return identity.Keys().HexSeed(); }

  // 32 bytes of one value.
  static std::string Digits(const std::string& two) {
    std::string digits;
    for (int byte = 0; byte < 32; ++byte) digits += two;
    return digits;
  }

  void Write(const std::string& text) const { standalone::WriteFile(file_, text); }
  std::string Content() const { return standalone::ReadFile(file_); }

  static std::vector<Hash> LeftOf(const IdentityFile& identity) {
    std::vector<Hash> left;
    identity.ForEachLeft([&](const Hash& hash) { left.push_back(hash); });
    return left;
  }

  void AddLeft(IdentityFile& identity, const std::vector<Hash>& hashes) const {
    const std::optional<CarrierLock> lock = CarrierLock::TryTake(file_, platform::SystemClock());
    ASSERT_TRUE(lock.has_value());
    identity.AddLeft(*lock, hashes);
  }

  std::vector<std::string> FilesInTheFolder() const {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(folder_ / ".")) {
      names.push_back(entry.path().filename().string());
    }
    return names;
  }

  const standalone::TemporaryFolder folder_;
  const std::filesystem::path file_ = folder_ / "alder.company.identity";
  const std::string begin_ = "multientity-identity 1\nseed " + Digits("0a") + "\n";
};

}  // namespace exchange
