#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

#include "partners/Companies.h"

namespace partners {

// A request that some company has entered, whether it was sent or not.
struct Entered {
  std::size_t from = 0;
  std::size_t to = 0;
  std::string request;
  std::int64_t amount = 0;  // minor units
};

// Companies that are all paired with each other, made and paired where they are played with.
class Group : public Companies {
 public:
  Group(const std::filesystem::path& folder, std::size_t companies);

  // All of them as they were paired.
  void Begin();

  std::vector<Entered>& Requests() noexcept { return requests_; }

 private:
  void Make(std::size_t who);
  void Pair(std::size_t inviter, std::size_t accepter);

  std::vector<Entered> requests_;
};

}  // namespace partners
