#include "ui/commandbar/OleDragDrop.h"

#include <gtest/gtest.h>

#include <atomic>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "platform/Clipboard.h"
#include "tests/support/TestDesktop.h"

namespace snip::test {
namespace {

using Log = std::vector<std::string>;

std::string Entry(const char* event, DWORD effect, const BarMouse& mouse) {
  return std::string(event) + " effect " + std::to_string(effect) + " button " +
         std::to_string(mouse.Button) + " shift " + std::to_string(mouse.Shift) + " at " +
         std::to_string(mouse.at.x) + "," + std::to_string(mouse.at.y);
}

POINT ScreenPlace(HWND window, POINT place) {
  ClientToScreen(window, &place);
  return place;
}

POINTL DragPlace(HWND window, POINT place) {
  const POINT screen = ScreenPlace(window, place);
  return {screen.x, screen.y};
}

ULONG References(IUnknown* object) {
  object->AddRef();
  return object->Release();
}

class OleDragDropTest : public testing::Test {
 protected:
  void SetUp() override {
    from_ = MakeWindow("from", 40);
    onto_ = MakeWindow("onto", 360);
    ASSERT_TRUE(from_ != nullptr && onto_ != nullptr);
  }
  void TearDown() override {
    target_.Revoke();
    if (IsWindow(onto_) != 0) DestroyWindow(onto_);
    DestroyWindow(from_);
  }

  static HWND MakeWindow(const char* title, int left) {
    return CreateWindowExA(WS_EX_TOPMOST, "STATIC", title, WS_OVERLAPPEDWINDOW | WS_VISIBLE | SS_NOTIFY, left,
                           60, 260, 200, nullptr, nullptr, nullptr, nullptr);
  }

  OleDropTarget::Listener Logging() {
    return {.dragOver =
                [this](OleData& data, DWORD& effect, const BarMouse& mouse, OleDragState state) {
                  log_.push_back(Entry("over", effect, mouse) + " state " +
                                 std::to_string(static_cast<int>(state)) +
                                 (data.GetFormat(CF_TEXT) ? " text" : ""));
                  ++told_;
                  effect = answer_;
                },
            .dragDrop =
                [this](OleData& data, DWORD& effect, const BarMouse& mouse) {
                  log_.push_back(Entry("drop", effect, mouse) + " " + data.GetText());
                  effect = answer_;
                }};
  }

  /// The target that a drag would find.
  IDropTarget* Registered() const {
    return static_cast<IDropTarget*>(GetPropA(onto_, "OleDropTargetInterface"));
  }

