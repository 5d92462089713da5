// Reading and writing library files natively. Prints report lines for ./bench.
//   library_bench FOLDER      measures, with generated libraries in FOLDER
//   library_bench --peak FILE reads one library and prints the most memory that it took

#include <fcntl.h>
#include <malloc.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <cstring>
#include <ctime>
#include <fstream>
#include <iostream>
#include <memory>
#include <span>
#include <string>
#include <variant>

#include "benches/Comparison.h"
#include "benches/GeneratedLibrary.h"
#include "find/Finder.h"
#include "history/SafeSave.h"
#include "history/SystemFiles.h"
#include "library/BnsFormat.h"
#include "library/LibraryMerge.h"

namespace snip::bench {
namespace {

constexpr int kRuns = 21;
constexpr Limit kReadLimit{2.5, "opening has to feel like reading the file"};
constexpr Limit kWriteLimit{2, "saving has to feel like writing the file"};
constexpr Limit kMergeLimit{3, "merging has to feel like copying the files"};
constexpr Limit kFindLimit{3, "the list has to follow the typing"};
constexpr Limit kSaveLimit{2.5, "a history may not make the user wait"};
constexpr int kDraftedCount = 10000;
constexpr double kPeakPerFile = 1.5;
constexpr double kPeakFixedMb = 16;
constexpr double kMb = 1 << 20;

void Require(bool done, const char* what) {
  if (done) return;
  std::cerr << "library_bench: " << what << ": " << std::strerror(errno) << '\n';
  std::exit(1);
}

/// The processor's time for a work in this process and, for it, in the system. The files lie in memory, so
/// that nothing has to be waited for; other programs on the machine do not count.
template <class Work>
double ProcessorMilliseconds(Work&& work) {
  const auto now = [] {
    timespec time{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_nsec) / 1e6;
  };
  const double start = now();
  work();
  return now() - start;
}

/// An open file.
class File : public ByteSource {
 public:
  File(const std::string& path, int flags) : descriptor_(open(path.c_str(), flags, 0644)) {
    Require(descriptor_ >= 0, path.c_str());
  }
  ~File() override { close(descriptor_); }
  File(const File&) = delete;
  File& operator=(const File&) = delete;

  std::size_t Size() const {
    struct stat status {};
    fstat(descriptor_, &status);
    return static_cast<std::size_t>(status.st_size);
  }
  std::size_t Read(std::span<char> room) override {
    const ssize_t got = read(descriptor_, room.data(), room.size());
    Require(got >= 0, "read");
    return static_cast<std::size_t>(got);
  }
  bool Failed() const override { return false; }
  void Write(std::string_view bytes) const {
    Require(write(descriptor_, bytes.data(), bytes.size()) == static_cast<ssize_t>(bytes.size()), "write");
  }

