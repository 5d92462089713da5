#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <random>
#include <set>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "history/DraftTimer.h"
#include "history/LibraryKeeper.h"
#include "library/BnsFormat.h"
#include "tests/unit/FakeFiles.h"
#include "tests/unit/Script.h"
#include "ui/history/NoticeQueue.h"

namespace snip::test {
namespace {

using namespace std::chrono_literals;

const std::string kLibrary = "/lib/Strings.bns";
const std::array<std::string, 6> kEvents{"failed", "completed", "unsaved", "outside", "unkept", "whole"};

/// A library that says which one it is, as many bytes of it as are wanted; later ones are longer.
std::string Text(unsigned number, std::optional<unsigned> size = {}) {
  std::string text = WriteBns(std::vector<Snippet>{
      {"New Snippet", "", std::string(number + 1, 'x'), "state " + std::to_string(number)}});
  if (size) text.resize(*size, 'y');
  return text;
}

/// Its number, or the size of one that is not whole.
std::string StateOf(const std::string& text) {
  const std::size_t at = text.find("state ");
  const int number = at == std::string::npos ? 0 : std::atoi(&text[at + 6]);
  return text == Text(static_cast<unsigned>(number)) ? std::to_string(number)
                                                     : "cut" + std::to_string(text.size());
}

/// A library that memory is too short for as a whole.
struct TooLarge : BytesInMemory {
  using BytesInMemory::BytesInMemory;
  std::string ReadRest() override {
    BytesInMemory::ReadRest();
    throw std::bad_alloc();
  }
};

/// A program with a library, other programs, and files that fail when they are told to. A command is a verb,
/// the file it is about - "library", a full path, or a file of the library's history; the open library if it
/// names none - and numbers, most of which are states of a library.
class Scene {
 public:
  explicit Scene(const std::string& library) {
    if (library != "none") (*this)("put library " + library);
    Start();
  }

  std::string operator()(const std::string& commands) {
    for (const std::string& command : Split(commands, ';')) {
      words_ = Split(command, ' ');
      path_ = keeper ? keeper->openPath() : kLibrary;
      n_.clear();
      answer_.clear();
      for (const std::string& word : std::vector(words_.begin() + 1, words_.end())) {
        if (word.find_first_not_of("0123456789") == std::string::npos) {
          n_.push_back(static_cast<unsigned>(std::stoul(word)));
        } else {
          path_ = word == "library" ? kLibrary : word[0] == '/' ? word : History().File(word);
        }
      }
      steps_.at(words_[0])();
    }
    return answer_;
  }

  /// What has been told since it was asked last.
  std::string Events() {
    std::string events = keeper->TakeDraftFailure() ? " undrafted" : "";
    if (!keeper->hasEvents()) return events;
    for (const LibraryEvent& event : keeper->TakeEvents()) {
      events += " " + kEvents.at(static_cast<std::size_t>(event.kind));
      if (event.version) events += " " + StateOf(*History(event.path).Read(*event.version));
      if (event.path != kLibrary) events += " of " + event.path;
    }
    return events;
  }
  /// Whether each of these, which are in order, is in a library or is a version of one.
  bool Holds(const auto& states) {
    std::set<std::string> held;
    for (const auto& [path, bytes] : files.bytes) {
      if (path.starts_with("/lib/")) held.insert(StateOf(bytes));
      if (!path.ends_with("/path.txt")) continue;
      VersionFolder history = History(bytes.substr(0, bytes.size() - 2));
      if (!files.bytes.contains(history.library())) continue;
      for (const Version& version : history.Versions()) held.insert(StateOf(*history.Read(version)));
    }
    return std::ranges::includes(held, states);
  }
  std::string File(const std::string& path = kLibrary) {
    return files.bytes.contains(path) ? StateOf(files.bytes[path]) : "none";
  }

  FakeFiles files;
  std::unique_ptr<LibraryKeeper> keeper;

 private:
  VersionFolder History(const std::string& path = kLibrary) { return {files, "/history", path}; }
  /// The open library | its versions, the newest first ! what has been told.
  void See() {
    answer_ = File(path_) + " |";
    for (const Version& version : History(path_).Versions()) {
      const std::string name = FileNameOf(version);
      answer_ += " " + StateOf(*History(path_).Read(version)) + name.substr(18, name.size() - 22);
    }
    const std::string events = Events();
    if (!events.empty()) answer_ += " !" + events;
  }
  void Start() {
    keeper.reset();
    keeper = std::make_unique<LibraryKeeper>(LibraryKeeper::Parts{
        files, files, "/history", std::identity(), std::identity(), [this] { return limits_; }});
    keeper->Names();
    Open(kLibrary);
    keeper->FindAbandonedDrafts();
  }
  void Open(const std::string& path) {
    if (const auto bytes = keeper->Open(path)) AllBytes(*bytes);
    keeper->OpenedOrSaved(path);
  }
  void Answer(bool done) { answer_ = done ? "done" : "refused"; }
  void WaitForThread() const {
    for (int wait = 0; (keeper->WritesDraft() || keeper->ReadsOutsideChange()) && wait < 5000; ++wait)
      std::this_thread::sleep_for(1ms);
  }

