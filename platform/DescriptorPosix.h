#pragma once

#include <fcntl.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <system_error>
#include <utility>

namespace platform {

// Owns a descriptor; -1 is none.
class Descriptor {
 public:
  explicit Descriptor(int number) noexcept : number_(number) {}
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;
  ~Descriptor() { Close(); }

  int Number() const noexcept { return number_; }
  bool IsOpen() const noexcept { return number_ >= 0; }
  void Close() noexcept {
    if (IsOpen()) close(std::exchange(number_, -1));
  }

 private:
  int number_;
};

// Its ends go to no program that is started meanwhile. Throws std::system_error.
class Pipe {
 public:
  Pipe() : Pipe(Make()) {}

  Descriptor readEnd;
  Descriptor writeEnd;

 private:
  explicit Pipe(const std::array<int, 2>& ends) noexcept : readEnd(ends[0]), writeEnd(ends[1]) {}

  static std::array<int, 2> Make() {
    std::array<int, 2> ends{};
    if (pipe2(ends.data(), O_CLOEXEC) != 0) throw std::system_error(errno, std::generic_category(), "A pipe");
    return ends;
  }
};

}  // namespace platform