 private:
  int descriptor_;
};

BnsContents ReadLibrary(const std::string& path) {
  File file(path, O_RDONLY);
  auto result = ReadBns(file);
  return std::get<BnsContents>(std::move(result));
}

/// A file's bytes, and how many line endings are in them.
struct Lines {
  std::unique_ptr<char[]> bytes;
  std::size_t count = 0;
};

/// Reads the same bytes and finds every line ending.
Lines FindLines(const std::string& path) {
  File file(path, O_RDONLY);
  const std::size_t size = file.Size();
  Lines lines{std::unique_ptr<char[]>(new char[size])};
  Require(file.Read({lines.bytes.get(), size}) == size, "short read");
  const char* const end = lines.bytes.get() + size;
  for (const char* at = lines.bytes.get(); at < end; ++lines.count) {
    const void* lineEnding = std::memchr(at, '\n', static_cast<std::size_t>(end - at));
    if (lineEnding == nullptr) break;
    at = static_cast<const char*>(lineEnding) + 1;
  }
  Require(lines.count > 0, "no lines");
  return lines;
}

void WriteLibrary(const std::string& path, std::span<const Snippet> snippets) {
  const File file(path, O_WRONLY | O_CREAT | O_TRUNC);
  BnsBytes bytes(snippets);
  const std::unique_ptr<char[]> piece(new char[ByteSource::kWrittenPiece]);
  while (const std::size_t got = bytes.Read({piece.get(), ByteSource::kWrittenPiece}))
    file.Write({piece.get(), got});
}

void WriteBytes(const std::string& path, std::string_view bytes) {
  const File file(path, O_WRONLY | O_CREAT | O_TRUNC);
  file.Write(bytes);
}

/// Reads a library, as the only thing that this process does, and prints the most memory that it ever had.
int PrintPeakOfReading(const std::string& path) {
  const std::size_t count = ReadLibrary(path).snippets.size();
  std::ifstream status("/proc/self/status");
  const std::string field = "VmHWM:";
  std::string word;
  while (status >> word && word != field) {
  }
  double peakKb = 0;
  Require(static_cast<bool>(status >> peakKb), "no peak memory");
  const double fileMb = static_cast<double>(File(path, O_RDONLY).Size()) / kMb;
  PrintValue("peak memory of reading, " + std::to_string(count) + " snippets", peakKb * 1024 / kMb,
             Limit{kPeakPerFile * fileMb + kPeakFixedMb, "a library is held once, not twice"}, "MB");
  return 0;
}

void RunAlone(const std::string& program, const std::string& option, const std::string& argument) {
  const pid_t child = fork();
  Require(child >= 0, "fork");
  if (child == 0) {
    execl(program.c_str(), program.c_str(), option.c_str(), argument.c_str(), nullptr);
    _exit(127);
  }
  int status = 0;
  Require(waitpid(child, &status, 0) == child && status == 0, "a process of its own");
}

/// A version of a library: some snippets renamed, removed, added and moved, and many changed.
std::vector<Snippet> ChangedVersion(std::vector<Snippet> snippets, std::size_t changeEach, bool atEnd) {
  for (std::size_t i = changeEach; i < snippets.size(); i += changeEach) {
    std::string& code = snippets[i].Code;
    code = atEnd ? code + "\r\n' changed" : "' changed\r\n" + code;
    if (i % 100 == 0) snippets[i].Name += " renamed";
    if (i % 210 == 0) snippets[i].Name = "Added";
    if (i % 501 == 0) std::swap(snippets[i], snippets[i / 2]);
  }
  return snippets;
}

/// Merging two versions of a library, beside reading the three files and writing one.
void MeasureMerge(const std::string& path, const std::vector<Snippet>& snippets, const std::string& suffix) {
  WriteLibrary(path + ".ours", ChangedVersion(snippets, 2, true));
  WriteLibrary(path + ".theirs", ChangedVersion(snippets, 3, false));
  const auto merge = [&](bool merging) {
    BnsContents versions[3];
    MergedLibrary merged;
    return ProcessorMilliseconds([&] {
      versions[0] = ReadLibrary(path);
      versions[1] = ReadLibrary(path + ".ours");
      versions[2] = ReadLibrary(path + ".theirs");
      if (merging) {
        merged = MergeLibraries(versions[0].snippets, versions[1].snippets, versions[2].snippets);
      }
      WriteLibrary(path + ".merged", merging ? merged.snippets : versions[0].snippets);
    });
  };
  PrintRatio("merge libraries" + suffix,
             Compare(
                 kRuns, [&] { return merge(true); }, [&] { return merge(false); }),
             kMergeLimit);
}

/// A word that no snippet has, beside a pass of memchr through the same bytes.
void MeasureFind(const std::vector<Snippet>& snippets, const std::string& suffix) {
  const Folding folding = Folding::Utf8();
  Finder finder(folding);
  const auto library = std::make_shared<SearchedLibrary>("", "", &snippets, folding);
  const auto find = [&] {
    finder.SetLibraries({library});  // not narrower than the search before
    return ProcessorMilliseconds([&] { Require(finder.Search("zfindz").empty(), "nothing to find"); });
  };
  const auto pass = [&] {
    return ProcessorMilliseconds([&] {
      for (const Snippet& snippet : snippets) {
        for (const std::string* text : {&snippet.Name, &snippet.Description, &snippet.Code})
          Require(std::memchr(text->data(), '\1', text->size()) == nullptr, "a byte that is not there");
      }
    });
  };
  PrintRatio("find a word" + suffix, Compare(kRuns, find, pass), kFindLimit);
}

/// Saving with a history, as the program does, beside one write of the same bytes that waits for the disk.
void MeasureSave(const std::string& path, const std::vector<Snippet>& snippets, const std::string& suffix) {
  SystemFiles files;
  VersionFolder history(files, path + ".history", path + ".saved");
  std::optional<KnownContent> known;
  std::vector<Snippet> changed = snippets;
  const auto save = [&] {
    history.Prune({});  // which nobody waits for
    changed.front().Description += "x";
    return Milliseconds([&] {
      const std::string bytes = WriteBns(changed);
      const SaveOutcome outcome = SaveSafely(
          files, history, bytes,
          [&](std::string_view text) {
            files.Remove(history.library());
            return files.Write(history.library(), text);
          },
          &known);
      Require(outcome.written && outcome.kept, "saving");
    });
  };
  const std::string bytes = WriteBns(snippets);
  const auto write = [&] {
    return Milliseconds([&] { Require(files.Write(path + ".flushed", bytes), "a flushed write"); });
  };
  PrintRatio("save with a history" + suffix, Compare(kRuns, save, write), kSaveLimit);
  PrintValue("copy for a draft" + suffix,
             Median({ProcessorMilliseconds([&] { WriteBns(snippets); }),
                     ProcessorMilliseconds([&] { WriteBns(snippets); }),
                     ProcessorMilliseconds([&] { WriteBns(snippets); })}),
             {}, "ms");
}

void Measure(const std::string& program, const std::string& folder, int count) {
  const std::string suffix = ", " + std::to_string(count) + " snippets";
  const std::string path = folder + "/" + std::to_string(count) + ".bns";
  const auto snippets = GeneratedSnippets(count);
  const std::string bytes = WriteBns(snippets);
  WriteBytes(path, bytes);
  Require(ReadLibrary(path).snippets == snippets, "what was read is not what was written");

  const Comparison reading = Compare(
      kRuns,
      [&] {
        BnsContents contents;  // let go when the time has been taken
        return ProcessorMilliseconds([&] { contents = ReadLibrary(path); });
      },
      [&] {
        Lines lines{};
        return ProcessorMilliseconds([&] { lines = FindLines(path); });
      });
  PrintRatio("read a library" + suffix, reading, kReadLimit);

  RunAlone(program, "--peak", path);

  const Comparison writing = Compare(
      kRuns, [&] { return ProcessorMilliseconds([&] { WriteLibrary(path + ".new", snippets); }); },
      [&] { return ProcessorMilliseconds([&] { WriteBytes(path + ".reference", bytes); }); });
  PrintRatio("write a library" + suffix, writing, kWriteLimit);

  MeasureMerge(path, snippets, suffix);
  MeasureFind(snippets, suffix);
  if (count == kDraftedCount) MeasureSave(path, snippets, suffix);
}

int Main(std::span<char*> arguments) {
  if (arguments.size() == 3 && std::string_view(arguments[1]) == "--peak") {
    return PrintPeakOfReading(arguments[2]);
  }
  if (arguments.size() != 2) {
    std::cerr << "usage: library_bench FOLDER\n";
    return 2;
  }
  // Memory that was let go is had anew from the system each time, as by a program that opens its first
  // library.
  mallopt(M_MMAP_THRESHOLD, 1 << 17);
  for (const int count : kLibrarySizes) Measure(arguments[0], arguments[1], count);
  return 0;
}

}  // namespace
}  // namespace snip::bench

int main(int count, char** arguments) {
  return snip::bench::Main({arguments, static_cast<std::size_t>(count)});
}