  HistoryLimits limits_;
  NoticeQueue notice_;
  const UtcTime begin_ = files.now;
  std::unique_ptr<LibraryKeeper> first_;
  std::unique_ptr<Held> lock_;
  std::optional<Patience::Limit> ofAnotherThread_;
  std::string path_, answer_;
  std::vector<std::string> words_;
  std::vector<unsigned> n_;
  const std::map<std::string, std::function<void()>> steps_ = {
      {"start", [this] { Start(); }},
      {"second", [this] { keeper.swap(first_), Start(); }},
      {"first", [this] { keeper = std::move(first_); }},
      {"names", [this] { keeper->Names(); }},
      {"open", [this] { Open(path_); }},
      {"save",
       [this] {
         Answer(keeper->Replace(path_, BytesInMemory(Text(n_[0]))));
         if (answer_ == "done") keeper->OpenedOrSaved(path_);
       }},
      {"short", [this] { Answer(keeper->Replace(path_, TooLarge(Text(n_[0])))); }},
      {"create", [this] { Answer(keeper->Create(path_, BytesInMemory(Text(n_[0])))); }},
      {"rename", [this] { Answer(keeper->Rename(keeper->openPath(), path_)); }},
      {"draft", [this] { Answer(keeper->WriteDraft(Text(n_[0]))), WaitForThread(); }},
      {"throw", [this] { Answer(keeper->ThrownAway(BytesInMemory(Text(n_[0])))); }},
      {"look",
       [this] {
         for (unsigned left = n_.empty() ? 4 : n_[0]; left > 0 && keeper->LookForOutsideChange(); --left)
           WaitForThread();
       }},
      {"see", [this] { See(); }},
      {"where", [this] { answer_ = History(path_).path(); }},
      // As another program does, or this one that then ended.
      {"put",
       [this] {
         if (!path_.starts_with("/lib")) files.Write(History().File("path.txt"), kLibrary + "\r\n");
         files.Write(path_, n_.size() == 1 ? Text(n_[0]) : Text(n_[0], n_[1]));
       }},
      // At an hour, and perhaps with that of a file.
      {"keep",
       [this] {
         files.now = begin_ + std::chrono::hours(n_[1]);
         History().Keep(Text(n_[0]), VersionTag::Saved, begin_ + std::chrono::hours(n_.back()));
       }},
      {"limit", [this] { limits_ = {.versions = n_[0], .days = n_[1], .bytes = n_[2]}; }},
      {"prune", [this] { History().Prune(limits_); }},
      {"tidy", [this] { keeper->Prune(); }},
      {"busy", [this] { files.busy.insert(path_); }},
      {"large", [this] { files.tooLarge.insert(path_); }},
      {"lock", [this] { lock_ = files.Lock(History().path()); }},
      {"impatient",
       [this] { std::thread([this] { ofAnotherThread_.emplace(files.patience(), 0ms); }).join(); }},
      {"fail", [this] { files.failFrom = 0; }},
      {"works", [this] { static_cast<Faults&>(files) = {}, lock_.reset(); }},
      {"waited", [this] { answer_ = std::to_string(std::exchange(files.waited, 0ms).count()); }},
      {"tell",
       [this] {
         const auto kind = std::ranges::find(kEvents, words_[1]) - kEvents.begin();
         notice_.Add({{static_cast<LibraryEvent::Kind>(kind), words_[2]}});
       }},
      {"answer", [this] { notice_.Answered(); }},
      {"notice", [this] {
         answer_ = notice_.Update(words_[1], words_.size() > 2 ? words_[2] : "") ? "now " : "still ";
         const auto& told = notice_.told();
         answer_ += told ? kEvents.at(static_cast<std::size_t>(told->kind)) + " " + told->path : "nothing";
       }}};
};

TEST(HistoryTest, KeepsStatesAndTellsWhatHappenedToThem) {
  PlayScripts<Scene>("history.txt");
}

TEST(HistoryTest, WhateverEndsTheProgramOrFailsAtAnyCallNoStateIsLost) {
  enum End { Killed0, Killed40, Killed100, FailsAndEnds, FailsOnce, FailsForEver };
  // What came before, what is done, which states are kept, and what is saved when the program goes on.
  for (const auto& [before, act, kept, memory] : std::vector<std::array<std::string, 4>>{
           {"save 2", "save 3", "1 2", "3"},
           {"put x.tmp 9; rename /lib/New.bns; save 2 library", "save 3", "1 2", "3"},
           {"put pending.new 2; put library 2 9", "start", "2", "4"},
           {"put pending.new 2", "start", "1 2", "4"},
           {"draft 2", "start", "1 2", "4"},
           {"draft 2", "draft 2", "1 2", "2"},
           {"draft 3", "throw 3", "1 3", "3"},
           {"save 2; draft 3", "rename /lib/New.bns", "1 2 3", "3"}}) {
    for (int end = Killed0; end <= FailsForEver; ++end) {
      bool reached = true;
      for (int call = 1; reached; ++call) {
        SCOPED_TRACE(act + " " + std::to_string(call) + " end " + std::to_string(end));
        Scene scene("1");
        FakeFiles& files = scene.files;
        scene(before);
        files.written = std::array{0.0, 0.4, 1.0, 0.0, 0.0, 0.5}.at(static_cast<std::size_t>(end));
        (end <= Killed100 ? files.killAt : files.failFrom) = files.calls + call;
        files.failUntil = end == FailsForEver ? FakeFiles::kNever : files.failFrom;
        bool failed = false;
        try {
          scene(act);
          failed = act == "save 3" && scene.File() != "3";
          if (end <= FailsAndEnds) scene.keeper.reset();
          reached = files.calls >= std::min(files.killAt, files.failFrom);
        } catch (const Killed&) {
        }
        if (end > FailsAndEnds) {
          EXPECT_EQ(scene.Events().starts_with(" failed"), failed);
          scene("works; look");
          EXPECT_EQ(scene.Events(), "") << "what is left of the file is nobody else's";
          scene("save " + memory);
          EXPECT_EQ(scene.File(scene.keeper->openPath()), memory);
          EXPECT_EQ(scene.Events() == " whole", failed);
        }
        scene("works; start");
        EXPECT_TRUE(scene.Holds(Split(kept, ' ')) && (!failed || scene.Holds(Split("3", ' '))));
        EXPECT_TRUE(scene.File()[0] < 'a' || (act[0] == 'r' && scene.File() == "none")) << scene.File();
        EXPECT_LE(scene.keeper->TakeEvents().size(), 1U);
        scene("start");
        EXPECT_EQ(scene.Events(), "") << "told once";
      }
    }
  }
}

TEST(HistoryTest, AFileThatIsCutAtAnyByteIsCompletedOrTouchesNoLibrary) {
  const auto size = static_cast<unsigned>(Text(2).size());
  for (unsigned bytes = 1; bytes <= size + 1; ++bytes) {
    const std::string part = std::to_string(bytes), cut = "cut" + part;
    const auto seen = [&](const std::string& library, const std::string& put) {
      return Scene(library)("put " + put + " 2 " + part + "; start; see");
    };
    EXPECT_EQ(seen("none", "pending.new 2; put library"), bytes < size ? "2 | 2 " + cut + "-cut ! completed"
                                                          : bytes == size ? "2 | 2"
                                                                          : cut + " | 2-unsaved ! unsaved 2");
    for (const std::string library : {"1", "none"}) {
      if (bytes >= size) continue;
      EXPECT_EQ(seen(library, "pending.new"), library + " | " + cut + "-cut");
      EXPECT_EQ(seen(library, "draft.bns"), library + " | " + cut + "-unsaved ! unsaved " + cut);
    }
  }
}

TEST(HistoryTest, NoSequenceOfSavesKillsAndChangesLosesAState) {
  for (unsigned seed = 1; seed <= 20; ++seed) {
    std::mt19937 random(seed);
    Scene scene("0");
    std::string memory = "0";
    std::set states{memory};  // that were in the file, or thrown away
    for (int step = 1; step <= 40; ++step) {
      scene.files.now += std::chrono::minutes(static_cast<int>(random() % 400) - 60);
      const auto what = random() % 5;
      const std::string next = std::to_string(random() % 30);  // often an earlier one, restored
      if (what == 0) scene.files.killAt = scene.files.calls + 1 + static_cast<int>(random() % 9);
      try {
        scene(what == 1   ? "throw " + next
              : what == 2 ? "put library " + next + "; look; throw " + memory + "; open library"
                          : "save " + next);
      } catch (const Killed&) {
      }
      if (what == 0) scene("works; start");
      if (what != 1) memory = what == 0 ? scene.File() : next;
      states.insert(what == 1 ? next : memory);
      ASSERT_TRUE(scene.Holds(states)) << "seed " << seed << " step " << step;
    }
  }
}

TEST(HistoryTest, TheUsersLimitsTakeThePlaceOfTheDefaultOnes) {
  const std::map<std::string, std::string> set{
      {"HistoryVersions", "7"}, {"HistoryDays", "8"}, {"HistoryMegabytes", "9"}};
  const HistoryLimits limits = LimitsFrom([&](const char* name) { return set.at(name); });
  EXPECT_TRUE(limits.versions == 7 && limits.days == 8 && limits.bytes == 9U << 20U);
  const HistoryLimits none = LimitsFrom([&](const char* name) { return set.at(name) + "x"; });
  EXPECT_TRUE(none.versions == 50 && none.days == 30 && none.bytes == 64U << 20U);
}

TEST(HistoryTest, DraftsFollowAPauseAndSteadyWorkNowAndThen) {
  const auto timer = std::make_unique<DraftTimer>();  // GCC warns of one on the stack
  std::vector<std::uint64_t> drafts;
  for (std::uint64_t now = 0; now < 200000; ++now) {
    if (now % 3000 == 1000 && now < 64000) timer->Changed(now);
    if (timer->Due(now)) drafts.push_back(now), timer->Done();
  }
  EXPECT_EQ(drafts, (std::vector<std::uint64_t>{58000, 69000}));
}

}  // namespace
}  // namespace snip::test
