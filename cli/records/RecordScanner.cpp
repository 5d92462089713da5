#include "cli/records/RecordScanner.h"

#include <cstring>

#include "library/BnsMarkers.h"

namespace snip {
namespace {

using namespace bns;

/// Whether a line may be a marker at all: the end of its text is looked at, since most lines begin with
/// blanks.
bool MayBeMarker(const char* begin, const char* end) {
  if (begin == end) return false;
  const char last = end[-1];
  return last == ' ' || last == '.' || (last == ')' && end - begin >= 3 && end[-3] == '(');
}

class Scanner {
 public:
  Scanner(std::string_view bytes, const std::function<void(const PartLines&)>& take)
      : rest_(bytes), take_(take) {}

  ScannedFile Scan() {
    file_.unixLines = HasUnixLines(rest_);
    if (rest_.empty()) return file_;
    const std::string_view firstLine = TakeOne(Part::FirstLine);
    if (EqualsIgnoringAsciiCase(firstLine, kVersion1)) file_.version = BnsVersion::Version1;
    if (EqualsIgnoringAsciiCase(firstLine, kVersion2)) file_.version = BnsVersion::Version2;
    if (!file_.version) return file_;
    listEnd_ = *file_.version == BnsVersion::Version1 ? kListEndV1 : kListEnd;
    if (!rest_.empty()) ScanList();
    if (!rest_.empty()) take_({Part::Rest, snippet_, rest_});
    return file_;
  }

 private:
  void ScanList() {
    for (;;) {
      if (rest_.empty()) {
        ++file_.snippets;
        file_.ending = Ending::Promise;
        return;
      }
      std::string_view ahead = rest_;
      if (IsMarker(TakeLine(ahead, file_.unixLines), listEnd_)) {
        file_.ending = file_.snippets == 0 ? Ending::EmptyList : Ending::Promise;
        TakeOne(Part::ListEnd);
        return;
      }
      snippet_ = file_.snippets++;
      TakeOne(Part::Name);
      if (!ScanRecord()) return;
    }
  }

  /// Whether another record follows.
  bool ScanRecord() {
    if (*file_.version == BnsVersion::Version1) {
      if (!rest_.empty()) TakeOne(Part::Description);
      return ScanBlock(Part::Code, Part::CodeEnd, kCodeEndV1);
    }
    if (!rest_.empty()) TakeOne(Part::Attachment);
    return ScanBlock(Part::Description, Part::DescriptionEnd, kDescriptionEnd) &&
           ScanBlock(Part::Code, Part::CodeEnd, kCodeEnd);
  }

  /// Takes lines up to and with the marker; whether it was there, and not the end of the list or the file.
  bool ScanBlock(Part part, Part endPart, std::string_view marker) {
    const char* const block = rest_.data();
    const char* const fileEnd = block + rest_.size();
    const char* line = block;
    while (line < fileEnd) {
      const char* const lineEnd = EndOfLine(line, fileEnd);
      const char* const textEnd = EndOfText(line, lineEnd);
      if (MayBeMarker(line, textEnd)) {
        const std::string_view text(line, static_cast<std::size_t>(textEnd - line));
        const bool ends = IsMarker(text, marker);
        if (ends || IsMarker(text, listEnd_)) {
          TakeUpTo(part, line);
          TakeUpTo(ends ? endPart : Part::ListEnd, lineEnd);
          file_.ending = Ending::Marker;
          return ends;
        }
      }
      line = lineEnd;
    }
    TakeUpTo(part, fileEnd);
    file_.ending = part == Part::Code ? Ending::Code : Ending::Description;
    return false;
  }

  const char* EndOfLine(const char* line, const char* fileEnd) const {
    const char* from = line;
    for (;;) {
      const auto* lineFeed =
          static_cast<const char*>(std::memchr(from, '\n', static_cast<std::size_t>(fileEnd - from)));
      if (lineFeed == nullptr) return fileEnd;
      if (file_.unixLines || (lineFeed > line && lineFeed[-1] == '\r')) return lineFeed + 1;
      from = lineFeed + 1;
    }
  }

  const char* EndOfText(const char* line, const char* lineEnd) const {
    const bool lineFeed = lineEnd > line && lineEnd[-1] == '\n';
    const char* const end = lineFeed ? lineEnd - 1 : lineEnd;
    const bool afterReturn = end > line && end[-1] == '\r';
    if (lineFeed && !afterReturn && !file_.unixLines)
      return lineEnd;  // at the end of the file, part of its line
    return afterReturn ? end - 1 : end;
  }

  void TakeUpTo(Part part, const char* end) {
    const auto size = static_cast<std::size_t>(end - rest_.data());
    if (size > 0) take_({part, snippet_, rest_.substr(0, size)});
    rest_.remove_prefix(size);
  }

  std::string_view TakeOne(Part part) {
    const std::string_view before = rest_;
    const std::string_view text = TakeLine(rest_, file_.unixLines);
    take_({part, snippet_, before.substr(0, before.size() - rest_.size())});
    return text;
  }

  std::string_view rest_;
  const std::function<void(const PartLines&)>& take_;
  std::string_view listEnd_;
  std::size_t snippet_ = 0;
  ScannedFile file_;
};

}  // namespace

std::string_view TakeLine(std::string_view& rest, bool unixLines) {
  const std::string_view lineEnd = unixLines ? "\n" : kLineEnd;
  const auto end = rest.find(lineEnd);
  std::string_view line = rest.substr(0, end);
  rest.remove_prefix(end == std::string_view::npos ? rest.size() : end + lineEnd.size());
  if ((unixLines || end == std::string_view::npos) && line.ends_with('\r')) line.remove_suffix(1);
  return line;
}

ScannedFile ScanRecords(std::string_view bytes, const std::function<void(const PartLines&)>& take) {
  return Scanner(bytes, take).Scan();
}

}  // namespace snip
