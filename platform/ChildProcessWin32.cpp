// A program is started within a job that the system ends together with the last handle of it.
#define WIN32_LEAN_AND_MEAN
#ifndef NOMINMAX
#define NOMINMAX
#endif
#include <windows.h>

#include <array>
#include <mutex>
#include <system_error>
#include <thread>
#include <utility>

#include "platform/ChildProcess.h"

namespace platform {

namespace {

[[noreturn]] void ThrowProcessError(const char* what) {
  throw std::system_error(static_cast<int>(::GetLastError()), std::system_category(), what);
}

class Handle {
 public:
  explicit Handle(HANDLE handle = nullptr) noexcept : handle_(handle) {}
  Handle(const Handle&) = delete;
  Handle& operator=(const Handle&) = delete;
  ~Handle() { Close(); }

  HANDLE Get() const noexcept { return handle_; }
  void Set(HANDLE handle) noexcept {
    Close();
    handle_ = handle;
  }
  void Close() noexcept {
    const HANDLE handle = std::exchange(handle_, nullptr);
    if (handle != nullptr && handle != INVALID_HANDLE_VALUE) ::CloseHandle(handle);
  }

 private:
  HANDLE handle_;
};

std::wstring InUtf16(const std::string& text) {
  if (text.empty()) return {};
  const int bytes = static_cast<int>(text.size());
  const int size = ::MultiByteToWideChar(CP_UTF8, MB_ERR_INVALID_CHARS, text.data(), bytes, nullptr, 0);
  if (size == 0) ThrowProcessError("An argument of a program");
  std::wstring wide(static_cast<std::size_t>(size), L'\0');
  ::MultiByteToWideChar(CP_UTF8, MB_ERR_INVALID_CHARS, text.data(), bytes, wide.data(), size);
  return wide;
}

// As programs take the command line apart: backslashes stand for themselves unless a quote follows them.
std::wstring QuotedWord(const std::wstring& word) {
  std::wstring quoted = L"\"";
  std::size_t backslashes = 0;
  for (const wchar_t character : word) {
    if (character == L'"') quoted.append(backslashes + 1, L'\\');
    backslashes = character == L'\\' ? backslashes + 1 : 0;
    quoted += character;
  }
  return quoted.append(backslashes, L'\\') + L'"';
}

std::wstring CommandLine(const std::filesystem::path& program, const std::vector<std::string>& arguments) {
  std::wstring line = QuotedWord(program.wstring());
  for (const std::string& argument : arguments) line += L' ' + QuotedWord(InUtf16(argument));
  return line;
}

struct Pipe {
  Handle readEnd;
  Handle writeEnd;
};

// Its end for writing goes to the program that is started next.
void OpenPipe(Pipe& pipe) {
  SECURITY_ATTRIBUTES inherited{};
  inherited.nLength = sizeof inherited;
  inherited.bInheritHandle = TRUE;
  HANDLE readEnd = nullptr;
  HANDLE writeEnd = nullptr;
  if (::CreatePipe(&readEnd, &writeEnd, &inherited, 0) == 0) ThrowProcessError("A pipe");
  pipe.readEnd.Set(readEnd);
  pipe.writeEnd.Set(writeEnd);
  if (::SetHandleInformation(readEnd, HANDLE_FLAG_INHERIT, 0) == 0) ThrowProcessError("A pipe");
}

HANDLE OpenNothing() {
  SECURITY_ATTRIBUTES inherited{};
  inherited.nLength = sizeof inherited;
  inherited.bInheritHandle = TRUE;
  return ::CreateFileW(L"NUL", GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE, &inherited, OPEN_EXISTING, 0, nullptr);
}

HANDLE MakeJob() {
  const HANDLE job = ::CreateJobObjectW(nullptr, nullptr);
  if (job == nullptr) ThrowProcessError("A job");
  JOBOBJECT_EXTENDED_LIMIT_INFORMATION limits{};
  limits.BasicLimitInformation.LimitFlags = JOB_OBJECT_LIMIT_KILL_ON_JOB_CLOSE;
  ::SetInformationJobObject(job, JobObjectExtendedLimitInformation, &limits, sizeof limits);
  return job;
}

void ReadUntilItEnds(HANDLE pipe, std::string& text) {
  std::array<char, 4096> bytes{};
  DWORD count = 0;
  while (::ReadFile(pipe, bytes.data(), static_cast<DWORD>(bytes.size()), &count, nullptr) != 0 && count != 0) {
    text.append(bytes.data(), count);
  }
}

// Whatever is inherited goes to each program that is started meanwhile, which would keep the pipes of others open.
std::mutex startingMutex;

}  // namespace

class ChildProcess::Child {
 public:
  Child(const std::filesystem::path& program, const std::vector<std::string>& arguments) : job_(MakeJob()) {
    std::wstring line = CommandLine(program, arguments);
    const std::lock_guard lock(startingMutex);
    OpenPipe(output_);
    OpenPipe(errors_);
    const Handle nothing(OpenNothing());
    STARTUPINFOW how{};
    how.cb = sizeof how;
    how.dwFlags = STARTF_USESTDHANDLES;
    how.hStdInput = nothing.Get();
    how.hStdOutput = output_.writeEnd.Get();
    how.hStdError = errors_.writeEnd.Get();
    PROCESS_INFORMATION started{};
    if (::CreateProcessW(program.c_str(), line.data(), nullptr, nullptr, TRUE,
                         CREATE_SUSPENDED | CREATE_NEW_PROCESS_GROUP, nullptr, nullptr, &how, &started) == 0) {
      ThrowProcessError("A program that is to be started");
    }
    process_.Set(started.hProcess);
    const Handle thread(started.hThread);
    ::AssignProcessToJobObject(job_.Get(), process_.Get());
    ::ResumeThread(thread.Get());
    output_.writeEnd.Close();
    errors_.writeEnd.Close();
  }

  EndedProcess Wait() {
    EndedProcess ended;
    std::thread errors([&] { ReadUntilItEnds(errors_.readEnd.Get(), ended.errors); });
    ReadUntilItEnds(output_.readEnd.Get(), ended.output);
    errors.join();
    ::WaitForSingleObject(process_.Get(), INFINITE);
    DWORD exitCode = 0;
    ::GetExitCodeProcess(process_.Get(), &exitCode);
    ended.exitCode = static_cast<int>(exitCode);
    return ended;
  }

  void End() noexcept { ::TerminateProcess(process_.Get(), kEnded); }

 private:
  static constexpr UINT kEnded = 137;

  Handle job_;
  Pipe output_;
  Pipe errors_;
  Handle process_;
};

ChildProcess::ChildProcess(const std::filesystem::path& program, const std::vector<std::string>& arguments)
    : child_(std::make_unique<Child>(program, arguments)) {}

// The job ends the program.
ChildProcess::~ChildProcess() = default;

EndedProcess ChildProcess::Wait() {
  return child_->Wait();
}

void ChildProcess::End() noexcept {
  child_->End();
}

}  // namespace platform
