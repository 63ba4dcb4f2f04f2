#include "support/ScriptedRuntime.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <iterator>

void ScriptedOps::Write(const Line& line) noexcept {
  script_.NoteLine(line.message);
  lines.push_back({static_cast<std::int32_t>(line.level), static_cast<std::int32_t>(line.eventType), line.sourceFile,
                   line.sourceLine, line.shortName, line.signature, std::string(line.message)});
}

std::vector<LogLine> ScriptedOps::LinesOf(const std::string& shortName) const {
  std::vector<LogLine> found;
  std::ranges::copy_if(lines, std::back_inserter(found),
                       [&](const LogLine& line) { return line.shortName == shortName; });
  return found;
}

ScriptedRuntime::~ScriptedRuntime() {
  EXPECT_TRUE(texts_.empty()) << "not given back: " << texts_.size() << " texts";
  std::ranges::for_each(texts_, std::free);
}

char* ScriptedRuntime::FormatStringV(const char* pattern, std::va_list arguments) {
  if (script_.Call("FormatStringV", pattern)) return nullptr;
  std::va_list again;
  va_copy(again, arguments);
  const auto size = static_cast<std::size_t>(std::vsnprintf(nullptr, 0, pattern, arguments)) + 1;
  auto* text = static_cast<char*>(std::malloc(size));
  std::vsnprintf(text, size, pattern, again);
  va_end(again);
  texts_.insert(text);
  return text;
}

void ScriptedRuntime::Release(void* block) noexcept {
  EXPECT_EQ(texts_.erase(block), 1U) << "a text was given back that the host has not handed out";
  std::free(block);
}
