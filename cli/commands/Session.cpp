#include "cli/commands/Session.h"

namespace snip {

InputFile Session::Open(const std::string& path) {
  if (path == "-" && inputWasRead_) {
    throw Failure(ExitCode::Usage, "the standard input can be read only once");
  }
  inputWasRead_ = inputWasRead_ || path == "-";
  return InputFile(path);
}

void Session::CheckLoss(std::size_t lost, const std::string& what) {
  if (lost == 0) return;
  const std::string message = what + ": " + std::to_string(lost) +
                              (lost == 1 ? " character is" : " characters are") +
                              " outside the code page of libraries";
  if (!lossy) throw Failure(ExitCode::Refused, message + "; --lossy replaces them with \"?\"");
  terminal.Complain(message);
}

std::string Session::Argument(const std::string& utf8) {
  AnsiText ansi = page.FromUtf8(utf8);
  CheckLoss(ansi.lost, "the command line");
  return std::move(ansi.text);
}

std::string Session::TextOfFile(const std::string& path, Encoding encoding) {
  const AnsiText ansi = ReadInputText(Read(path), encoding, page);
  CheckLoss(ansi.lost, NameOf(path));
  if (encoding != Encoding::Ansi) return WithCrLf(WithoutLastLineEnding(ansi.text)).text;
  // ANSI text is kept byte for byte: a CR or LF alone ends a line only in a text without any CR LF.
  const bool hasCrLf = ansi.text.find("\r\n") != std::string::npos;
  const std::string text(WithoutLastLineEnding(ansi.text));
  return hasCrLf ? text : WithCrLf(text).text;
}

void Session::WriteLine(std::string_view utf8) {
  terminal.Write(utf8);
  terminal.WriteBytes("\n");
}

Failure MalformedFile(const std::string& path, const Malformed& malformed) {
  return {ExitCode::Malformed,
          NameOf(path) + ":" + std::to_string(malformed.line()) + ": " + malformed.what()};
}

}  // namespace snip
