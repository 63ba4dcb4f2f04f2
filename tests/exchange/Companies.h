#pragma once

#include <string>
#include <vector>

#include "standalone/exchange/Envelope.h"
#include "standalone/exchange/Kinds.h"

// Two companies with fixed keys that are paired, and what they may tell each other.
namespace exchange::testing {

inline constexpr const char* kPairing = "00112233445566778899aabbccddeeff";
inline constexpr const char* kOtherPairing = "ffeeddccbbaa99887766554433221100";
inline constexpr const char* kWord = "0f1e2d3c4b5a69788796a5b4c3d2e1f0";
inline constexpr const char* kOwnId = "102132435465768798a9bacbdcedfe0f";
inline constexpr const char* kOtherWord = "a0a1a2a3a4a5a6a7a8a9aaabacadaeaf";

// Of the seed first, first + 1, ... first + 31.
inline KeyPair KeysFrom(unsigned char first) {
  std::string seed;
  for (std::size_t i = 0; i < kSeedBytes; ++i) seed += static_cast<char>(first + i);
  return KeyPair(seed);
}

inline KeyPair Alder() {
  return KeysFrom(0);
}
inline KeyPair Birch() {
  return KeysFrom(32);
}
inline KeyPair Cedar() {
  return KeysFrom(64);
}

inline Proposal Rent() {
  return {.request = "REQ-1",
          .type = RequestType::kBill,
          .date = DateType32(2026, 11, 5),
          .amount = 125'000,
          .currency = "USD",
          .document = "R-17",
          .name = "Birch & Töchter",
          .memo = "Rent of November",
          .hint = "Rent",
          .earlier = EarlierLink{.how = EarlierRequest::kCorrected, .request = "REQ-0"}};
}

inline Fact ProposedRent() {
  return MakeFact(Rent(), kPairing, Alder());
}

inline Answer Accepted(const Fact& proposal) {
  return {
      .outcome = Outcome::kAccepted, .entry = 12, .day = DateType32(2026, 12, 1), .reason = {}, .proposal = proposal};
}

inline Letter LetterToBirch() {
  const Fact proposal = ProposedRent();
  const Summary one = SummaryOf({proposal.Id()});
  return {.pairing = kPairing,
          .sender = Alder().Public(),
          .receiver = Birch().Public(),
          .word = kWord,
          .echo = kOtherWord,
          .summary = one,
          .months = {{"2026-11", one}},
          .hashes = {{"", {}}, {"2026-11", {proposal.Id()}}},
          .facts = {proposal.Wire()}};
}

}  // namespace exchange::testing