  OleThread ole_;
  HWND from_ = nullptr;
  HWND onto_ = nullptr;
  Log log_;
  std::atomic<int> told_ = 0;
  DWORD answer_ = DROPEFFECT_COPY;
  OleDropTarget target_;
  /// What the tests call a target with.
  OleDragSource source_{std::weak_ptr<const OleDragEvents>()};
};

constexpr DWORD kCopyOrMove = DROPEFFECT_COPY | DROPEFFECT_MOVE;

TEST_F(OleDragDropTest, ATargetTellsEnteringMovingAndLeaving) {
  ASSERT_TRUE(target_.Register(onto_, Logging()));
  IDropTarget* const target = Registered();
  ASSERT_NE(target, nullptr);
  source_.Data().SetText("hello");

  DWORD effect = kCopyOrMove;
  EXPECT_EQ(target->DragEnter(source_.dataObject(), MK_LBUTTON, DragPlace(onto_, {10, 20}), &effect), S_OK);
  EXPECT_EQ(effect, DWORD{DROPEFFECT_COPY});
  effect = kCopyOrMove;
  answer_ = DROPEFFECT_MOVE;
  EXPECT_EQ(target->DragOver(MK_LBUTTON | MK_SHIFT | MK_CONTROL, DragPlace(onto_, {11, 22}), &effect), S_OK);
  EXPECT_EQ(effect, DWORD{DROPEFFECT_MOVE});
  effect = DROPEFFECT_COPY;
  EXPECT_EQ(target->DragOver(MK_RBUTTON | MK_MBUTTON | MK_ALT, DragPlace(onto_, {-1, 5}), &effect), S_OK);
  EXPECT_EQ(effect, DWORD{DROPEFFECT_NONE}) << "the source does not allow what the listener wants";
  EXPECT_EQ(target->DragLeave(), S_OK);
  EXPECT_EQ(log_, (Log{"over effect 3 button 1 shift 0 at 10,20 state 0 text",
                       "over effect 3 button 1 shift 3 at 11,22 state 2 text",
                       "over effect 1 button 6 shift 4 at -1,5 state 2 text",
                       "over effect 0 button 6 shift 4 at -1,5 state 1 text"}));
}

TEST_F(OleDragDropTest, ADropIsToldWithTheButtonThatWasHeld) {
  ASSERT_TRUE(target_.Register(onto_, Logging()));
  IDropTarget* const target = Registered();
  ASSERT_NE(target, nullptr);
  source_.Data().SetText("hello");
  const ULONG before = References(source_.dataObject());

  DWORD effect = kCopyOrMove;
  target->DragEnter(source_.dataObject(), MK_RBUTTON, DragPlace(onto_, {10, 20}), &effect);
  EXPECT_GT(References(source_.dataObject()), before);
  effect = kCopyOrMove;
  EXPECT_EQ(target->Drop(source_.dataObject(), MK_CONTROL, DragPlace(onto_, {12, 21}), &effect), S_OK);
  EXPECT_EQ(effect, DWORD{DROPEFFECT_COPY});
  EXPECT_EQ(References(source_.dataObject()), before) << "what was dropped is let go";
  EXPECT_EQ(log_, (Log{"over effect 3 button 2 shift 0 at 10,20 state 0 text",
                       "drop effect 3 button 2 shift 2 at 12,21 hello"}));
}

TEST_F(OleDragDropTest, OfSeveralEffectsTheKeysChoose) {
  answer_ = DROPEFFECT_COPY | DROPEFFECT_MOVE | DROPEFFECT_LINK | DROPEFFECT_SCROLL;
  ASSERT_TRUE(target_.Register(onto_, Logging()));
  IDropTarget* const target = Registered();
  ASSERT_NE(target, nullptr);
  struct Case {
    DWORD allowed;
    DWORD keys;
    DWORD chosen;
  };
  constexpr DWORD all = DROPEFFECT_COPY | DROPEFFECT_MOVE | DROPEFFECT_LINK;
  for (const Case& c : std::vector<Case>{{all, 0, DROPEFFECT_COPY},
                                         {all, MK_CONTROL, DROPEFFECT_COPY},
                                         {all, MK_SHIFT, DROPEFFECT_MOVE},
                                         {all, MK_CONTROL | MK_SHIFT, DROPEFFECT_LINK},
                                         {DROPEFFECT_MOVE, MK_CONTROL, DROPEFFECT_MOVE},
                                         {DROPEFFECT_LINK, 0, DROPEFFECT_LINK},
                                         {DROPEFFECT_NONE, 0, DROPEFFECT_NONE}}) {
    DWORD effect = c.allowed;
    target->DragOver(MK_LBUTTON | c.keys, DragPlace(onto_, {1, 1}), &effect);
    EXPECT_EQ(effect, c.chosen | DROPEFFECT_SCROLL) << c.allowed << " " << c.keys;
  }
}

TEST_F(OleDragDropTest, WithoutAListenerOrWithAThrowingOneNothingIsTaken) {
  ASSERT_TRUE(target_.Register(onto_, {}));
  DWORD effect = kCopyOrMove;
  EXPECT_EQ(Registered()->Drop(source_.dataObject(), 0, DragPlace(onto_, {1, 1}), &effect), S_OK);
  EXPECT_EQ(effect, DWORD{DROPEFFECT_NONE});

  ASSERT_TRUE(target_.Register(onto_, {.dragOver = {}, .dragDrop = [](OleData&, DWORD&, const BarMouse&) {
                                         throw std::runtime_error("no");
                                       }}));
  effect = kCopyOrMove;
  EXPECT_EQ(Registered()->Drop(source_.dataObject(), 0, DragPlace(onto_, {1, 1}), &effect), E_UNEXPECTED);
  EXPECT_EQ(effect, DWORD{DROPEFFECT_NONE});
}

TEST_F(OleDragDropTest, RevokedItIsDeafAndMayBeRegisteredAgain) {
  ASSERT_TRUE(target_.Register(onto_, Logging()));
  EXPECT_TRUE(target_.registered());
  const auto kept = ComPtr<IDropTarget>::Share(Registered());
  ASSERT_TRUE(kept);
  target_.Revoke();
  EXPECT_FALSE(target_.registered());
  EXPECT_EQ(Registered(), nullptr);
  EXPECT_EQ(References(kept.get()), 1U) << "only this test still has it";
  DWORD effect = kCopyOrMove;
  EXPECT_EQ(kept->Drop(source_.dataObject(), 0, DragPlace(onto_, {1, 1}), &effect), S_OK);
  EXPECT_EQ(effect, DWORD{DROPEFFECT_NONE});
  EXPECT_EQ(log_, Log{});

  EXPECT_TRUE(target_.Register(onto_, Logging()));
  OleDropTarget second;
  EXPECT_FALSE(second.Register(onto_, Logging())) << "a window has one target";
  EXPECT_FALSE(second.Register(nullptr, Logging()));
  effect = kCopyOrMove;
  Registered()->DragOver(MK_LBUTTON, DragPlace(onto_, {1, 1}), &effect);
  EXPECT_EQ(log_.size(), 1U);
}

TEST_F(OleDragDropTest, AWindowDestroyedWhileRegisteredLetsTheTargetGo) {
  ASSERT_TRUE(target_.Register(onto_, Logging()));
  const auto kept = ComPtr<IDropTarget>::Share(Registered());
  ASSERT_TRUE(kept);
  DestroyWindow(onto_);
  EXPECT_FALSE(target_.registered());
  EXPECT_EQ(References(kept.get()), 1U);
  DWORD effect = kCopyOrMove;
  EXPECT_EQ(kept->DragEnter(source_.dataObject(), MK_LBUTTON, {1, 1}, &effect), S_OK);
  EXPECT_EQ(effect, DWORD{DROPEFFECT_NONE});
  EXPECT_EQ(log_, Log{});
}

TEST_F(OleDragDropTest, AListenerMayEndTheWindowAndTheTarget) {
  auto target = std::make_unique<OleDropTarget>();
  const auto held = std::make_shared<int>(7);
  int seen = 0;
  ASSERT_TRUE(target->Register(
      onto_, {.dragOver = {}, .dragDrop = [&, held](OleData& data, DWORD& effect, const BarMouse&) {
                DestroyWindow(onto_);
                target.reset();
                // The listener itself and what it was given are still there.
                seen = *held;
                log_.push_back(data.GetText());
                effect = DROPEFFECT_MOVE;
              }}));
  source_.Data().SetText("last");
  DWORD effect = kCopyOrMove;
  EXPECT_EQ(Registered()->Drop(source_.dataObject(), 0, DragPlace(onto_, {1, 1}), &effect), S_OK);
  EXPECT_EQ(effect, DWORD{DROPEFFECT_MOVE});
  EXPECT_EQ(seen, 7);
  EXPECT_EQ(log_, Log{"last"});
  EXPECT_EQ(held.use_count(), 1) << "the listener is gone with its target";
}

TEST_F(OleDragDropTest, DataKeepTextsAndFilesUntilCleared) {
  OleData data = source_.Data();
  EXPECT_FALSE(data.GetFormat(CF_TEXT));
  EXPECT_EQ(data.GetText(), "");
  EXPECT_EQ(data.Files(), std::vector<std::string>{});
  const auto own = static_cast<CLIPFORMAT>(RegisterClipboardFormatA("BnSnippetName"));
  const std::vector<std::string> files = {"C:\\one.bns", "C:\\caf\xE9.bns"};
  EXPECT_TRUE(data.SetText("plain") && data.SetText("caf\xE9", CF_UNICODETEXT) && data.SetText("own", own) &&
              data.SetFiles(files));

  // As another program sees it.
  OleData seen(ComPtr<IDataObject>::Share(source_.dataObject()));
  EXPECT_TRUE(seen.GetFormat(CF_TEXT) && seen.GetFormat(own) && seen.GetFormat(CF_HDROP));
  EXPECT_FALSE(seen.GetFormat(CF_BITMAP));
  EXPECT_EQ(seen.GetText(), "plain");
  EXPECT_EQ(seen.GetText(CF_UNICODETEXT), "caf\xE9");
  EXPECT_EQ(seen.GetText(own), "own");
  EXPECT_EQ(seen.Files(), files);
  EXPECT_FALSE(seen.SetText("x") || seen.SetFiles({}) || seen.Offer(CF_TEXT) || seen.Clear());
  EXPECT_EQ(seen.GetText(), "plain") << "only the source changes what it drags";

  EXPECT_TRUE(data.SetFiles({}));
  EXPECT_FALSE(seen.GetFormat(CF_HDROP)) << "no files, no list";
  EXPECT_EQ(seen.Files(), std::vector<std::string>{});
  EXPECT_TRUE(data.Clear());
  EXPECT_FALSE(seen.GetFormat(CF_TEXT) || seen.GetFormat(CF_UNICODETEXT) || seen.GetFormat(own));
}

TEST_F(OleDragDropTest, DataOfThePlatformAreRead) {
  ASSERT_TRUE(CopyToClipboard(from_, "caf\xE9"));
  ComPtr<IDataObject> clipboard;
  ASSERT_EQ(OleGetClipboard(clipboard.Put()), S_OK);
  const OleData data(std::move(clipboard));
  EXPECT_TRUE(data.GetFormat(CF_TEXT));
  EXPECT_FALSE(data.GetFormat(CF_HDROP));
  EXPECT_EQ(data.GetText(), "caf\xE9");
  EXPECT_EQ(data.GetText(CF_UNICODETEXT), "caf\xE9");
}

TEST_F(OleDragDropTest, TheDataObjectListsItsFormatsAndRefusesOthers) {
  OleData data = source_.Data();
  data.SetText("text");
  data.Offer(CF_UNICODETEXT);
  ComPtr<IEnumFORMATETC> formats;
  ASSERT_EQ(source_.dataObject()->EnumFormatEtc(DATADIR_GET, formats.Put()), S_OK);
  std::vector<int> listed;
  for (FORMATETC format{}; formats->Next(1, &format, nullptr) == S_OK;) {
    EXPECT_EQ(source_.dataObject()->QueryGetData(&format), S_OK);
    listed.push_back(format.cfFormat);
  }
  EXPECT_EQ(listed, (std::vector<int>{CF_TEXT, CF_UNICODETEXT}));

  FORMATETC asked{CF_TEXT, nullptr, DVASPECT_CONTENT, -1, TYMED_ISTREAM};
  STGMEDIUM medium{};
  EXPECT_EQ(source_.dataObject()->GetData(&asked, &medium), DV_E_TYMED);
  asked = {CF_TEXT, nullptr, DVASPECT_ICON, -1, TYMED_HGLOBAL};
  EXPECT_EQ(source_.dataObject()->GetData(&asked, &medium), DV_E_DVASPECT);
  asked = {CF_DIB, nullptr, DVASPECT_CONTENT, -1, TYMED_HGLOBAL};
  EXPECT_EQ(source_.dataObject()->GetData(&asked, &medium), DV_E_FORMATETC);
  asked.cfFormat = CF_UNICODETEXT;
  EXPECT_EQ(source_.dataObject()->GetData(&asked, &medium), DV_E_FORMATETC) << "nobody brings the data";
}

TEST_F(OleDragDropTest, OfferedDataAreAskedForOnceAndOnlyWhenWanted) {
  const auto events = std::make_shared<const OleDragEvents>(
      OleDragEvents{.OLEStartDrag = {},
                    .OLESetData =
                        [this](OleData& data, CLIPFORMAT format) {
                          log_.push_back("set " + std::to_string(format));
                          // Looking at what is not there yet does not ask again.
                          EXPECT_EQ(data.GetText(format), "");
                          data.SetText("on demand", format);
                        },
                    .OLEGiveFeedback = {},
                    .OLECompleteDrag = {}});
  ComPtr<IDataObject> kept;
  {
    const OleDragSource source(events);
    kept = ComPtr<IDataObject>::Share(source.dataObject());
    OleData data = source.Data();
    data.SetText("ready");
    data.Offer(CF_UNICODETEXT);
    data.Offer(CF_OEMTEXT);
    const OleData seen(ComPtr<IDataObject>::Share(kept.get()));
    EXPECT_TRUE(seen.GetFormat(CF_UNICODETEXT));
    EXPECT_EQ(seen.GetText(), "ready");
    EXPECT_EQ(log_, Log{});
    EXPECT_EQ(seen.GetText(CF_UNICODETEXT), "on demand");
    EXPECT_EQ(seen.GetText(CF_UNICODETEXT), "on demand");
    EXPECT_EQ(log_, (Log{"set 13"}));
  }
  const OleData afterwards(std::move(kept));
  EXPECT_EQ(afterwards.GetText(CF_OEMTEXT), "") << "the drag is over: nobody is asked any more";
  EXPECT_EQ(afterwards.GetText(), "ready");
  EXPECT_EQ(log_, (Log{"set 13"}));
}

TEST_F(OleDragDropTest, TheSourceSaysHowTheDragGoesOnAndLooks) {
  bool cursors = true;
  auto events = std::make_shared<const OleDragEvents>(
      OleDragEvents{.OLEStartDrag = {},
                    .OLESetData = {},
                    .OLEGiveFeedback =
                        [&](DWORD effect, bool& defaultCursors) {
                          EXPECT_TRUE(defaultCursors);
                          log_.push_back("feedback " + std::to_string(effect));
                          defaultCursors = cursors;
                        },
                    .OLECompleteDrag = {}});
  const OleDragSource source(events);
  IDropSource* const drag = source.dropSource();
  EXPECT_EQ(drag->GiveFeedback(DROPEFFECT_MOVE), DRAGDROP_S_USEDEFAULTCURSORS);
  cursors = false;
  EXPECT_EQ(drag->GiveFeedback(DROPEFFECT_NONE), S_OK);
  EXPECT_EQ(log_, (Log{"feedback 2", "feedback 0"}));

  EXPECT_EQ(drag->QueryContinueDrag(FALSE, MK_LBUTTON), S_OK);
  EXPECT_EQ(drag->QueryContinueDrag(FALSE, MK_RBUTTON | MK_SHIFT), S_OK);
  EXPECT_EQ(drag->QueryContinueDrag(TRUE, MK_LBUTTON), DRAGDROP_S_CANCEL);
  EXPECT_EQ(drag->QueryContinueDrag(FALSE, MK_SHIFT), DRAGDROP_S_DROP);
  events.reset();
  EXPECT_EQ(drag->QueryContinueDrag(FALSE, MK_LBUTTON), DRAGDROP_S_CANCEL) << "nobody drags any more";
  EXPECT_EQ(drag->GiveFeedback(DROPEFFECT_MOVE), DRAGDROP_S_USEDEFAULTCURSORS);
}

/// Drags with the real mouse from one window to the other.
class OleRealDragTest : public OleDragDropTest {
 protected:
  void SetUp() override {
    OleDragDropTest::SetUp();
    // A drag begins with a button held over the source.
    MovePointer(ScreenPlace(from_, {50, 50}));
    ASSERT_TRUE(WaitUntil([&] { return WindowFromPoint(PointerPlace()) == from_; }));
    PressMouse();
    ASSERT_TRUE(WaitUntil([] { return GetKeyState(VK_LBUTTON) < 0; }));
  }
  void TearDown() override {
    ReleaseMouse();
    WaitUntil([] { return GetKeyState(VK_LBUTTON) >= 0; });
    OleDragDropTest::TearDown();
  }

