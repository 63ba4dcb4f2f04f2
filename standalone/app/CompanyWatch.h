#pragma once

#include <chrono>
#include <filesystem>
#include <string>
#include <vector>

#include "platform/FolderWatch.h"
#include "platform/Pace.h"
#include "standalone/desk/Arriving.h"

namespace app {

// What a run of this program is asked by to tell, on a line in front of all else, where letters of its company come to;
// for the program that started it only.
inline constexpr const char* kTellPlaces = "--tell-places";
std::string PlacesLine(const desk::LetterPlaces& places);

// Waits until there may be letters to carry for a company, as far as the system tells of it: one has come into a folder
// of its partners, or its books were written. What a run itself does is none of it. Used on one thread
// at a time, except for End().
class CompanyWatch {
 public:
  // Throws std::system_error when the system has nothing left to wait on.
  explicit CompanyWatch(std::filesystem::path company);

  // What a run has printed, without the line by which it tells where letters come to; one that tells nothing of it has
  // them come to where they came to before.
  std::string TakePlaces(std::string output);
  // The books are as a run has left them.
  void NoteBooks();

  // So long at most. After many changes in a row at once, only every few seconds.
  void WaitFor(std::chrono::milliseconds longest);
  // Ends this wait and all that follow; from any thread.
  void End() noexcept { watch_.End(); }

 private:
  bool Matters(const std::filesystem::path& folder, const std::filesystem::path& name);
  void WatchAll();

  std::filesystem::path company_;
  std::filesystem::path folderOfBooks_;
  desk::BooksWritten books_;
  desk::LetterPlaces places_;
  platform::Pace pace_;
  platform::FolderWatch watch_;
};

}  // namespace app
