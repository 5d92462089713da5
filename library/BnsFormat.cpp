#include "library/BnsFormat.h"

#include <algorithm>
#include <array>
#include <utility>

#include "library/BnsMarkers.h"
#include "library/LineReader.h"
#include "platform/Text.h"

namespace snip {
namespace {

using namespace bns;

enum class BlockEnd {
  Marker,  ///< The block's own end marker: the record goes on, or another follows.
  List,    ///< The end of the list, or of the file, which is taken for it.
};

/// Reads lines into `text` until `marker` or the end of the list, each without blanks at its end and with CR
/// LF behind it.
BlockEnd ReadBlock(LineReader& lines, std::string& text, std::string_view marker, std::string_view listEnd) {
  // Lines mostly stand in the file as they are kept, and to copy many at once is quicker.
  constexpr std::size_t manyBytes = std::size_t{1} << 15U;
  std::size_t same = 0;  // how many bytes behind the mark are such lines
  lines.Mark();
  const auto take = [&] {
    text.append(lines.SinceMark().substr(0, same));
    lines.Mark();
    same = 0;
  };
  BlockEnd end = BlockEnd::List;
  while (!lines.AtEnd()) {
    const std::string_view line = lines.Next();
    if (IsMarker(line, marker)) {
      end = BlockEnd::Marker;
      break;
    }
    if (IsMarker(line, listEnd)) break;
    const std::size_t sinceMark = lines.SinceMark().size();
    if (!line.ends_with(' ') && sinceMark == same + line.size() + kLineEnd.size()) {
      same = sinceMark;
      if (same >= manyBytes) take();
    } else {
      take();
      text.append(TrimRight(line)).append(kLineEnd);
    }
  }
  take();
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

  // Every record is read into the same one, whose texts have become long enough soon, and copied in its size.
  Snippet record;
  const auto add = [&] {
    if (contents.snippets.size() < Library::kMaxSnippets) {
      contents.snippets.push_back(record);
    } else {
      ++contents.omitted;
    }
  };
  const std::string_view listEnd = version == BnsVersion::Version1 ? kListEndV1 : kListEnd;
  for (;;) {
    record.Name.clear();
    record.Attachment.clear();
    record.Description.clear();
    record.Code.clear();
    if (lines.AtEnd()) {
      // The file promised another record and stops: the record stays, empty.
      add();
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
    add();
    if (end == BlockEnd::List) return contents;
  }
}

}  // namespace

BnsResult ReadBns(ByteSource& bytes) {
  LineReader lines(bytes);
  if (lines.AtEnd()) return bytes.Failed() ? NotALibrary::Unreadable : NotALibrary::NoFirstLine;
  const std::string_view firstLine = lines.Next();
  const bool version1 = EqualsIgnoringAsciiCase(firstLine, kVersion1);
  if (!version1 && !EqualsIgnoringAsciiCase(firstLine, kVersion2)) return NotALibrary::UnknownFirstLine;
  BnsContents contents = ReadRecords(lines, version1 ? BnsVersion::Version1 : BnsVersion::Version2);
  if (bytes.Failed()) return NotALibrary::Unreadable;
  return contents;
}

BnsResult ReadBns(std::string_view bytes) {
  BytesInMemory source(bytes);
  return ReadBns(source);
}

/// Takes up what follows: the first line, a snippet, the end of the list; false when there is nothing more.
bool BnsBytes::TakeNext() {
  std::size_t count = 0;
  const auto add = [&](std::string_view item) {
    parts_[count++] = item;
    parts_[count++] = kLineEnd;
  };
  const std::size_t step = step_++;
  if (step == 0) {
    add(kVersion2);
  } else if (step <= snippets_.size()) {
    const Snippet& snippet = snippets_[step - 1];
    for (const std::string_view item :
         {std::string_view(snippet.Name), std::string_view(snippet.Attachment),
          std::string_view(snippet.Description), kDescriptionEnd, std::string_view(snippet.Code)}) {
      add(item);
    }
    if (step < snippets_.size()) add(kCodeEnd);
  } else if (step == snippets_.size() + 1) {
    add(kListEnd);
  }
  ahead_ = std::span(parts_).first(count);
  return count > 0;
}

std::size_t BnsBytes::Read(std::span<char> room) {
  std::size_t filled = 0;
  while (filled < room.size() && (!ahead_.empty() || TakeNext())) {
    std::string_view& part = ahead_.front();
    const std::size_t got = part.copy(room.data() + filled, room.size() - filled);
    filled += got;
    part.remove_prefix(got);
    if (part.empty()) ahead_ = ahead_.subspan(1);
  }
  return filled;
}

std::string WriteBns(std::span<const Snippet> snippets) {
  std::string bytes;
  BnsBytes source(snippets);
  std::array<char, 4096> piece;
  while (const std::size_t got = source.Read(piece)) bytes.append(piece.data(), got);
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
