#pragma once

#include <cstddef>
#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "standalone/exchange/Mailbox.h"

namespace exchange {

// What lies in a mailbox without a disk, for all who use it.
struct MemoryPlace {
  std::map<std::string, std::string, std::less<>> envelopes;
  // With the reasons.
  std::map<std::string, std::string, std::less<>> setAside;
  std::size_t puts = 0;
};

class MemoryMailbox final : public Mailbox {
 public:
  explicit MemoryMailbox(MemoryPlace& place) noexcept : place_(place) {}

  std::string Put(std::string_view address, std::string_view bytes) override {
    std::string number = std::to_string(++place_.puts);
    number.insert(0, kDigits - number.size(), '0');
    std::string name = std::string(address) + '-' + number;
    place_.envelopes.emplace(name, bytes);
    return name;
  }

  std::vector<std::string> List(std::string_view address) override {
    std::vector<std::string> names;
    for (const auto& [name, bytes] : place_.envelopes) {
      if (name.starts_with(std::string(address) + '-')) names.push_back(name);
    }
    return names;
  }

  TakenEnvelope Take(std::string_view name, std::size_t most) override {
    const auto found = place_.envelopes.find(name);
    if (found == place_.envelopes.end()) return {.finding = Finding::kGone, .bytes = {}, .reason = "It is gone."};
    if (found->second.size() > most) return {.finding = Finding::kTooLarge, .bytes = {}, .reason = "It is too large."};
    return {.finding = Finding::kWhole, .bytes = found->second, .reason = {}};
  }

  void Acknowledge(std::string_view name) override {
    const auto found = place_.envelopes.find(name);
    if (found != place_.envelopes.end()) place_.envelopes.erase(found);
  }

  void SetAside(std::string_view name, std::string_view reason) override {
    const auto found = place_.envelopes.find(name);
    if (found == place_.envelopes.end()) return;
    place_.envelopes.erase(found);
    place_.setAside.emplace(name, reason);
  }

  bool LiesThere(std::string_view name) override { return place_.envelopes.contains(name); }

 private:
  // Of the largest number.
  static constexpr std::size_t kDigits = 20;

  MemoryPlace& place_;
};

}  // namespace exchange
