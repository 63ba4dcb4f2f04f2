#include <gtest/gtest.h>

#include <sstream>

#include "platform/NetworkFileSystems.h"
#include "platform/NetworkShare.h"
#include "tests/support/TemporaryFolder.h"

namespace platform {
namespace {

TEST(ANetworkFileSystem, IsOneOfOtherMachines) {
  for (const std::uint32_t type : {0x6969U, 0x517BU, 0xFE534D42U, 0xFF534D42U, 0x5346414FU, 0x6B414653U, 0x00C36400U}) {
    EXPECT_TRUE(IsNetworkFileSystem(type)) << std::hex << type;
  }
}

// ext4, XFS, Btrfs, tmpfs, overlay, 9p, FUSE, FAT, NTFS, a virtual machine's shared folders
TEST(ANetworkFileSystem, IsNoDiskMemoryOrFolderOfTheHost) {
  for (const std::uint32_t type : {0xEF53U, 0x58465342U, 0x9123683EU, 0x01021994U, 0x794C7630U, 0x01021997U,
                                   0x65735546U, 0x4D44U, 0x5346544EU, 0x786F4256U, 0U}) {
    EXPECT_FALSE(IsNetworkFileSystem(type)) << std::hex << type;
  }
}

TEST(ANetworkMount, IsKeptByAProgramThatReachesOtherMachines) {
  EXPECT_TRUE(IsNetworkMount("fuse.sshfs", "anna@server:/books"));
  EXPECT_TRUE(IsNetworkMount("fuse.rclone", "cloud:"));
  EXPECT_TRUE(IsNetworkMount("fuse", "https://cloud.example/books"));
}

TEST(ANetworkMount, IsNoOtherThatAProgramKeeps) {
  EXPECT_FALSE(IsNetworkMount("fuseblk", "/dev/sdb1"));
  EXPECT_FALSE(IsNetworkMount("fuse.encfs", "encfs"));
  EXPECT_FALSE(IsNetworkMount("fuse", "sshfs"));
  EXPECT_FALSE(IsNetworkMount("virtiofs", "books"));
  EXPECT_FALSE(IsNetworkMount("9p", "https://host"));
}

TEST(ANetworkMount, IsFoundByItsDevice) {
  constexpr const char* kMounts =
      "22 1 254:1 / / rw,relatime shared:1 - ext4 /dev/vda1 rw\n"
      "30 22 0:53 / /mnt/my\\040server rw,nosuid shared:9 master:2 - fuse.sshfs anna@server:/books rw,user_id=0\n"
      "31 22 0:54 / /mnt/key rw - fuse.encfs encfs rw\n"
      "nonsense\n";
  const auto isOne = [](const char* device) {
    std::istringstream mounts(kMounts);
    return IsNetworkMount(mounts, device);
  };

  EXPECT_TRUE(isOne("0:53"));
  EXPECT_FALSE(isOne("0:54"));
  EXPECT_FALSE(isOne("254:1"));
  EXPECT_FALSE(isOne("0:5"));
}

TEST(ANetworkShare, IsNotWhatTheTestsAreRunOn) {
  const standalone::TemporaryFolder folder;
  standalone::WriteFile(folder / "file", "");

  EXPECT_FALSE(IsOnNetworkShare(folder / "file"));
  EXPECT_FALSE(IsOnNetworkShare(folder / "."));
  EXPECT_FALSE(IsOnNetworkShare(folder / "missing"));
}

}  // namespace
}  // namespace platform
