#pragma once

#include <filesystem>
#include <random>
#include <string>
#include <vector>

namespace partners {

// The folder through which the letters go, and what becomes of them there. Letters that have once lain there may lie
// there again.
class BadFolder {
 public:
  explicit BadFolder(std::filesystem::path folder) : folder_(std::move(folder)) {}

  void Lose(std::mt19937& random);
  void Double(std::mt19937& random);
  void Delay(std::mt19937& random);
  void Arrive(std::mt19937& random);
  void Truncate(std::mt19937& random);
  void Corrupt(std::mt19937& random);
  void Replay(std::mt19937& random);
  // Under the address of another company.
  void Misdirect(std::mt19937& random);

  // To be told after each carrying.
  void Remember();
  // No file is so young any more that somebody may still be writing it.
  void LetTimePass();

 private:
  struct Letter {
    std::string name;
    std::string bytes;
  };

  std::vector<std::filesystem::path> Lying() const;
  std::filesystem::path Any(std::mt19937& random) const;
  std::string NewName(std::string_view address);
  void Put(const std::string& name, const std::string& bytes) const;

  std::filesystem::path folder_;
  std::vector<Letter> seen_;
  std::vector<Letter> delayed_;
  int names_ = 0;
};

}  // namespace partners
