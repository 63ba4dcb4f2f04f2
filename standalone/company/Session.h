#pragma once

#include <optional>

#include "standalone/company/BridgeHost.h"

namespace standalone {

class StandaloneHost;

// Attaches a host to the module, with the bridge library that answers for it, for as long as it lives, on the thread
// that makes it. Throws std::runtime_error when the module refuses the host.
class Session {
 public:
  explicit Session(StandaloneHost& host);
  Session(const Session&) = delete;
  Session& operator=(const Session&) = delete;
  // Closes the company first, so that the module disarms what it has armed.
  ~Session();

  // Queues the message with which the module arms the daily reminder, if this company needs one; the host's loop
  // delivers it.
  void QueueReminder();

  // False when the bridge library is not beside the program: nobody is an accountant then, and no reminder comes.
  bool HasBridge() const noexcept { return bridge_->IsLoaded(); }

 private:
  StandaloneHost& host_;
  std::optional<BridgeHost> bridge_;
};

}  // namespace standalone
