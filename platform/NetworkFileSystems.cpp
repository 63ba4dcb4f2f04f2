#include "platform/NetworkFileSystems.h"

#include <algorithm>
#include <array>
#include <sstream>

namespace platform {

bool IsNetworkFileSystem(std::uint32_t type) noexcept {
  switch (type) {
    case 0x6969:      // NFS
    case 0x517B:      // SMB
    case 0xFE534D42:  // SMB 2 and 3
    case 0xFF534D42:  // CIFS
    case 0x564C:      // NetWare
    case 0x5346414F:  // AFS
    case 0x6B414653:  // AFS of the kernel
    case 0x73757245:  // Coda
    case 0x00C36400:  // Ceph
    case 0x0BD00BD0:  // Lustre
    case 0x47504653:  // GPFS
    case 0x19830326:  // BeeGFS
    case 0x20030528:  // OrangeFS
    case 0x7461636F:  // OCFS2
    case 0x01161970:  // GFS2
      return true;
    default:
      return false;
  }
}

bool IsNetworkMount(std::string_view name, std::string_view source) noexcept {
  constexpr std::string_view kKeptByPrograms = "fuse";
  constexpr std::array<std::string_view, 20> kPrograms = {
      "blobfuse", "blobfuse2",     "ceph",   "ceph-fuse",  "cifs",     "curlftpfs", "davfs",
      "gcsfuse",  "glusterfs",     "goofys", "gvfsd-fuse", "juicefs",  "kio-fuse",  "mfs",
      "mount-s3", "mountpoint-s3", "rclone", "s3fs",       "smbnetfs", "sshfs"};
  if (!name.starts_with(kKeptByPrograms)) return false;
  if (source.find("://") != std::string_view::npos) return true;
  const std::size_t dot = name.find('.');
  return dot != std::string_view::npos && std::ranges::find(kPrograms, name.substr(dot + 1)) != kPrograms.end();
}

bool IsNetworkMount(std::istream& mounts, std::string_view device) {
  for (std::string line; std::getline(mounts, line);) {
    std::istringstream words(line);
    std::string number;
    std::string parent;
    std::string itsDevice;
    if (!(words >> number >> parent >> itsDevice) || itsDevice != device) continue;
    const std::size_t behindOptions = line.find(" - ");
    if (behindOptions == std::string::npos) continue;
    std::istringstream fileSystem(line.substr(behindOptions + 3));
    std::string name;
    std::string source;
    if (fileSystem >> name >> source && IsNetworkMount(name, source)) return true;
  }
  return false;
}

}  // namespace platform
