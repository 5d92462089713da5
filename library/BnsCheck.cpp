#include "library/BnsCheck.h"

#include <algorithm>
#include <unordered_map>
#include <utility>

#include "library/Library.h"

namespace snip {
namespace {

using namespace bns;
using Severity = Problem::Severity;

/// Whether a line would be a marker if other characters than spaces around it were ignored: mostly a tab.
bool LooksLikeMarker(std::string_view line) {
  const auto first = line.find_first_not_of("\t \r\xA0");
  if (first == std::string_view::npos) return false;
  const std::string_view text = line.substr(first, line.find_last_not_of("\t \r\xA0") + 1 - first);
  return text != Trim(line) && (text == kDescriptionEnd || text == kCodeEnd || text == kListEnd);
}

bool IsControl(char c) {
  return static_cast<unsigned char>(c) < 0x20 && c != '\t' && c != '\r' && c != '\n';
}

class Checker : public BnsEvents {
 public:
  Checker(BnsScanner& scanner, const LetterTable& letters) : scanner_(scanner), letters_(letters) {}

  std::vector<Problem> Check() {
    if (!scanner_.version()) return {{1, Severity::Error, WhyNotALibrary(scanner_), true}};
    if (IsVersion1()) Warn(1, "the file is version 1; \"bns convert\" makes it version 2");
    const BnsEnding ending = scanner_.Scan(*this);
    CheckEnd(ending);
    if (scanner_.HasMore()) Error(line_ + 1, "the lines after the end of the list are never read");
    std::stable_sort(problems_.begin(), problems_.end(),
                     [](const Problem& a, const Problem& b) { return a.line < b.line; });
    return std::move(problems_);
  }

  void OnLine(BnsSection section, std::string_view line, std::string_view lineInFile) override {
    ++line_;
    lastLineEnded_ = lineInFile.ends_with('\n');
    if (section == BnsSection::FirstLine && scanner_.unixLines()) Warn("lines end with LF instead of CR LF");
    if (section == BnsSection::Name) CheckName(line);
    if (section == BnsSection::Description || section == BnsSection::Code) CheckBlockLine(section, line);
    if (section == BnsSection::Attachment) CheckNoMarker(line, "the path of an attachment", kListEnd);
    if (section == BnsSection::ListEnd && !IsVersion1() &&
        (lastSection_ == BnsSection::Description || lastSection_ == BnsSection::Attachment)) {
      Error(line_, "the list ends inside a description; its snippet has no code");
    }
    if (scanner_.unixLines() && lineInFile.ends_with("\r\n")) {
      Warn("ends with CR LF, but other lines end with LF");
    }
    if (std::any_of(line.begin(), line.end(), IsControl)) Warn("has control characters");
    if (line.starts_with("<<<<<<< ") || line.starts_with(">>>>>>> ")) {
      Warn("looks like a conflict of a merge as plain text; \"bns git-setup\" lets git merge by snippets");
    }
    if (line.find_first_of("\r\n") != std::string_view::npos) Warn("has a CR or LF inside the line");
    lastSection_ = section;
  }

 private:
  bool IsVersion1() const { return scanner_.version() == BnsVersion::Version1; }

  void Add(std::size_t line, Severity severity, std::string message, bool lostOnSave = false) {
    problems_.push_back(
        {.line = line, .severity = severity, .message = std::move(message), .lostOnSave = lostOnSave});
  }
  void Warn(std::size_t line, std::string message) { Add(line, Severity::Warning, std::move(message)); }
  void Warn(std::string message) { Warn(line_, std::move(message)); }
  void Error(std::size_t line, std::string message) { Add(line, Severity::Error, std::move(message), true); }

  void CheckNoMarker(std::string_view line, const std::string& expected, std::string_view anotherMarker) {
    for (const std::string_view marker : {kDescriptionEnd, kCodeEnd, anotherMarker}) {
      if (!IsMarker(line, marker)) continue;
      Add(line_, Severity::Error, "\"" + std::string(marker) + "\" where " + expected + " belongs");
      return;
    }
  }

  void CheckName(std::string_view name) {
    CheckNoMarker(name, "a name", kCodeEnd);
    if (++snippets_ == Library::kMaxSnippets + 1) {
      Error(line_, "a library can hold 32,767 snippets; this one and all after it are dropped");
    }
    if (Trim(name).empty()) Warn("a snippet has no name");
    const auto [known, isNew] = names_.emplace(letters_.Lower(name), line_);
    if (isNew) return;
    Warn("\"" + std::string(name) + "\" is also the name of the snippet on line " +
         std::to_string(known->second));
  }

  void CheckBlockLine(BnsSection section, std::string_view line) {
    if (line.ends_with(' ')) Warn("spaces at the end of the line are not kept");
    if (LooksLikeMarker(line)) Warn("looks like a marker but is text, because not only spaces surround it");
    if (section == BnsSection::Description && IsMarker(line, kCodeEnd)) {
      Warn("\"(.)\" in a description: is its \"(,)\" missing?");
    }
    if (section == BnsSection::Code && !IsVersion1() && IsMarker(line, kDescriptionEnd)) {
      Warn("\"(,)\" in code: did the description or the code before it end too early?");
    }
  }

  void CheckEnd(BnsEnding ending) {
    const std::string marker = "\"" + std::string(IsVersion1() ? kListEndV1 : kListEnd) + "\"";
    switch (ending) {
      case BnsEnding::ListEnd:
        if (!lastLineEnded_) Warn("the last line has no line ending");
        break;
      case BnsEnding::FirstLine:
        Warn("the file ends without " + marker);
        break;
      case BnsEnding::ListEndTooEarly:
        Error(line_,
              "the list ends although \"(.)\" announced another snippet; the last snippet loses the "
              "last two characters of its code and description");
        break;
      case BnsEnding::FileEndTooEarly:
        Error(line_,
              "the file ends although \"(.)\" announced another snippet, which is read as an empty one");
        break;
      case BnsEnding::InDescription:
        Error(line_, "the file ends before the code of its last snippet");
        break;
      case BnsEnding::InCode:
        Error(line_, "the file ends inside code, without " + marker);
        break;
    }
  }

  BnsScanner& scanner_;
  const LetterTable& letters_;
  std::size_t line_ = 0;
  std::size_t snippets_ = 0;
  bool lastLineEnded_ = false;
  BnsSection lastSection_ = BnsSection::FirstLine;
  std::unordered_map<std::string, std::size_t> names_;  ///< In small letters, and the line of the first.
  std::vector<Problem> problems_;
};

}  // namespace

std::vector<Problem> CheckLibrary(ByteSource& bytes, const LetterTable& letters) {
  BnsScanner scanner(bytes);
  return Checker(scanner, letters).Check();
}

std::vector<Problem> CheckLibrary(std::string_view bytes, const LetterTable& letters) {
  BytesInMemory source(bytes);
  return CheckLibrary(source, letters);
}

std::string WhyNotALibrary(const BnsScanner& scanner) {
  if (scanner.empty()) return "the file is empty";
  const std::string_view line = scanner.firstLine();
  if (line.starts_with("\xEF\xBB\xBF")) return "not a library: it begins with a UTF-8 byte order mark";
  if (line.starts_with("\xFF\xFE") || line.starts_with("\xFE\xFF")) return "not a library: it is UTF-16 text";
  return "not a library: the first line is neither \"BNS2.0\" nor \"BNS1.0\"";
}

}  // namespace snip
