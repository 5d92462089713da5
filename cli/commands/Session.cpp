#include "cli/commands/Session.h"

#include "cli/files/Paths.h"

namespace snip {

FileBytes Session::Read(const std::string& path) {
  if (path != "-") return FileBytes(path);
  if (inputWasRead_) throw Failure(ExitCode::Usage, "the standard input can be read only once");
  inputWasRead_ = true;
  return FileBytes::Of(terminal.ReadInput());
}

void Session::CheckLoss(std::size_t lost, const std::string& what) {
  if (lost == 0) return;
  const std::string message = what + ": " + std::to_string(lost) +
                              (lost == 1 ? " character is" : " characters are") +
                              " not in the code page of libraries";
  if (!lossy) throw Failure(ExitCode::Refused, message + "; --lossy puts \"?\" in place of them");
  terminal.Complain(message);
}

std::string Session::Argument(const std::string& utf8) {
  AnsiText ansi = page.FromUtf8(utf8);
  CheckLoss(ansi.lost, "the command line");
  return std::move(ansi.text);
}

std::string Session::TextOfFile(const std::string& path, Encoding encoding) {
  const FileBytes file = Read(path);
  const AnsiText ansi = ReadInputText(file.view(), encoding, page);
  CheckLoss(ansi.lost, NameOf(path));
  if (encoding != Encoding::Ansi) return WithCrLf(WithoutLastLineEnd(ansi.text)).text;
  // Byte for byte: only a text without any CR LF can have line ends of another kind.
  const bool hasCrLf = ansi.text.find("\r\n") != std::string::npos;
  const std::string text(WithoutLastLineEnd(ansi.text));
  return hasCrLf ? text : WithCrLf(text).text;
}

void Session::WriteLine(std::string_view utf8) {
  terminal.Write(utf8);
  terminal.WriteBytes("\n");
}

std::string Session::NameOf(const std::string& path) {
  return path == "-" ? "the standard input" : ToUtf8(ToPath(path));
}

Failure MalformedFile(const std::string& path, const Malformed& malformed) {
  return {ExitCode::Malformed,
          Session::NameOf(path) + ":" + std::to_string(malformed.line()) + ": " + malformed.what()};
}

}  // namespace snip
