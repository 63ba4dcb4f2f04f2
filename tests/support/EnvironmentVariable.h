#pragma once

#include <cstdlib>
#include <optional>
#include <string>
#include <utility>

// Has another value in this process while it is there, and what it had before afterwards.
class EnvironmentVariable {
 public:
  EnvironmentVariable(std::string name, const std::string& value) : name_(std::move(name)) {
    if (const char* const before = std::getenv(name_.c_str())) before_ = before;
    Set(value);
  }
  EnvironmentVariable(const EnvironmentVariable&) = delete;
  EnvironmentVariable& operator=(const EnvironmentVariable&) = delete;
  ~EnvironmentVariable() { Set(before_); }

 private:
  void Set(const std::optional<std::string>& value) const {
#ifdef _WIN32
    _putenv_s(name_.c_str(), value.value_or("").c_str());
#else
    if (value) {
      setenv(name_.c_str(), value->c_str(), /*overwrite=*/1);
    } else {
      unsetenv(name_.c_str());
    }
#endif
  }

  std::string name_;
  std::optional<std::string> before_;
};
