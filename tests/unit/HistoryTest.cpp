#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <random>
#include <set>
#include <string>
#include <thread>
#include <vector>

#include "history/DraftTimer.h"
#include "history/LibraryKeeper.h"
#include "library/BnsFormat.h"
#include "tests/unit/FakeFiles.h"
#include "ui/history/NoticeQueue.h"

namespace snip::test {
namespace {

using namespace std::chrono_literals;
using Kind = LibraryEvent::Kind;

const std::string kLib = "/lib/Strings.bns";

/// A library that says which one it is; later ones are longer.
std::string Text(int number) {
  Snippet snippet = DefaultSnippet();
  snippet.Description = "state " + std::to_string(number);
  snippet.Code = std::string(static_cast<std::size_t>(number) + 1, 'x');
  return WriteBns(std::vector{snippet});
}

class HistoryTest : public testing::Test {
 protected:
  FakeFiles files;
  FakeFolder folder{files};
  std::string offered;  ///< The contents of the version that was told last.
  std::unique_ptr<LibraryKeeper> keeper = Program();

  std::unique_ptr<LibraryKeeper> Program() {
    const auto same = [](const std::string& path) { return path; };
    return std::make_unique<LibraryKeeper>(
        LibraryKeeper::Parts{folder, files, "/history", same, same, [] { return HistoryLimits(); }});
  }
  /// The program starts, or starts again after its end, and opens the library. Its events in words.
  std::vector<Kind> Start() {
    keeper.reset();  // a draft may be being written
    files.killAt = files.failFrom = FakeFiles::kNever;
    Begin();
    return Events();
  }
  void Begin() {
    keeper.reset();
    keeper = Program();
    keeper->Names();
    Load();
    keeper->FindAbandonedDrafts();
  }
  /// Until there is nothing more to be seen.
  void Look() {
    int looks = 0;
    while (keeper->LookForOutsideChange()) ASSERT_LT(++looks, 50);
  }
  void Load() {
    if (const auto bytes = keeper->Open(kLib)) AllBytes(*bytes);
    keeper->OpenedOrSaved(kLib);
  }
  bool Save(const std::string& bytes) {
    const bool done = keeper->Replace(kLib, BytesInMemory(bytes));
    if (done) keeper->OpenedOrSaved(kLib);
    return done;
  }
  void Draft(const std::string& bytes) {
    const std::string draft = keeper->HistoryOf(keeper->openPath()).File("draft.bns");
    BeginDraft(bytes);
    for (int wait = 0; files.Read(draft) != bytes; ++wait) {
      ASSERT_LT(wait, 5000);
      std::this_thread::sleep_for(1ms);
    }
  }
  void BeginDraft(const std::string& bytes) {
    while (!keeper->WriteDraft(bytes)) continue;  // until the one before is written
  }
  std::vector<Kind> Events() {
    std::vector<Kind> kinds;
    for (const LibraryEvent& event : keeper->TakeEvents()) {
      kinds.push_back(event.kind);
      if (event.version) offered = *keeper->HistoryOf(event.path).Read(*event.version);
    }
    return kinds;
  }
  std::string File() const { return files.bytes.contains(kLib) ? files.bytes.at(kLib) : "missing"; }
  /// The tags and contents of the versions, the newest first.
  std::vector<std::pair<VersionTag, std::string>> Kept() const {
    VersionFolder history = keeper->HistoryOf(kLib);
    std::vector<std::pair<VersionTag, std::string>> kept;
    for (const Version& version : history.Versions()) kept.emplace_back(version.tag, *history.Read(version));
    return kept;
  }
  bool Keeps(const std::string& bytes) const { return keeper->HistoryOf(kLib).Keeps(bytes); }
  std::string Pending() const { return keeper->HistoryOf(kLib).File("pending.new"); }
};

TEST_F(HistoryTest, AVersionsFileNameTellsItAndNothingElseIsAVersion) {
  const UtcTime time = std::chrono::sys_days(std::chrono::year(2024) / 2 / 29) + 23h + 59min + 58s + 7ms;
  for (const auto& [tag, name] : {std::pair(VersionTag::Saved, "20240229-235958007.bns"),
                                  {VersionTag::Outside, "20240229-235958007-outside.bns"},
                                  {VersionTag::Cut, "20240229-235958007-cut.bns"},
                                  {VersionTag::Unsaved, "20240229-235958007-unsaved.bns"}}) {
    EXPECT_EQ(FileNameOf({.time = time, .tag = tag}), name);
    EXPECT_EQ(VersionOfFileName(name), (Version{.time = time, .tag = tag}));
  }
  for (const char* name :
       {"", ".bns", "draft.bns", "pending.new", "20240230-000000000.bns", "20240229-240000000.bns",
        "20240229-006000000.bns", "20240229-235960000.bns", "20240229-23595800.bns",
        "20240229-235958007-old.bns", "20240229-235958007.txt", "2024022x-235958007.bns"}) {
    EXPECT_EQ(VersionOfFileName(name), std::nullopt) << name;
  }
}

TEST_F(HistoryTest, WhateverEndsTheProgramOrFailsAtAnyCallNoStateIsLost) {
  const std::string renamed = "/lib/New.bns";
  const auto saved = [&] { ASSERT_TRUE(Save(Text(2))); };
  const auto pendingFor = [&](const std::string& library) {
    return [=, this] {
      files.bytes[Pending()] = Text(2);
      files.bytes[keeper->HistoryOf(kLib).File("path.txt")] = kLib + "\r\n";
      files.bytes[kLib] = library;
    };
  };
  struct Scene {
    const char* name;
    std::function<void()> before, act;
    std::set<std::string> kept;
  };
  const std::vector<Scene> scenes = {
      {"save", saved, [&] { Save(Text(3)); }, {Text(1), Text(2)}},
      {"start with a cut file", pendingFor(Text(2).substr(0, 9)), [&] { Begin(); }, {Text(2)}},
      {"start with another file", pendingFor(Text(1)), [&] { Begin(); }, {Text(1), Text(2)}},
      {"start with a draft", [&] { Draft(Text(2)); }, [&] { Begin(); }, {Text(1), Text(2)}},
      {"draft", [&] { Draft(Text(2)); }, [&] { BeginDraft(Text(2)); }, {Text(1), Text(2)}},
      {"throw away",
       [&] { Draft(Text(3)); },
       [&] { keeper->ThrownAway(BytesInMemory(Text(3))); },
       {Text(1), Text(3)}},
      {"rename",
       [&] {
         saved();
         Draft(Text(3));
       },
       [&] { keeper->Rename(kLib, renamed); },
       {Text(1), Text(2), Text(3)}}};
  for (const Scene& scene : scenes) {
    for (int run = 0, lastCall = 50; run < 4 * lastCall; ++run) {
      const int call = run / 4 + 1;
      SCOPED_TRACE(scene.name + std::to_string(run));
      files = {};
      files.written = std::vector{0.0, 0.4, 1.0, 0.0}[static_cast<std::size_t>(run % 4)];
      files.bytes[kLib] = Text(1);
      Start();
      scene.before();
      (run % 4 < 3 ? files.killAt : files.failFrom) = files.calls + call;
      files.failUntil = files.failFrom;
      try {
        scene.act();
        keeper.reset();
        if (files.calls < std::min(files.killAt, files.failFrom)) lastCall = call;
      } catch (const Killed&) {
      }
      const auto events = Start();
      EXPECT_LE(events.size(), 1U);
      if (files.bytes.contains(kLib)) {
        EXPECT_TRUE(File() == Text(1) || File() == Text(2) || File() == Text(3)) << File();
      }
      std::set<std::string> there, labelled;
      for (const auto& [path, bytes] : files.bytes) {
        const std::string place = path.substr(0, path.rfind('/'));
        if (path.ends_with("/path.txt")) labelled.insert(place);
        if (!path.ends_with(".tmp")) there.insert(bytes);
        EXPECT_FALSE(path.ends_with("pending.new") || path.ends_with("draft.bns")) << path;
      }
      EXPECT_TRUE(std::ranges::includes(there, scene.kept));
      for (const auto& [path, bytes] : files.bytes) {
        EXPECT_TRUE(path.ends_with(".tmp") || path.starts_with("/lib/") ||
                    labelled.contains(path.substr(0, path.rfind('/'))))
            << path;
      }
      EXPECT_EQ(Start(), std::vector<Kind>{}) << "told once";
      ASSERT_LT(call, 50);
    }
  }
}

TEST_F(HistoryTest, AHistoryThatFailsAtAnyCallNeverKeepsTheLibraryFromBeingSaved) {
  for (const bool forever : {false, true}) {
    for (int call = 1; call < 12; ++call) {
      SCOPED_TRACE(std::to_string(call) + (forever ? " for ever" : " once"));
      files = {};
      files.bytes[kLib] = Text(1);
      Start();
      files.failFrom = files.calls + call;
      files.failUntil = forever ? FakeFiles::kNever : files.failFrom;
      const bool saved = Save(Text(2));
      EXPECT_EQ(saved, File() == Text(2));
      const auto events = Events();
      EXPECT_LE(events.size(), 1U);
      EXPECT_EQ(!saved, !events.empty() && events.front() == Kind::SaveFailed);
      // The state before is on the disk as long as the new one is not.
      if (!saved && !forever) {
        EXPECT_TRUE(Keeps(Text(1)) && files.bytes.at(Pending()) == Text(2));
      }
      files.failFrom = FakeFiles::kNever;
      keeper->Names();
      Look();
      EXPECT_EQ(Events(), std::vector<Kind>{}) << "what is left of the file is nobody else's";
      EXPECT_TRUE(Save(Text(2)));
      EXPECT_EQ(File(), Text(2));
      EXPECT_EQ(Events(), saved ? std::vector<Kind>{} : std::vector{Kind::Saved});
    }
  }
}

TEST_F(HistoryTest, AnInterruptedSaveIsCompletedOnlyForAFileThatItLeft) {
  const std::string next = Text(2);
  struct Case {
    std::string library;  ///< "missing" for none.
    std::vector<Kind> events;
    std::string after;
  };
  std::vector<Case> cases{{"missing", {Kind::SaveCompleted}, next},
                          {Text(1), {Kind::UnsavedFound}, Text(1)},
                          {next + "more", {Kind::UnsavedFound}, next + "more"},
                          {next, {}, next}};
  for (std::size_t size = 0; size < next.size(); ++size)
    cases.push_back({next.substr(0, size), {Kind::SaveCompleted}, next});
  for (const Case& scene : cases) {
    files = {};
    files.bytes[Pending()] = next;
    files.bytes[keeper->HistoryOf(kLib).File("path.txt")] = kLib + "\r\n";
    if (scene.library != "missing") files.bytes[kLib] = scene.library;
    EXPECT_EQ(Start(), scene.events) << scene.library;
    EXPECT_EQ(File(), scene.after);
    EXPECT_TRUE(Keeps(next));
    const bool damaged = scene.after != scene.library && !scene.library.empty() && scene.library != "missing";
    EXPECT_TRUE(!damaged || Keeps(scene.library));
  }
}

TEST_F(HistoryTest, APendingSaveOrDraftThatIsCutAtAnyByteTouchesNoLibrary) {
  const std::string next = Text(2);
  for (const char* name : {"pending.new", "draft.bns"}) {
    for (std::size_t size = 0; size < next.size(); ++size) {
      for (const std::string& library : {Text(1), std::string("missing")}) {
        files = {};
        files.bytes[keeper->HistoryOf(kLib).File(name)] = next.substr(0, size);
        if (library != "missing") files.bytes[kLib] = library;
        files.bytes[keeper->HistoryOf(kLib).File("path.txt")] = kLib + "\r\n";
        Start();
        EXPECT_EQ(File(), library) << name << size;
        EXPECT_TRUE(size == 0 || Keeps(next.substr(0, size))) << name << size;
        EXPECT_EQ(Start(), std::vector<Kind>{});
      }
    }
  }
}

TEST_F(HistoryTest, DraftsAreOfferedAfterACrashAndGoWithASaveOrAnAnswer) {
  files.bytes[kLib] = Text(1);
  Start();
  Draft(Text(2));
  const auto other =
      Program();  // a second instance leaves the draft of the first alone, and has one of its own
  other->OpenedOrSaved(kLib);
  EXPECT_TRUE(other->TakeEvents().empty());
  ASSERT_TRUE(other->WriteDraft(Text(3)));
  other->DropDraft();
  EXPECT_EQ(Start(), std::vector{Kind::UnsavedFound});
  EXPECT_EQ(Kept(), (std::vector<std::pair<VersionTag, std::string>>{{VersionTag::Unsaved, Text(2)}}));
  EXPECT_EQ(Start(), std::vector<Kind>{});

  Draft(Text(4));
  ASSERT_TRUE(Save(Text(4)));
  EXPECT_EQ(Start(), std::vector<Kind>{});
  Draft(Text(5));
  keeper->ThrownAway(BytesInMemory(Text(6)));
  EXPECT_EQ(Start(), std::vector<Kind>{});
  EXPECT_EQ(Kept().front(), (std::pair(VersionTag::Unsaved, Text(6))));
  Draft(Text(2));  // which the history has already
  EXPECT_EQ(Start(), std::vector{Kind::UnsavedFound});
  EXPECT_EQ(offered, Text(2));

  // One that cannot be written is told, and one of a library that is not opened is found all the same.
  keeper->DropDraft();
  for (const int failing : {files.calls + 1, FakeFiles::kNever}) {
    files.failFrom = failing;
    ASSERT_TRUE(keeper->WriteDraft(Text(7)));
    keeper->DropDraft();  // ends the writing
    EXPECT_EQ(keeper->TakeDraftFailure(), failing != FakeFiles::kNever);
  }
  const std::string other_ = "/else/Other.bns";
  keeper->OpenedOrSaved(other_);
  Draft(Text(8));
  EXPECT_EQ(Start(), std::vector{Kind::UnsavedFound});
  EXPECT_EQ(offered, Text(8));

  // History and draft go with a library that is renamed.
  const auto kept = Kept();
  Draft(Text(9));
  ASSERT_TRUE(keeper->Rename(kLib, "/lib/New.bns"));
  EXPECT_EQ(Kept().size(), 0U);
  EXPECT_EQ(Start(), std::vector{Kind::UnsavedFound});
  EXPECT_EQ(offered, Text(9));
  EXPECT_EQ(keeper->HistoryOf("/lib/New.bns").Versions().size(), kept.size() + 1);
  keeper->OpenedOrSaved("/lib/New.bns");
  Draft(Text(10));
  ASSERT_TRUE(keeper->Rename("/lib/New.bns", kLib));
  Save(Text(11));
  EXPECT_EQ(Start(), std::vector<Kind>{}) << "a draft that was renamed goes with a save, too";
}

TEST_F(HistoryTest, WhatAnotherProgramWritesIsToldAndKeptAndWhatThisOneWritesIsNot) {
  files.bytes[kLib] = Text(1);
  Start();
  Save(Text(2));
  Look();
  EXPECT_EQ(Events(), std::vector<Kind>{});
  files.Write(kLib, Text(2));  // the same bytes at another time
  Look();
  EXPECT_EQ(Events(), std::vector<Kind>{});
  files.Write(kLib, Text(7));
  for (int look = 0; look < 3; ++look) {
    files.busy = {kLib};  // by a program that has it open
    EXPECT_TRUE(keeper->LookForOutsideChange());
    files.busy.clear();
    const auto lock = files.Lock(keeper->HistoryOf(kLib).path());  // by one that writes the history
    EXPECT_TRUE(keeper->LookForOutsideChange());
  }
  EXPECT_EQ(files.waited, 0ms);
  Look();
  EXPECT_EQ(Events(), std::vector{Kind::ChangedOutside});
  files.Write(kLib, Text(8));  // and once more, without anybody looking
  Save(Text(3));
  EXPECT_EQ(Kept(), (std::vector<std::pair<VersionTag, std::string>>{{VersionTag::Saved, Text(3)},
                                                                     {VersionTag::Outside, Text(8)},
                                                                     {VersionTag::Outside, Text(7)},
                                                                     {VersionTag::Saved, Text(2)},
                                                                     {VersionTag::Saved, Text(1)}}));
}

TEST_F(HistoryTest, ASaveWaitsForOtherProgramsOnceNotAtEveryStep) {
  files.bytes[kLib] = Text(1);
  Start();
  Save(Text(2));
  const std::string history = keeper->HistoryOf(kLib).path();
  files.Write(kLib, Text(3));
  files.busy = {kLib, Pending(), history + "/pending.tmp", history + "/version.tmp"};
  std::unique_ptr<Patience::Limit> ofAnotherThread;
  std::thread([&] { ofAnotherThread.reset(new Patience::Limit(files.LimitWaits(0ms))); }).join();
  EXPECT_FALSE(Save(Text(4)));
  EXPECT_EQ(files.waited, 1400ms);
  EXPECT_FALSE(keeper->ThrownAway(BytesInMemory(Text(4))));
  EXPECT_EQ(files.waited, 2800ms);

  files.busy = {history + "/version.tmp", history + "/pending.tmp"};
  files.waited = 0ms;
  ASSERT_TRUE(Save(Text(5)));
  EXPECT_EQ(files.waited, 700ms) << "the history leaves some for the library";
  files.busy.clear();
  files.bytes[Pending()] = Text(6);
  const auto lock = files.Lock(history);  // of a program in the middle of a save
  ASSERT_TRUE(Save(Text(7)));
  EXPECT_TRUE(files.bytes.at(Pending()) == Text(6) && Keeps(Text(7)));
  files.Write(kLib, Text(8));
  files.tooLarge = {kLib};
  ASSERT_TRUE(Save(Text(9)));
  EXPECT_EQ(File(), Text(9));
  files.tooLarge.clear();
  Look();
  EXPECT_EQ(Events(), (std::vector{Kind::SaveFailed, Kind::HistoryFailed, Kind::Saved}));
  const std::string unread = "/lib/Unread.bns";
  files.bytes[unread] = Text(1);
  EXPECT_TRUE(keeper->Replace(unread, BytesInMemory(Text(2))));
  EXPECT_TRUE(keeper->HistoryOf(unread).Keeps(Text(1)));
  files.failFrom = 0;
  EXPECT_FALSE(keeper->Create("/lib/Refused.bns", BytesInMemory(Text(1))));
  Start();
  EXPECT_NE(files.bytes["/lib/Refused.bns"], Text(1));
}

TEST_F(HistoryTest, TheNewestAndTheFirstOfEachDayAreKeptWithinTheRoom) {
  VersionFolder history = keeper->HistoryOf(kLib);
  int number = 0;
  const auto keep = [&](UtcTime time) {
    files.now = time;
    history.Keep(Text(++number), VersionTag::Saved);
  };
  const UtcTime start = files.now;
  for (int day = 0; day < 4; ++day)
    for (int hour = 0; hour < 3; ++hour) keep(start + day * 24h + hour * 1h);
  const HistoryLimits set = LimitsFrom([](const char* name) {
    return name == std::string("HistoryDays") ? "7" : name[7] == 'V' ? "x" : "1";
  });
  EXPECT_EQ(set.versions, 50U);
  EXPECT_EQ(set.days, 7U);
  EXPECT_EQ(set.bytes, 1048576U);
  const auto left = [&] {
    std::vector<int> ages;
    for (const Version& version : history.Versions())
      ages.push_back(static_cast<int>((version.CameAbout() - start) / 1h));
    return ages;
  };
  history.Prune({.versions = 4, .days = 3, .bytes = 1000000});
  EXPECT_EQ(left(), (std::vector{74, 73, 72, 50, 48, 24}));
  history.Prune({.versions = 4, .days = 3, .bytes = Text(12).size() + Text(11).size()});
  EXPECT_EQ(left(), (std::vector{74, 73}));
  history.Prune({.versions = 0, .days = 0, .bytes = 0});
  EXPECT_EQ(left(), (std::vector{74})) << "the newest always";
  // After a clock that was ahead, new states are the newest all the same, and of their own time and day.
  keep(start);
  keep(start + 1h);
  keep(start + 24h);
  EXPECT_EQ(left(), (std::vector{24, 1, 0, 74}));
  history.Keep(Text(30), VersionTag::Unsaved, files.now + 24h * 365 * 9000);
  EXPECT_EQ(left(), (std::vector{24, 24, 1, 0, 74})) << "a file's time may be any";
  files.Remove(history.File(FileNameOf(history.Versions().front())));
  history.Prune({.versions = 1, .days = 2});
  EXPECT_EQ(left(), (std::vector{24, 0}));
  history.Keep(Text(13), VersionTag::Saved);  // equal contents are kept once
  EXPECT_EQ(Kept(), (std::vector<std::pair<VersionTag, std::string>>{{VersionTag::Saved, Text(13)},
                                                                     {VersionTag::Saved, Text(15)}}));
}

TEST_F(HistoryTest, DraftsFollowAPauseAndSteadyWorkNowAndThen) {
  DraftTimer timer;
  EXPECT_FALSE(timer.Due(1000000));
  timer.Changed(1000);
  EXPECT_FALSE(timer.Due(8999));
  EXPECT_TRUE(timer.Due(9000));
  timer.Done();
  EXPECT_FALSE(timer.Due(1000000));
  for (std::uint64_t now = 2000; now < 59000; now += 3000) {
    timer.Changed(now);
    EXPECT_FALSE(timer.Due(now + 2999));
  }
  EXPECT_TRUE(timer.Due(59000));
}

TEST_F(HistoryTest, NoSequenceOfSavesAndChangesLosesAState) {
  for (unsigned seed = 1; seed <= 40; ++seed) {
    std::mt19937 random(seed);
    files = {};
    files.bytes[kLib] = Text(0);
    Start();
    std::set<std::string> states{Text(0)};  // that were in the file, or thrown away
    std::string memory = Text(0);
    for (int step = 1; step <= 40; ++step) {
      SCOPED_TRACE("seed " + std::to_string(seed) + " step " + std::to_string(step));
      files.now += std::chrono::minutes(static_cast<int>(random() % 400) - 60);
      const auto what = random() % 5;
      if (what <= 1) {
        memory = Text(static_cast<int>(random() % 30));
        ASSERT_TRUE(Save(memory));
        states.insert(memory);
      } else if (what == 2) {
        files.Write(kLib, Text(static_cast<int>(random() % 30)));
        Look();
        keeper->ThrownAway(BytesInMemory(memory));  // as the window does that loads the file again
        states.insert(memory = File());
        Load();
      } else if (what == 3) {
        const std::string thrown = Text(static_cast<int>(random() % 30));
        keeper->ThrownAway(BytesInMemory(thrown));
        states.insert(thrown);
      } else if (!Kept().empty()) {
        const auto kept = Kept();
        memory = kept[random() % kept.size()].second;  // restored
        ASSERT_TRUE(Save(memory));
      }
      std::set<std::string> there{File()};
      for (const auto& [tag, bytes] : Kept()) there.insert(bytes);
      ASSERT_TRUE(std::ranges::includes(there, states));
    }
  }
}

TEST(NoticeQueueTest, AnEventIsToldWhileItsLibraryIsOpen) {
  struct Step {
    std::vector<std::pair<Kind, const char*>> added;
    const char* open;
    std::string told;
    const char* saved = "";
  };
  NoticeQueue queue;
  for (const auto& [added, open, told, saved] :
       std::vector<Step>{{{{Kind::HistoryFailed, "a"}, {Kind::ChangedOutside, "b"}}, "a", "history a"},
                         {{{Kind::SaveFailed, "b"}}, "a", "history a"},
                         {{{Kind::SaveFailed, "a"}}, "a", "failed a"},
                         {{}, "b", "failed b"},
                         {{}, "c", ""},
                         {{}, "c", "failed b", "b"},
                         {{{Kind::SaveCompleted, "a"}}, "c", "completed a"},
                         {{{Kind::SaveFailed, "b"}}, "b", "failed b"},
                         {{{Kind::Saved, "b"}}, "b", "outside b"},
                         {{}, "a", "failed a"},  // and the change of b is read when b is opened again
                         {{{Kind::SaveFailed, "a"}}, "a", "answered"},
                         {{}, "a", "history a"},
                         {{}, "b", "completed a"},
                         {{}, "b", "answered"},
                         {{{Kind::UnsavedFound, "c"}}, "b", "unsaved c"},
                         {{}, "b", "answered"},
                         {{}, "b", ""}}) {
    std::vector<LibraryEvent> events;
    for (const auto& [kind, path] : added) events.push_back({kind, path});
    queue.Add(events);
    if (told == "answered") {
      queue.Answered();
      continue;
    }
    const auto before = queue.told();
    const bool changed = queue.Update(open, saved);
    EXPECT_EQ(changed, queue.told() != before);
    const char* kinds[] = {"failed ", "completed ", "unsaved ", "outside ", "history "};
    EXPECT_EQ(queue.told() ? kinds[static_cast<int>(queue.told()->kind)] + queue.told()->path : "", told);
  }
}

}  // namespace
}  // namespace snip::test
