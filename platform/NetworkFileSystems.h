#pragma once

#include <cstdint>
#include <istream>
#include <string>
#include <string_view>

namespace platform {

// Which file systems lie on other machines, by what Linux tells of them. Folders that a virtual machine or a container
// shares with its host (9p, virtiofs, overlays and the like) are none of these.

// By the number of statfs().
bool IsNetworkFileSystem(std::uint32_t type) noexcept;

// By the name and the source of a mount, which tell those apart that programs keep (FUSE), such as "fuse.sshfs" and
// "anna@server:/books".
bool IsNetworkMount(std::string_view name, std::string_view source) noexcept;

// Whether the device, such as "0:53", is one of these among the mounts, which are listed as in /proc/self/mountinfo.
bool IsNetworkMount(std::istream& mounts, std::string_view device);

}  // namespace platform
