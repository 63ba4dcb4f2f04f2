#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>

namespace exchange {

// How much trying a passphrase costs: passes over so much memory.
struct Effort {
  std::uint64_t passes = 0;
  std::uint64_t memory = 0;
};

// About a second and 256 MiB.
Effort UsualEffort() noexcept;

inline constexpr std::size_t kShortestPassphrase = 12;
// Of a text that is imported: more than a million facts that left.
inline constexpr std::size_t kMostExportedText = 128U << 20U;

// An identity as a text block that only the passphrase opens. Throws IdentityError, or InvalidInput for a passphrase of
// fewer bytes than the shortest.
std::string ExportIdentity(const std::filesystem::path& identity, std::string_view passphrase,
                           const Effort& effort = UsualEffort());

// Makes the identity that a text block holds. Throws IdentityError when one is there already, and Malformed, which says
// what is wrong, when the text is none of these, was changed, or has another passphrase. Nothing is left of it then.
void ImportIdentity(const std::filesystem::path& identity, std::string_view text, std::string_view passphrase);

}  // namespace exchange
