#include "cli/system/Terminal.h"

#ifdef _WIN32
#include <windows.h>

#include <fcntl.h>
#include <io.h>
#else
#include <unistd.h>
#endif

#include <utf8cpp/utf8.h>

#include <cstdio>
#include <cstdlib>

#include "cli/system/Failure.h"

namespace snip {
namespace {

bool IsTerminal(std::FILE* stream) {
#ifdef _WIN32
  return _isatty(_fileno(stream)) != 0;
#else
  return isatty(fileno(stream)) != 0;
#endif
}

std::string Printable(std::string_view text) {
  std::u32string characters = utf8::utf8to32(utf8::replace_invalid(text));
  for (char32_t& c : characters) {
    const bool control = (c < 0x20 && c != U'\n' && c != U'\t') || (c >= 0x7F && c < 0xA0);
    if (control) c = U'\uFFFD';
  }
  return utf8::utf32to8(characters);
}

}  // namespace

Terminal::Terminal() : outputIsTerminal_(IsTerminal(stdout)), errorIsTerminal_(IsTerminal(stderr)) {
  const char* const noColour = std::getenv("NO_COLOR");
  coloured_ = outputIsTerminal_ && (noColour == nullptr || *noColour == '\0');
#ifdef _WIN32
  for (std::FILE* stream : {stdin, stdout, stderr}) _setmode(_fileno(stream), _O_BINARY);
  if (outputIsTerminal_ || errorIsTerminal_) {
    previousCodePage_ = GetConsoleOutputCP();
    SetConsoleOutputCP(CP_UTF8);
  }
  DWORD mode = 0;
  const HANDLE output = GetStdHandle(STD_OUTPUT_HANDLE);
  constexpr DWORD understandsColours = 4;  // consoles before Windows 10 have no such mode
  const bool takesColours =
      GetConsoleMode(output, &mode) != 0 && SetConsoleMode(output, mode | understandsColours) != 0;
  coloured_ = coloured_ && takesColours;
#endif
}

#ifdef _WIN32
Terminal::~Terminal() {
  if (previousCodePage_ != 0) SetConsoleOutputCP(previousCodePage_);
}
#else
Terminal::~Terminal() = default;
#endif

void Terminal::Write(std::string_view text) {
  if (outputIsTerminal_) {
    WriteBytes(Printable(text));
  } else {
    WriteBytes(text);
  }
}

void Terminal::WriteBytes(std::string_view bytes) {
  pending_ += bytes;
  constexpr std::size_t enough = 1U << 16U;
  if (pending_.size() >= enough) Flush();
}

void Terminal::Flush() {
  const std::size_t written = std::fwrite(pending_.data(), 1, pending_.size(), stdout);
  const bool complete = written == pending_.size();
  pending_.clear();
  if (!complete || std::fflush(stdout) != 0)
    throw Failure(ExitCode::File, "the standard output cannot be written");
}

void Terminal::Complain(std::string_view message) {
  const std::string line = "bns: " + (errorIsTerminal_ ? Printable(message) : std::string(message)) + "\n";
  std::fwrite(line.data(), 1, line.size(), stderr);
}

}  // namespace snip
