#pragma once

#include <string>
#include <string_view>

#include "cli/Failure.h"
#include "cli/Terminal.h"
#include "cli/exchange/Outcome.h"
#include "cli/files/FileBytes.h"
#include "cli/text/CodePage.h"
#include "cli/text/InputText.h"

namespace snip {

/// What every command works with.
class Session {
 public:
  Session(Terminal& streams, const CodePage& codePage) : terminal(streams), page(codePage) {}

  Terminal& terminal;
  const CodePage& page;
  bool json = false;   ///< Answers are JSON, for scripts.
  bool lossy = false;  ///< Text may be lost where the other side has no room for it.

  /// The bytes of a file, or of the standard input for "-", which can be read once.
  FileBytes Read(const std::string& path);
  /// A text of the command line in the library's code page; refuses to lose characters.
  std::string Argument(const std::string& utf8);
  /// The text of a file (or "-") for a snippet, without the last line end; refuses to lose characters.
  std::string TextOfFile(const std::string& path, Encoding encoding);

  void WriteLine(std::string_view utf8);
  /// A file's own name for messages and JSON.
  static std::string NameOf(const std::string& path);

 private:
  void CheckLoss(std::size_t lost, const std::string& what);

  bool inputWasRead_ = false;
};

/// A Failure for a place in a file.
Failure MalformedFile(const std::string& path, const Malformed& malformed);

}  // namespace snip
