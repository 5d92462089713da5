#include "tests/host/HostProcess.h"

#include <stdexcept>

#include "platform/Win32Text.h"
#include "tests/support/TestDesktop.h"

namespace snip::test {
namespace {

struct Pipe {
  UniqueFile read;
  UniqueFile write;
};

/// The end that the child gets is made one that children inherit.
Pipe MakePipe(bool childReads) {
  HANDLE read = nullptr;
  HANDLE write = nullptr;
  if (CreatePipe(&read, &write, nullptr, 0) == 0) throw std::runtime_error("no pipe");
  SetHandleInformation(childReads ? read : write, HANDLE_FLAG_INHERIT, HANDLE_FLAG_INHERIT);
  return {UniqueFile(read), UniqueFile(write)};
}

}  // namespace

HostProcess::HostProcess(const std::string& trait) {
  Pipe commands = MakePipe(true);
  Pipe answers = MakePipe(false);
  STARTUPINFOA start{};
  start.cb = sizeof start;
  start.dwFlags = STARTF_USESTDHANDLES;
  start.hStdInput = commands.read.get();
  start.hStdOutput = answers.write.get();
  start.hStdError = answers.write.get();
  PROCESS_INFORMATION process{};
  std::string commandLine = "\"" + ProgramDirectory() + "\\test_host.exe\"";
  if (CreateProcessA(nullptr, commandLine.data(), nullptr, nullptr, TRUE, 0, nullptr, nullptr, &start,
                     &process) == 0) {
    throw std::runtime_error("the environment does not start");
  }
  CloseHandle(process.hThread);
  process_.Reset(process.hProcess);
  commands_ = std::move(commands.write);
  answers_ = std::move(answers.read);
  const std::string greeting = Answer();
  if (greeting != "ready") throw std::runtime_error("the environment says: " + greeting);
  if (!trait.empty() && !Ask(trait).empty()) throw std::runtime_error("no such environment: " + trait);
}

HostProcess::~HostProcess() {
  commands_.Reset();
  if (!WaitUntil([this] { return !Running(); }, 5000)) Kill();
}

std::string HostProcess::Ask(const std::string& command) {
  Send(command);
  return Answer();
}

void HostProcess::Send(const std::string& command) {
  const std::string line = command + "\n";
  DWORD written = 0;
  WriteFile(commands_.get(), line.data(), static_cast<DWORD>(line.size()), &written, nullptr);
}

std::string HostProcess::Answer() {
  constexpr int kPatienceMs = 60000;
  const bool answered = WaitUntil(
      [this] {
        DWORD waiting = 0;
        PeekNamedPipe(answers_.get(), nullptr, 0, nullptr, &waiting, nullptr);
        std::string bytes(waiting, '\0');
        DWORD read = 0;
        if (waiting > 0) ReadFile(answers_.get(), bytes.data(), waiting, &read, nullptr);
        unread_.append(bytes, 0, read);
        return unread_.find('\n') != std::string::npos || (waiting == 0 && !Running());
      },
      kPatienceMs);
  const auto end = unread_.find('\n');
  if (end == std::string::npos) return answered ? "(the environment has ended)" : "(no answer)";
  std::string line = unread_.substr(0, end);
  unread_.erase(0, end + 1);
  while (!line.empty() && line.back() == '\r') line.pop_back();
  return line;
}

void HostProcess::Kill() {
  TerminateProcess(process_.get(), 1);
  WaitForSingleObject(process_.get(), 5000);
}

bool HostProcess::Running() const {
  return WaitForSingleObject(process_.get(), 0) == WAIT_TIMEOUT;
}

}  // namespace snip::test
