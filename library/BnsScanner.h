#pragma once

#include <cstddef>
#include <optional>
#include <string_view>

#include "library/ByteSource.h"
#include "library/LineReader.h"
#include "platform/Text.h"

namespace snip {

// The grammar of library files. A file is text in the ANSI code page, one item a line:
//
//     BNS2.0
//     name                     \  once for
//     attachment path          |  each snippet
//     description lines        |
//     (,)                      |
//     code lines               /
//     (.)                         only when another snippet follows
//     ...
//
// There are no escapes and no counts: a description or code line that is a marker, ignoring spaces around it,
// ends its block there. Lines end with CR LF (library/LineReader.h says what else is accepted).

namespace bns {
inline constexpr std::string_view kVersion1 = "BNS1.0";
inline constexpr std::string_view kVersion2 = "BNS2.0";
inline constexpr std::string_view kDescriptionEnd = "(,)";
inline constexpr std::string_view kCodeEnd = "(.)";
inline constexpr std::string_view kListEnd = "...";
inline constexpr std::string_view kCodeEndV1 = ".";
inline constexpr std::string_view kListEndV1 = "..";

/// Whether a line, without its line ending, is that marker; spaces around it are ignored.
inline bool IsMarker(std::string_view line, std::string_view marker) {
  // Every line of a library is tested here, and the last character rules most of them out.
  if (line.empty() || (line.back() != ' ' && line.back() != marker.back())) return false;
  return Trim(line) == marker;
}
}  // namespace bns

enum class BnsVersion {
  Version1,  ///< Read only: no attachments, one-line descriptions, the markers "." and "..".
  Version2,
};

/// What a line of a library file is.
enum class BnsSection { FirstLine, Name, Attachment, Description, DescriptionEnd, Code, CodeEnd, ListEnd };

/// How a library file ended.
enum class BnsEnding {
  ListEnd,          ///< By the end of the list, after a snippet or directly after the first line.
  FirstLine,        ///< The file ended after its first line.
  ListEndTooEarly,  ///< By the end of the list after a "(.)", which announces another snippet.
  FileEndTooEarly,  ///< The file ended after a "(.)".
  InDescription,    ///< The file ended before the code of its last snippet.
  InCode,           ///< The file ended inside code.
};

/// Receives the lines of a library file from the first to the end of the list. What it is given is valid
/// during the call only.
class BnsEvents {
 public:
  virtual ~BnsEvents() = default;

  /// One line, without its line ending and as it is in the file.
  virtual void OnLine(BnsSection section, std::string_view line, std::string_view lineInFile) = 0;
  /// Several lines of a description or of code, each ended by CR LF and without spaces before that: most
  /// lines are such, and handling many at once is faster. Calls OnLine for each, unless overridden.
  virtual void OnPlainLines(BnsSection section, std::string_view lines);
};

/// Splits a library file into its sections, reading it piece by piece. Any file that begins with the name of
/// a version can be scanned to its end; BnsEnding says where it broke off.
class BnsScanner {
 public:
  /// Reads the first line.
  explicit BnsScanner(ByteSource& bytes);

  /// Whether the file has no bytes.
  bool empty() const { return lineInFile_.empty(); }
  /// The first line, without its line ending. Valid until the scan.
  std::string_view firstLine() const { return firstLine_; }
  /// None if the first line names no version: the file is not a library.
  std::optional<BnsVersion> version() const { return version_; }
  /// Whether lines end with LF instead of CR LF.
  bool unixLines() const { return lines_.unixLines(); }

  /// During a report the number of its first line in the file, from 1, if every LF ended a line.
  std::size_t lineNumber() const { return lineNumber_; }

  /// Reports all lines of the list, the first line included. To be called once, for a file with a version.
  BnsEnding Scan(BnsEvents& events);
  /// Whether lines follow the end of the list.
  bool HasMore() { return !lines_.AtEnd(); }

 private:
  /// Marks where the next report begins.
  void Mark();
  void ScanLine(BnsSection section);
  /// Reports lines up to and including `marker`; false at the end of the list or of the file.
  bool ScanBlock(BnsSection section, BnsSection endSection, std::string_view marker);

  LineReader lines_;
  std::string_view firstLine_;
  std::string_view lineInFile_;  ///< The first line with its line ending.
  std::optional<BnsVersion> version_;
  std::string_view listEnd_ = bns::kListEnd;
  std::size_t lineNumber_ = 1;
  BnsEvents* events_ = nullptr;
  BnsEnding ending_ = BnsEnding::FirstLine;
};

}  // namespace snip
