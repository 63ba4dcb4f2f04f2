#pragma once

namespace standalone {

class StandaloneHost;

// Attaches a host to the module for as long as it lives, on the thread that makes it. Throws std::runtime_error when
// the module refuses the host.
class Session {
 public:
  explicit Session(StandaloneHost& host);
  Session(const Session&) = delete;
  Session& operator=(const Session&) = delete;
  ~Session();

 private:
  StandaloneHost& host_;
};

}  // namespace standalone
