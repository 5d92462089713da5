#include "cli/records/LibraryCheck.h"

#include <algorithm>
#include <unordered_map>

#include "cli/records/RecordScanner.h"
#include "library/BnsMarkers.h"

namespace snip {
namespace {

using namespace bns;

/// The lines that end blocks, with anything but blanks around them: a tab, mostly.
bool LooksLikeMarker(std::string_view line) {
  const auto blank = [](char c) { return c == '\t' || c == ' ' || c == '\r' || c == '\xA0'; };
  const auto first = std::find_if_not(line.begin(), line.end(), blank);
  const auto last = std::find_if_not(line.rbegin(), std::make_reverse_iterator(first), blank).base();
  const std::string_view text(first, last);
  return text != Trim(line) && (text == kDescriptionEnd || text == kCodeEnd || text == kListEnd);
}

bool IsControl(char c) {
  return static_cast<unsigned char>(c) < 0x20 && c != '\t' && c != '\r' && c != '\n';
}

class Checker {
 public:
  Checker(std::string_view bytes, const CodePage& page) : bytes_(bytes), page_(page) {}

  std::vector<Fault> Check() {
    file_.unixLines = HasUnixLines(bytes_);
    file_ = ScanRecords(bytes_, [this](const PartLines& lines) { Take(lines); });
    if (!file_.version) {
      return {{.line = 1, .severity = Severity::Error, .message = WhyNoLibrary(), .lostOnSave = true}};
    }
    if (file_.version == BnsVersion::Version1) {
      // In front of all others.
      faults_.insert(faults_.begin(), Fault{.line = 1,
                                            .severity = Severity::Warning,
                                            .message = "the file is of version 1; \"bns convert\" makes it "
                                                       "version 2",
                                            .lostOnSave = false});
    }
    CheckEnd();
    std::stable_sort(faults_.begin(), faults_.end(),
                     [](const Fault& a, const Fault& b) { return a.line < b.line; });
    return std::move(faults_);
  }

 private:
  void Add(std::size_t line, Severity severity, std::string message, bool lostOnSave = false) {
    faults_.push_back(
        {.line = line, .severity = severity, .message = std::move(message), .lostOnSave = lostOnSave});
  }
  void Warn(std::size_t line, std::string message) { Add(line, Severity::Warning, std::move(message)); }
  void Error(std::size_t line, std::string message) { Add(line, Severity::Error, std::move(message), true); }

  void Take(const PartLines& lines) {
    if (lines.part == Part::Rest) {
      Error(line_ + 1, "what follows the end of the list is never read");
      return;
    }
    if (lines.part == Part::Name) TakeSnippet(lines);
    for (std::string_view rest = lines.lines; !rest.empty();) {
      const std::string_view before = rest;
      const std::string_view line = TakeLine(rest, file_.unixLines);
      ++line_;
      if (file_.unixLines && before.substr(0, before.size() - rest.size()).ends_with("\r\n")) {
        Warn(line_, "ends with CR LF among lines that end with LF");
      }
      CheckLine(lines.part, line);
    }
    if (lines.part == Part::ListEnd && !version1_ &&
        (lastPart_ == Part::Description || lastPart_ == Part::Attachment)) {
      Error(line_, "the list ends inside a description; its snippet has no code");
    }
    lastPart_ = lines.part;
  }

  void TakeSnippet(const PartLines& lines) {
    if (lines.snippet == Library::kMaxSnippets) {
      Error(line_ + 1, "a library has room for 32,767 snippets; this one and all that follow are left out");
    }
    std::string_view rest = lines.lines;
    const std::string name(TakeLine(rest, file_.unixLines));
    if (Trim(name).empty()) Warn(line_ + 1, "a snippet has no name");
    const auto [known, isNew] = names_.emplace(page_.Lower(name), line_ + 1);
    if (!isNew) {
      Warn(line_ + 1, "\"" + page_.ToUtf8(name) + "\" is also the name of the snippet on line " +
                          std::to_string(known->second));
    }
  }

  void CheckLine(Part part, std::string_view line) {
    if (part == Part::FirstLine) version1_ = EqualsIgnoringAsciiCase(line, kVersion1);
    const bool block = part == Part::Description || part == Part::Code;
    if (part == Part::FirstLine && file_.unixLines) Warn(line_, "lines end with LF in place of CR LF");
    if (block && line.ends_with(' ')) Warn(line_, "blanks at the end of the line are not kept");
    if (block && LooksLikeMarker(line))
      Warn(line_, "looks like a marker but is text: it has more than blanks around it");
    if (part == Part::Description && IsMarker(line, kCodeEnd)) {
      Warn(line_, "\"(.)\" in a description: has its \"(,)\" been lost?");
    }
    if (part == Part::Code && !version1_ && IsMarker(line, kDescriptionEnd)) {
      Warn(line_, "\"(,)\" in code: has the description or the code before ended too early?");
    }
    if (part == Part::Name || part == Part::Attachment) {
      if (IsMarker(line, kDescriptionEnd) || IsMarker(line, kCodeEnd) ||
          (part == Part::Attachment && IsMarker(line, kListEnd))) {
        Add(line_, Severity::Error,
            "\"" + std::string(Trim(line)) + "\" stands where " +
                (part == Part::Name ? "a name" : "the path of an attachment") + " belongs");
      }
    }
    if (std::any_of(line.begin(), line.end(), IsControl)) Warn(line_, "holds control characters");
    const bool loneEnd = line.find_first_of("\r\n") != std::string_view::npos;
    if (loneEnd) Warn(line_, "holds a CR or LF that ends no line");
  }

  void CheckEnd() {
    const bool lineEnded = bytes_.ends_with(file_.unixLines ? "\n" : "\r\n");
    const std::string marker(file_.version == BnsVersion::Version1 ? kListEndV1 : kListEnd);
    switch (file_.ending) {
      case Ending::Marker:
        if (!lineEnded && lastPart_ == Part::ListEnd) Warn(line_, "the last line has no line end");
        break;
      case Ending::EmptyList:
        if (lastPart_ != Part::ListEnd) Warn(line_, "the file ends without \"" + marker + "\"");
        break;
      case Ending::Promise:
        if (lastPart_ == Part::ListEnd) {
          Error(line_,
                "the list ends where another snippet was announced; the last snippet loses the last two "
                "characters of its code and its description");
        } else {
          Error(line_, "the file ends where another snippet was announced; it reads as an empty one");
        }
        break;
      case Ending::Description:
        Error(line_, "the file ends before the code of its last snippet begins");
        break;
      case Ending::Code:
        Error(line_, "the file ends inside code, without \"" + marker + "\"");
        break;
    }
  }

  std::string WhyNoLibrary() const {
    if (bytes_.empty()) return "the file is empty";
    if (bytes_.starts_with("\xEF\xBB\xBF"))
      return "not a library: a UTF-8 byte order mark precedes the first line";
    if (bytes_.starts_with("\xFF\xFE") || bytes_.starts_with("\xFE\xFF"))
      return "not a library: the file is in UTF-16";
    return "not a library: the first line is neither \"BNS2.0\" nor \"BNS1.0\"";
  }

  std::string_view bytes_;
  const CodePage& page_;
  ScannedFile file_;
  bool version1_ = false;
  std::size_t line_ = 0;
  Part lastPart_ = Part::FirstLine;
  std::unordered_map<std::string, std::size_t> names_;  ///< Small letters, and the line they were first on.
  std::vector<Fault> faults_;
};

}  // namespace

std::vector<Fault> CheckLibrary(std::string_view bytes, const CodePage& page) {
  return Checker(bytes, page).Check();
}

}  // namespace snip
