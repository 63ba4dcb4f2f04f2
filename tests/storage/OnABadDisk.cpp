// Linked to the program: whatever it brings to the disk, the disk answers that it may not be there.
#include "tests/support/FailingDisk.h"

namespace {

struct BadDisk : FailingDisk {
  BadDisk() {
    onSync = [] {
      return SQLITE_IOERR_FSYNC;
    };
  }
};

const BadDisk theDisk;

}  // namespace
