#include "library/BnsFormat.h"

#include <array>
#include <utility>

#include "library/LineEndings.h"
#include "platform/Text.h"

namespace snip {
namespace {

using namespace bns;

void DropLastLineEnding(std::string& text) {
  if (text.size() >= kCrLf.size()) text.resize(text.size() - kCrLf.size());
}

/// Makes snippets of a file's lines.
class Reader : public BnsEvents {
 public:
  /// Without `take` the snippets are put into the contents.
  Reader(BnsVersion version, const std::function<void(const Snippet&)>& take) : take_(take) {
    contents_.version = version;
  }

  void OnLine(BnsSection section, std::string_view line, std::string_view /*lineInFile*/) override {
    const bool version1 = contents_.version == BnsVersion::Version1;
    if (section == BnsSection::Name) {
      AddSnippet();
      snippet_.Name = line;
      reading_ = true;
    } else if (section == BnsSection::Attachment) {
      snippet_.Attachment = line;
    } else if (section == BnsSection::Description && version1) {
      snippet_.Description = line;
    } else if (section == BnsSection::Description || section == BnsSection::Code) {
      BlockOf(section).append(TrimRight(line)).append(kCrLf);
    }
  }

  void OnPlainLines(BnsSection section, std::string_view lines) override { BlockOf(section).append(lines); }

  BnsContents Finish(BnsEnding ending) {
    // The last snippet loses its own line endings and one more of each, as it did in all earlier versions.
    if (ending == BnsEnding::ListEndTooEarly) DropLastLineEndings(snippet_);
    AddSnippet();
    // The announced snippet is there, but empty.
    if (ending == BnsEnding::FileEndTooEarly) AddSnippet();
    return std::move(contents_);
  }

 private:
  std::string& BlockOf(BnsSection section) {
    return section == BnsSection::Code ? snippet_.Code : snippet_.Description;
  }

  void DropLastLineEndings(Snippet& snippet) const {
    DropLastLineEnding(snippet.Code);
    if (contents_.version == BnsVersion::Version2) DropLastLineEnding(snippet.Description);
  }

  void AddSnippet() {
    if (!reading_) return;
    if (count_ < Library::kMaxSnippets) {
      ++count_;
      DropLastLineEndings(snippet_);
      take_ ? take_(snippet_) : contents_.snippets.push_back(snippet_);
    } else {
      ++contents_.omitted;
    }
    snippet_.Name.clear();
    snippet_.Attachment.clear();
    snippet_.Description.clear();
    snippet_.Code.clear();
  }

  const std::function<void(const Snippet&)>& take_;
  BnsContents contents_;
  std::size_t count_ = 0;
  // Every snippet is read into this one, whose strings keep their capacity, and then copied.
  Snippet snippet_;
  bool reading_ = false;  ///< Whether there is a snippet to be added.
};

}  // namespace

BnsResult ReadBns(ByteSource& bytes, const std::function<void(const Snippet&)>& take) {
  BnsScanner scanner(bytes);
  if (scanner.empty()) return bytes.Failed() ? NotALibrary::Unreadable : NotALibrary::NoFirstLine;
  if (!scanner.version()) return NotALibrary::UnknownFirstLine;
  Reader reader(*scanner.version(), take);
  BnsContents contents = reader.Finish(scanner.Scan(reader));
  if (bytes.Failed()) return NotALibrary::Unreadable;
  return contents;
}

BnsResult ReadBns(ByteSource& bytes) {
  return ReadBns(bytes, {});
}

BnsResult ReadBns(std::string_view bytes) {
  BytesInMemory source(bytes);
  return ReadBns(source);
}

std::vector<Snippet> SnippetsIn(std::string_view bytes) {
  BnsResult read = ReadBns(bytes);
  auto* contents = std::get_if<BnsContents>(&read);
  return contents == nullptr ? std::vector<Snippet>() : std::move(contents->snippets);
}

/// Fills `parts_` with what follows: the first line, a snippet, the end of the list; false after the last.
bool BnsBytes::TakeNext() {
  std::size_t count = 0;
  const auto add = [&](std::string_view item) {
    parts_[count++] = item;
    parts_[count++] = kCrLf;
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

std::size_t BnsBytes::Size() const {
  const auto line = [](std::string_view item) { return item.size() + kCrLf.size(); };
  std::size_t size = line(kVersion2) + line(kListEnd);
  for (const Snippet& snippet : snippets_) {
    size += line(snippet.Name) + line(snippet.Attachment) + line(snippet.Description) +
            line(kDescriptionEnd) + line(snippet.Code) + line(kCodeEnd);
  }
  return snippets_.empty() ? size : size - line(kCodeEnd);
}

/// Appends the parts directly, because memory that is resized first would be written twice.
std::string BnsBytes::ReadRest() {
  std::string bytes;
  bytes.reserve(Size());
  do {
    for (const std::string_view part : ahead_) bytes += part;
  } while (TakeNext());
  return bytes;
}

std::string WriteBns(std::span<const Snippet> snippets) {
  return BnsBytes(snippets).ReadRest();
}

std::string NewLibraryBns() {
  const Snippet first = DefaultSnippet();
  return WriteBns({&first, 1});
}

}  // namespace snip
