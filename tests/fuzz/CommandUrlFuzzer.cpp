#include <algorithm>
#include <array>
#include <optional>

#include "fuzz/BooksFuzzing.h"
#include "standalone/values/Columns.h"

// The command URLs that the stand-alone host is asked to run: three open a screen, every other is refused by name.

namespace {

using fuzzing::Require;

constexpr std::array<std::string_view, 3> kKnown{"krw:LaunchMEPlugin?context=ICT_SCHEDULER",
                                                 "krw:LaunchMEPlugin?context=ICT_TXN_DUE_TO_REALM_RESET",
                                                 "krw:LaunchMEPlugin?context=ICT_TXN_DUE_TO_NORELATIONS"};

std::optional<std::string> Refusal(standalone::StandaloneHost& host, std::string_view url) {
  try {
    host.Request(standalone::Access::kWrite,
                 [&] { host.Services().application.ExecuteCommand(CCommandAndArgs(Util::TString(url))); });
    return std::nullopt;
  } catch (const std::runtime_error& error) {
    return error.what();
  }
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  static fuzzing::Books books;
  const std::string_view url = fuzzing::Text(bytes, size);
  std::optional<std::string> ran;
  std::string logged;
  books.Host().App().SetCommandRunner(
      [&](standalone::PluginView /*view*/, std::string_view what) { ran = std::string(what); });
  books.Host().Log().SetObserver([&](const Util::Ops::Line& line) { logged = line.message; });

  const std::optional<std::string> refusal = Refusal(books.Host(), url);

  const bool isKnown = std::ranges::find(kKnown, url) != kKnown.end();
  const std::string shown(url.substr(0, url.find('\0')));
  Require(ran.has_value() == isKnown && refusal.has_value() != isKnown, "exactly the three known commands run");
  Require(!isKnown || ran == url, "a command runs as it was given");
  Require(logged == (isKnown ? "HOST:: running command " : "HOST:: command refused: ") + shown,
          "the command is in the log as it was given");
  Require(standalone::UnescapeColumn(standalone::EscapeColumn(logged)) == logged, "the log's line can be read back");
  books.Host().Log().SetObserver({});
  return 0;
}
