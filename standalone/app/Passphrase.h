#pragma once

#include <optional>
#include <string>

namespace CLI {
class App;
}

namespace app {

class Invocation;

// Where a passphrase comes from that is not to be seen: an option names a file of which it is the first line, else the
// environment has it, else the person at the terminal types it.
struct PassphraseOptions {
  std::optional<std::string> file;
};

void AddPassphraseOption(CLI::App& command, PassphraseOptions& options);

enum class Typed {
  kOnce,
  kTwice,  // as a new one is, so that no slip of a finger locks up what it is for
};

// Throws standalone::InvalidInput when there is none.
std::string PassphraseOf(const Invocation& invocation, const PassphraseOptions& options, Typed typed);

}  // namespace app
