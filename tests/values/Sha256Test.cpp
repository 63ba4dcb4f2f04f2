#include <gtest/gtest.h>

#include "standalone/values/Sha256.h"

namespace standalone {
namespace {

// From FIPS 180-2.
constexpr const char* kOfNothing = "e3b0c44298fc1c149afbf4c8996fb92427ae41e4649b934ca495991b7852b855";
constexpr const char* kOfAbc = "ba7816bf8f01cfea414140de5dae2223b00361a396177a9cb410ff61f20015ad";
constexpr const char* kOfAMillionA = "cdc76e5c9914fb9281a1c7e284d73e67f1809a48a497200e046d39ccc7112cd0";

TEST(TheSha256, OfKnownTextsIsThePublishedOne) {
  EXPECT_EQ(Sha256Of(""), kOfNothing);
  EXPECT_EQ(Sha256Of("abc"), kOfAbc);
}

TEST(TheSha256, IsTheSameHoweverTheTextIsCut) {
  Sha256 digest;
  for (int piece = 0; piece < 1000; ++piece) digest.Add(std::string(1000, 'a'));

  EXPECT_EQ(digest.Finish(), kOfAMillionA);
}

}  // namespace
}  // namespace standalone
