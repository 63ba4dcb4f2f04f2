#pragma once

#include "MultiEntityHost/Application.h"

// The reminder itself, queued when the timer has elapsed and processed once by the host's loop.
class MESchedulerUIPrompt final : public SequencedAppMsg {
 public:
  void ProcessMsg() override;
};
