#include "library/BnsFormat.h"

#include <algorithm>
#include <optional>
#include <utility>

#include "library/BnsMarkers.h"
#include "platform/Text.h"

namespace snip {
namespace {

using namespace bns;

/// Takes a text apart into lines.
class LineReader {
 public:
  LineReader(std::string_view text, bool unixLines) : rest_(text), lineEnd_(unixLines ? "\n" : kLineEnd) {}

  bool AtEnd() const { return rest_.empty(); }

  /// The next line without its line end; the last one need not have any. Not to be called at the end.
  std::string_view Next() {
    const auto end = rest_.find(lineEnd_);
    std::string_view line = rest_.substr(0, end);
    rest_.remove_prefix(end == std::string_view::npos ? rest_.size() : end + lineEnd_.size());
    const bool mixed = unixLines() && line.ends_with('\r');  // a CR LF in a file that was edited elsewhere
    if (mixed) line.remove_suffix(1);
    return line;
  }

  std::string_view NextOrEmpty() { return AtEnd() ? std::string_view{} : Next(); }

  /// What has not been read yet; a block of lines is the difference between two of these.
  std::string_view rest() const { return rest_; }
  bool unixLines() const { return lineEnd_ != kLineEnd; }

 private:
  std::string_view rest_;
  std::string_view lineEnd_;
};

/// The lines of `raw`, each without blanks at its end and with CR LF behind it.
std::string BlockText(std::string_view raw, bool unixLines) {
  const bool asInMemory =
      !unixLines && raw.ends_with(kLineEnd) && raw.find(" \r\n") == std::string_view::npos;
  if (asInMemory) return std::string(raw);

  std::string text;
  text.reserve(raw.size() + kLineEnd.size());
  LineReader lines(raw, unixLines);
  while (!lines.AtEnd()) text.append(TrimRight(lines.Next())).append(kLineEnd);
  return text;
}

enum class BlockEnd {
  Marker,  ///< The block's own end marker: the record goes on, or another follows.
  List,    ///< The end of the list, or of the file, which is taken for it.
};

/// Reads lines into `text` until `marker` or the end of the list.
BlockEnd ReadBlock(LineReader& lines, std::string& text, std::string_view marker, std::string_view listEnd) {
  const std::string_view block = lines.rest();
  std::size_t length = 0;
  BlockEnd end = BlockEnd::List;
  while (!lines.AtEnd()) {
    length = block.size() - lines.rest().size();
    const std::string_view line = lines.Next();
    if (IsMarker(line, marker)) {
      end = BlockEnd::Marker;
      break;
    }
    if (IsMarker(line, listEnd)) break;
    length = block.size() - lines.rest().size();
  }
  text = BlockText(block.substr(0, length), lines.unixLines());
  return end;
}

void DropLastLineEnd(std::string& text) {
  if (text.size() >= kLineEnd.size()) text.resize(text.size() - kLineEnd.size());
}

void DropLastLineEnds(Snippet& snippet, BnsVersion version) {
  DropLastLineEnd(snippet.Code);
  if (version == BnsVersion::Version2) DropLastLineEnd(snippet.Description);
}

/// Reads one record, the name already being known.
BlockEnd ReadRecord(LineReader& lines, Snippet& record, BnsVersion version) {
  if (version == BnsVersion::Version1) {
    record.Description = lines.NextOrEmpty();
    return ReadBlock(lines, record.Code, kCodeEndV1, kListEndV1);
  }
  record.Attachment = lines.NextOrEmpty();
  const BlockEnd descriptionEnd = ReadBlock(lines, record.Description, kDescriptionEnd, kListEnd);
  if (descriptionEnd == BlockEnd::List) return BlockEnd::List;
  return ReadBlock(lines, record.Code, kCodeEnd, kListEnd);
}

/// Reads the records that follow the first line.
BnsContents ReadRecords(LineReader& lines, BnsVersion version) {
  BnsContents contents{.version = version, .snippets = {}, .omitted = 0};
  if (lines.AtEnd()) return contents;

  const auto add = [&](Snippet&& record) {
    if (contents.snippets.size() < Library::kMaxSnippets) {
      contents.snippets.push_back(std::move(record));
    } else {
      ++contents.omitted;
    }
  };
  const std::string_view listEnd = version == BnsVersion::Version1 ? kListEndV1 : kListEnd;
  for (;;) {
    Snippet record;
    if (lines.AtEnd()) {
      // The file promised another record and stops: the record stays, empty.
      add(std::move(record));
      return contents;
    }
    const std::string_view line = lines.Next();
    if (IsMarker(line, listEnd)) {
      // The list ends where a record was promised. The end of a list takes the last line end off the last
      // record, and so a second time off this one, which lost its own when it ended: files that end this way
      // keep reading as they always did.
      if (contents.omitted == 0 && !contents.snippets.empty()) {
        DropLastLineEnds(contents.snippets.back(), version);
      }
      return contents;
    }
    record.Name = line;
    const BlockEnd end = ReadRecord(lines, record, version);
    DropLastLineEnds(record, version);
    add(std::move(record));
    if (end == BlockEnd::List) return contents;
  }
}

}  // namespace

std::variant<BnsContents, NotALibrary> ReadBns(std::string_view bytes) {
  LineReader lines(bytes, HasUnixLines(bytes));
  if (lines.AtEnd()) return NotALibrary::NoFirstLine;
  const std::string_view firstLine = lines.Next();
  if (EqualsIgnoringAsciiCase(firstLine, kVersion1)) return ReadRecords(lines, BnsVersion::Version1);
  if (EqualsIgnoringAsciiCase(firstLine, kVersion2)) return ReadRecords(lines, BnsVersion::Version2);
  return NotALibrary::UnknownFirstLine;
}

std::string WriteBns(std::span<const Snippet> snippets) {
  constexpr std::size_t markersPerSnippet = kDescriptionEnd.size() + kCodeEnd.size() + 6 * kLineEnd.size();
  std::size_t size = kVersion2.size() + kListEnd.size() + 2 * kLineEnd.size();
  for (const Snippet& snippet : snippets) {
    size += snippet.Name.size() + snippet.Attachment.size() + snippet.Description.size() +
            snippet.Code.size() + markersPerSnippet;
  }
  std::string bytes;
  bytes.reserve(size);
  const auto writeItem = [&](std::string_view item) { bytes.append(item).append(kLineEnd); };

  writeItem(kVersion2);
  for (const Snippet& snippet : snippets) {
    writeItem(snippet.Name);
    writeItem(snippet.Attachment);
    writeItem(snippet.Description);
    writeItem(kDescriptionEnd);
    writeItem(snippet.Code);
    if (&snippet != &snippets.back()) writeItem(kCodeEnd);
  }
  writeItem(kListEnd);
  return bytes;
}

bool ReadsBackWhole(std::span<const Snippet> snippets) {
  const auto result = ReadBns(WriteBns(snippets));
  const auto* again = std::get_if<BnsContents>(&result);
  return again != nullptr && std::equal(again->snippets.begin(), again->snippets.end(), snippets.begin(),
                                        snippets.end(), [](const Snippet& a, const Snippet& b) {
                                          // Only the last line of a text can still have blanks at its end.
                                          return a.Name == b.Name && a.Attachment == b.Attachment &&
                                                 TrimRight(a.Code) == TrimRight(b.Code) &&
                                                 TrimRight(a.Description) == TrimRight(b.Description);
                                        });
}

bool EndsSnippetList(std::string_view name) {
  return IsMarker(name, kListEnd);
}

std::string NewLibraryBns() {
  const Snippet first = DefaultSnippet();
  return WriteBns({&first, 1});
}

}  // namespace snip
