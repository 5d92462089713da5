#pragma once

#include <string>
#include <string_view>

#include "cli/exchange/TextConversion.h"
#include "cli/system/CodePage.h"
#include "cli/system/Failure.h"
#include "cli/system/Files.h"
#include "cli/system/Terminal.h"

namespace snip {

/// What all commands share.
class Session {
 public:
  Session(Terminal& streams, const CodePage& codePage) : terminal(streams), page(codePage) {}

  Terminal& terminal;
  const CodePage& page;
  bool json = false;    ///< Print JSON.
  bool lossy = false;   ///< Continue although text is lost.
  bool dryRun = false;  ///< Write no file.

  /// Opens a file, or the standard input for "-", which can be read only once.
  InputFile Open(const std::string& path);
  std::string Read(const std::string& path) { return Open(path).ReadAll(); }
  /// A text of the command line in the library's code page; refuses to lose characters.
  std::string Argument(const std::string& utf8);
  /// The text of a file (or "-") for a snippet, without the last line ending; refuses to lose characters.
  std::string TextOfFile(const std::string& path, Encoding encoding);

  void WriteLine(std::string_view utf8);

 private:
  void CheckLoss(std::size_t lost, const std::string& what);

  bool inputWasRead_ = false;
};

/// A Failure for a place in a file.
Failure MalformedFile(const std::string& path, const Malformed& malformed);

}  // namespace snip
