#include "standalone/import/CsvSource.h"

#include <fstream>
#include <ios>
#include <utility>

#include "standalone/values/Errors.h"
#include "standalone/values/Text.h"

namespace standalone {

namespace {

constexpr std::size_t kBufferBytes = 1U << 16U;

std::shared_ptr<std::ifstream> Open(const std::filesystem::path& file) {
  std::error_code error;
  if (std::filesystem::is_directory(file, error)) {
    throw InvalidInput(PathText(file) + " is a folder; name a CSV file.");
  }
  auto stream = std::make_shared<std::ifstream>();
  stream->rdbuf()->pubsetbuf(nullptr, 0);
  stream->open(file, std::ios::binary);
  if (*stream) return stream;
  if (!std::filesystem::exists(file, error)) {
    throw InvalidInput("There is no file " + PathText(file) + "; name a CSV file.");
  }
  throw InvalidInput("The file " + PathText(file) + " cannot be read; check that you may read it.");
}

ReadBytes BytesOf(const std::filesystem::path& file) {
  return [stream = Open(file), name = PathText(file)](char* into, std::size_t most) {
    stream->read(into, static_cast<std::streamsize>(most));
    if (stream->bad()) throw InvalidInput("The file " + name + " cannot be read to its end; check the disk.");
    return static_cast<std::size_t>(stream->gcount());
  };
}

// A device has no size, and some that look like files say that theirs is 0.
std::uint64_t SizeOf(const std::filesystem::path& file) {
  std::error_code error;
  if (!std::filesystem::is_regular_file(file, error)) return 0;
  const std::uintmax_t size = std::filesystem::file_size(file, error);
  return error ? 0 : size;
}

}  // namespace

CsvSource::CsvSource(const std::filesystem::path& file) : CsvSource(PathText(file), BytesOf(file)) {
  bytesTotal_ = SizeOf(file);
}

CsvSource::CsvSource(std::string name, ReadBytes read)
    : name_(std::move(name)), read_(std::move(read)), buffer_(kBufferBytes) {
  Fill();
}

std::string_view CsvSource::Next() {
  if (!std::exchange(isFirst_, false) && filled_ != 0) Fill();
  return {buffer_.data(), filled_};
}

void CsvSource::Fill() {
  filled_ = read_(buffer_.data(), buffer_.size());
  sha256_.Add({buffer_.data(), filled_});
}

}  // namespace standalone