  static POINT PointerPlace() {
    POINT pointer{};
    GetCursorPos(&pointer);
    return pointer;
  }

  OleDragEvents Logging() {
    return {
        .OLEStartDrag =
            [this](OleData& data, DWORD& allowed) {
              EXPECT_EQ(allowed, DWORD{DROPEFFECT_NONE});
              allowed = kCopyOrMove;
              data.Offer(CF_TEXT);
              log_.emplace_back("start");
            },
        .OLESetData =
            [this](OleData& data, CLIPFORMAT format) {
              log_.push_back("set " + std::to_string(format));
              data.SetText("dragged", format);
            },
        .OLEGiveFeedback =
            [this](DWORD effect, bool&) {
              const std::string entry = "feedback " + std::to_string(effect);
              if (log_.empty() || log_.back() != entry) log_.push_back(entry);
            },
        .OLECompleteDrag = [this](DWORD effect) { log_.push_back("complete " + std::to_string(effect)); }};
  }

  /// What happened, each kind of news once in a row.
  static Log Course(const Log& log) {
    Log course;
    for (const std::string& entry : log) {
      std::string kind = entry;
      if (entry.starts_with("over")) kind = "over state " + entry.substr(entry.find("state ") + 6, 1);
      if (course.empty() || course.back() != kind) course.push_back(kind);
    }
    return course;
  }

