#pragma once

#include <sys/types.h>

#include <map>
#include <random>
#include <string>
#include <string_view>
#include <vector>

#include "partners/Dying.h"

namespace partners {

inline constexpr int kDied = 99;

// Counts what a process writes to disks, and ends it when the time has come. One in a process, and in none but one that
// is to die; a file that it has looked at stays open, as to close it would end the locks that the process has on it.
class MortalDisk {
 public:
  // Who ends it is told through `tell`, a pipe, into what it wrote.
  MortalDisk(const Death& death, int tell) : death_(death), random_(death.chance), tell_(tell) {}

  // Each before it is done, of a file that lies on a disk.
  void Write(int file, off_t at, std::string_view bytes);
  void Cut(int file, off_t length);
  void BringToDisk(int file);
  // Of a file's name, or of a length by the name; they count as brought to the disk.
  void Name(const char* name);

 private:
  struct Piece {
    off_t at = 0;
    std::string bytes;
    bool isCut = false;  // the file ends there
  };
  // A file as it was brought to the disk last, and what was written into it since.
  struct Unsafe {
    int file = -1;
    std::string before;
    std::vector<Piece> pieces;
  };

  bool IsTheLast() { return ++writings_ == death_.atWriting; }
  std::size_t UpTo(std::size_t most) { return std::uniform_int_distribution<std::size_t>(0, most)(random_); }
  void Remember(int file, Piece piece);
  void LosePartOf(const Unsafe& unsafe);
  [[noreturn]] void Die(const std::string& into);

  Death death_;
  std::mt19937 random_;
  int tell_;
  int writings_ = 0;
  std::map<ino_t, Unsafe> unsafe_;
};

// From now on it is asked before this process writes.
void LiveWith(MortalDisk& disk);

}  // namespace partners
