#include "standalone/app/LettersBeside.h"

#include <algorithm>
#include <array>
#include <condition_variable>
#include <mutex>
#include <string_view>
#include <utility>

#include "standalone/app/Values.h"
#include "standalone/desk/Identity.h"

namespace app {

namespace {

// As programs are told what would be right.
constexpr std::array<std::string_view, 4> kNothingToDoHere{"wait-for-the-other-program", "pair-first",
                                                           "ask-for-the-right", "ask-who-keeps-the-switches"};

std::string FailureIn(const platform::EndedProcess& ended) {
  if (ended.exitCode == kExitDone) return {};
  for (const desk::Json& message : MessagesIn(ended.errors)) {
    if (!message.is_object() || !message.contains("error")) continue;
    const desk::Json& error = message.at("error");
    const desk::Json remedy = error.value("remedy", desk::Json());
    const bool isLeft = remedy.is_string() && std::ranges::count(kNothingToDoHere, remedy.get<std::string>()) != 0;
    return isLeft ? "" : error.value("message", "");
  }
  return "the program that carries them was broken off with " + std::to_string(ended.exitCode);
}

bool HasTravelled(const desk::Json& partner) {
  return !partner.at("taken").empty() || !partner.at("triedAgain").empty() || partner.at("sent") != 0 ||
         partner.at("put") != 0;
}

// Without those of whom the same is amiss as before.
desk::Json NewsOf(const desk::Json& partners, const desk::Json& before) {
  desk::Json news = desk::Json::array();
  for (const desk::Json& partner : partners) {
    if (HasTravelled(partner) || std::ranges::count(before, partner) == 0) news.push_back(partner);
  }
  return news;
}

GlobalOptions ForPrograms(GlobalOptions options) {
  options.json = true;
  options.trace = false;
  return options;
}

}  // namespace

LettersBeside::LettersBeside(const GlobalOptions& options, std::string file, std::chrono::seconds every,
                             OnCarried onCarried)
    : file_(std::move(file)),
      carrying_{{.file = file_, .arguments = ArgumentsToCarry(ForPrograms(options), /*quiet=*/true, file_)}},
      every_(every),
      onCarried_(std::move(onCarried)),
      thread_([this] { Keep(); }) {}

LettersBeside::~LettersBeside() {
  End();
}

void LettersBeside::Keep() {
  const auto isPaired = [this] {
    return desk::HasIdentity(FilePath(file_));
  };
  CarryAgainAndAgain(
      carrying_, every_, end_, [this](std::size_t, const platform::EndedProcess& ended) { Tell(ended); }, isPaired);
}

void LettersBeside::End() {
  end_.request_stop();
  if (thread_.joinable()) thread_.join();
}

void LettersBeside::CarryAtLast(std::chrono::seconds most) {
  End();
  if (!desk::HasIdentity(FilePath(file_))) return;
  std::stop_source enough;
  std::mutex mutex;
  std::condition_variable_any nobody;
  const std::jthread limit([&](const std::stop_token& isDone) {
    std::unique_lock lock(mutex);
    nobody.wait_for(lock, isDone, most, [] { return false; });
    enough.request_stop();
  });
  CarryAgainAndAgain(carrying_, every_, enough, [&](std::size_t, const platform::EndedProcess& ended) {
    Tell(ended);
    enough.request_stop();
  });
}

void LettersBeside::Tell(const platform::EndedProcess& ended) {
  CarriedBeside carried{.partners = desk::Json::array(), .failure = FailureIn(ended)};
  const desk::Json answer = AnswerIn(ended.output);
  if (answer.is_object()) carried.partners = answer.value("partners", desk::Json::array());
  const CarriedBeside before = std::exchange(last_, carried);
  if (carried.failure == before.failure) carried.failure.clear();
  carried.partners = NewsOf(carried.partners, before.partners);
  if (!carried.partners.empty() || !carried.failure.empty()) onCarried_(std::move(carried));
}

}  // namespace app