  /// Moves until the target has been told something new; the system may not see every step.
  bool MoveAndBeTold(POINT place) {
    const int before = told_;
    POINT screen = ScreenPlace(onto_, place);
    return WaitUntil([&] { return told_ > before; }, 5000,
                     [&] {
                       MovePointer(screen);
                       screen.x ^= 1;
                     });
  }
};

TEST_F(OleRealDragTest, ADragIsDroppedOnAnotherWindow) {
  ASSERT_TRUE(target_.Register(onto_, OleDragDropTest::Logging()));
  const auto events = std::make_shared<const OleDragEvents>(Logging());
  bool reached = false;
  {
    const Driver driver([&] {
      reached = MoveAndBeTold({40, 40}) && MoveAndBeTold({61, 55});
      ReleaseMouse();
    });
    OleDrag(events);
  }
  ASSERT_TRUE(reached);
  Log course = Course(log_);
  // Feedback comes before the window is reached, when it is, and on the way.
  std::erase_if(course, [](const std::string& entry) { return entry == "feedback 0"; });
  ASSERT_GE(course.size(), 7U);
  EXPECT_EQ(course[0], "start");
  EXPECT_EQ(course[1], "over state 0");
  EXPECT_EQ(course[2], "feedback 1");
  EXPECT_EQ(course[3], "over state 2");
  // Where exactly depends on how much of the way the system has seen by then.
  const std::string& drop = course[course.size() - 2];
  EXPECT_TRUE(drop.starts_with("drop effect 3 button 1 shift 0 at ") && drop.ends_with(" dragged")) << drop;
  EXPECT_EQ(course[course.size() - 3], "set 1");
  EXPECT_EQ(course.back(), "complete 1");
}

TEST_F(OleRealDragTest, ADragEndsWithNothingOverAWindowThatTakesNone) {
  ASSERT_TRUE(target_.Register(onto_, OleDragDropTest::Logging()));
  target_.Revoke();
  const auto events = std::make_shared<const OleDragEvents>(Logging());
  {
    const POINT end = ScreenPlace(onto_, {40, 40});
    const Driver driver([&] {
      MovePointer(end);
      WaitUntil([&] { return PointerPlace().x == end.x && PointerPlace().y == end.y; }, 5000, [] {});
      ReleaseMouse();
    });
    OleDrag(events);
  }
  Log course = Course(log_);
  EXPECT_EQ(course.front(), "start");
  EXPECT_EQ(course.back(), "complete 0");
  std::erase_if(course, [](const std::string& entry) { return entry == "feedback 0"; });
  EXPECT_EQ(course, (Log{"start", "complete 0"}));
}

TEST_F(OleRealDragTest, EscapeGivesADragUp) {
  ASSERT_TRUE(target_.Register(onto_, OleDragDropTest::Logging()));
  const auto events = std::make_shared<const OleDragEvents>(Logging());
  SetForegroundWindow(from_);
  std::atomic<bool> ended = false;
  bool reached = false;
  {
    const Driver driver([&] {
      reached = MoveAndBeTold({40, 40});
      PressKey(VK_ESCAPE);
      WaitUntil([&] { return ended.load(); }, 5000, [] {});
      ReleaseMouse();
    });
    OleDrag(events);
    ended = true;
  }
  ASSERT_TRUE(reached);
  const Log course = Course(log_);
  EXPECT_EQ(course.back(), "complete 0");
  EXPECT_EQ(course[course.size() - 2], "over state 1") << "the target is told that the drag is off";
}

TEST_F(OleRealDragTest, WithTheEventsTheDragEnds) {
  auto events = std::make_shared<const OleDragEvents>(Logging());
  ASSERT_TRUE(target_.Register(onto_, {.dragOver =
                                           [&](OleData&, DWORD&, const BarMouse&, OleDragState) {
                                             ++told_;
                                             events.reset();
                                           },
                                       .dragDrop = {}}));
  std::atomic<bool> ended = false;
  bool endedByItself = false;
  {
    const Driver driver([&] {
      MoveAndBeTold({40, 40});
      endedByItself = WaitUntil([&] { return ended.load(); }, 5000,
                                [] {
                                  const POINT pointer = PointerPlace();
                                  MovePointer({pointer.x ^ 1, pointer.y});
                                });
      ReleaseMouse();
    });
    OleDrag(events);
    ended = true;
  }
  EXPECT_TRUE(endedByItself) << "with the button still held";
  EXPECT_EQ(Course(log_).front(), "start");
  EXPECT_NE(log_.back(), "complete 0") << "nobody is left to be told";
}

}  // namespace
}  // namespace snip::test
