#pragma once

#include <cstddef>
#include <set>
#include <string>
#include <vector>

#include "MultiEntityHost/Ops.h"
#include "MultiEntityHost/Runtime.h"
#include "support/CallScript.h"
#include "support/LogLine.h"

class ScriptedOps final : public Util::Ops {
 public:
  explicit ScriptedOps(CallScript& script) : script_(script) {}

  bool Wants(Level level) const noexcept override { return !unwantedLevels.contains(level); }
  void Write(const Line& line) noexcept override;

  // The lines whose short name is that one.
  std::vector<LogLine> LinesOf(const std::string& shortName) const;

  std::vector<LogLine> lines;
  std::set<Level> unwantedLevels;

 private:
  CallScript& script_;
};

class ScriptedRuntime final : public Util::Runtime, private Util::MemoryManager {
 public:
  explicit ScriptedRuntime(CallScript& script) : script_(script) {}
  ScriptedRuntime(const ScriptedRuntime&) = delete;
  ScriptedRuntime& operator=(const ScriptedRuntime&) = delete;
  ~ScriptedRuntime();

  char* FormatStringV(const char* pattern, std::va_list arguments) override;
  Util::MemoryManager& GetMemoryManager() noexcept override {
    script_.Note("GetMemoryManager");
    return *this;
  }
  void InvalidParameter() override { script_.Call("InvalidParameter"); }

  // Texts handed out and not given back yet.
  std::size_t TextsOut() const noexcept { return texts_.size(); }

 private:
  void Release(void* block) noexcept override;

  CallScript& script_;
  std::set<void*> texts_;
};
