#pragma once

#include <gtest/gtest.h>

#include "MultiEntity/AttachHost.h"
#include "MultiEntity/MultiEntityDriver.h"
#include "support/ScriptedHost.h"

// Keeps a host attached to the library as long as it lives.
class Attachment {
 public:
  explicit Attachment(const HostServices& services) { EXPECT_EQ(AttachHost(services), MEAttachDone); }
  Attachment(const Attachment&) = delete;
  Attachment& operator=(const Attachment&) = delete;
  ~Attachment() { DetachHost(); }
};

// A test with a scripted host attached to the library. The record starts empty, whatever attaching asked of the host.
class AttachedTest : public testing::Test {
 protected:
  AttachedTest() {
    host.journal.removalUnderWay = MultiEntityDriver::GetGJEDeletionDueToFDPFailure;
    host.Forget();
  }

  ScriptedHost host;

 private:
  Attachment attachment_{host.Services()};
};
