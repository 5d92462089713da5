#include "library/BnsScanner.h"

#include "library/LineEndings.h"

namespace snip {

using namespace bns;

void BnsEvents::OnPlainLines(BnsSection section, std::string_view lines) {
  while (!lines.empty()) {
    const std::size_t length = lines.find(kCrLf);
    OnLine(section, lines.substr(0, length), lines.substr(0, length + kCrLf.size()));
    lines.remove_prefix(length + kCrLf.size());
  }
}

BnsScanner::BnsScanner(ByteSource& bytes) : lines_(bytes) {
  firstLine_ = lines_.NextOrEmpty();
  lineInFile_ = lines_.SinceMark();
  if (EqualsIgnoringAsciiCase(firstLine_, kVersion1)) version_ = BnsVersion::Version1;
  if (EqualsIgnoringAsciiCase(firstLine_, kVersion2)) version_ = BnsVersion::Version2;
  if (version_ == BnsVersion::Version1) listEnd_ = kListEndV1;
}

BnsEnding BnsScanner::Scan(BnsEvents& events) {
  events_ = &events;
  events.OnLine(BnsSection::FirstLine, firstLine_, lineInFile_);
  if (lines_.AtEnd()) return BnsEnding::FirstLine;
  for (bool first = true;; first = false) {
    if (lines_.AtEnd()) return BnsEnding::FileEndTooEarly;
    Mark();
    const std::string_view line = lines_.Next();
    const bool listEnds = IsMarker(line, listEnd_);
    events.OnLine(listEnds ? BnsSection::ListEnd : BnsSection::Name, line, lines_.SinceMark());
    if (listEnds) return first ? BnsEnding::ListEnd : BnsEnding::ListEndTooEarly;
    if (version_ == BnsVersion::Version1) {
      ScanLine(BnsSection::Description);
      if (!ScanBlock(BnsSection::Code, BnsSection::CodeEnd, kCodeEndV1)) return ending_;
    } else {
      ScanLine(BnsSection::Attachment);
      if (!ScanBlock(BnsSection::Description, BnsSection::DescriptionEnd, kDescriptionEnd)) return ending_;
      if (!ScanBlock(BnsSection::Code, BnsSection::CodeEnd, kCodeEnd)) return ending_;
    }
  }
}

void BnsScanner::Mark() {
  lines_.Mark();
  lineNumber_ = lines_.lineNumber();
}

void BnsScanner::ScanLine(BnsSection section) {
  if (lines_.AtEnd()) return;
  Mark();
  const std::string_view line = lines_.Next();
  events_->OnLine(section, line, lines_.SinceMark());
}

bool BnsScanner::ScanBlock(BnsSection section, BnsSection endSection, std::string_view marker) {
  constexpr std::size_t manyBytes = std::size_t{1} << 15U;
  std::size_t plain = 0;  // size of the plain lines since the mark
  const auto reportPlain = [&] {
    if (plain > 0) events_->OnPlainLines(section, lines_.SinceMark().substr(0, plain));
    plain = 0;
  };
  Mark();
  while (!lines_.AtEnd()) {
    const std::size_t lineNumber = lines_.lineNumber();
    const std::string_view line = lines_.Next();
    const std::string_view sinceMark = lines_.SinceMark();
    const bool ends = IsMarker(line, marker);
    const bool listEnds = !ends && IsMarker(line, listEnd_);
    const bool text = !ends && !listEnds;
    if (text && !line.ends_with(' ') && sinceMark.size() == plain + line.size() + kCrLf.size()) {
      plain = sinceMark.size();
      if (plain < manyBytes) continue;
      reportPlain();
    } else {
      const std::string_view lineInFile = sinceMark.substr(plain);
      reportPlain();
      lineNumber_ = lineNumber;
      events_->OnLine(text ? section : ends ? endSection : BnsSection::ListEnd, line, lineInFile);
      if (ends) return true;
      ending_ = BnsEnding::ListEnd;
      if (listEnds) return false;
    }
    Mark();
  }
  reportPlain();
  ending_ = section == BnsSection::Code ? BnsEnding::InCode : BnsEnding::InDescription;
  return false;
}

}  // namespace snip
