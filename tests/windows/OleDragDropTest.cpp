#include "platform/OleDragSource.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <functional>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "platform/Clipboard.h"
#include "platform/OleDropTarget.h"
#include "tests/support/TestDesktop.h"

namespace snip::test {
namespace {

using Log = std::vector<std::string>;

constexpr DWORD kCopyOrMove = DROPEFFECT_COPY | DROPEFFECT_MOVE;

std::string Entry(const char* event, DWORD effect, const MouseState& mouse) {
  return std::string(event) + " effect " + std::to_string(effect) + " button " +
         std::to_string(mouse.Button) + " shift " + std::to_string(mouse.Shift) + " at " +
         std::to_string(mouse.at.x) + "," + std::to_string(mouse.at.y);
}

ULONG References(IUnknown* object) {
  object->AddRef();
  return object->Release();
}

class OleDragDropTest : public testing::Test {
 protected:
  ~OleDragDropTest() override {
    target_.Revoke();
    for (const HWND window : {onto_, from_}) DestroyWindow(window);
    ReleaseMouse();
  }

  static HWND MakeWindow(const char* title, int left) {
    return CreateWindowExA(WS_EX_TOPMOST, "STATIC", title, WS_OVERLAPPEDWINDOW | WS_VISIBLE | SS_NOTIFY, left,
                           60, 260, 200, nullptr, nullptr, nullptr, nullptr);
  }

  OleDropTarget::Listener Logging() {
    return {.dragOver =
                [this](OleData& data, DWORD& effect, const MouseState& mouse, OleDragState state) {
                  log_.push_back(Entry("over", effect, mouse) + " state " +
                                 std::to_string(static_cast<int>(state)) +
                                 (data.GetFormat(CF_TEXT) ? " text" : ""));
                  ++told_;
                  effect = answer_;
                  if (onOver_) onOver_();
                },
            .dragDrop =
                [this](OleData& data, DWORD& effect, const MouseState& mouse) {
                  log_.push_back(Entry("drop", effect, mouse) + " " + data.GetText());
                  effect = answer_;
                }};
  }

  /// The target that a drag would find.
  IDropTarget* Registered() const {
    return static_cast<IDropTarget*>(GetPropA(onto_, "OleDropTargetInterface"));
  }
  POINT Screen(POINT place) const {
    ClientToScreen(onto_, &place);
    return place;
  }
  POINTL At(LONG x, LONG y) const { return {Screen({x, y}).x, Screen({x, y}).y}; }
  /// Drops the source's data; the effect that comes of it.
  DWORD Drop(IDropTarget* target, HRESULT expected = S_OK) {
    DWORD effect = kCopyOrMove;
    EXPECT_EQ(target->Drop(source_.dataObject(), 0, At(1, 1), &effect), expected);
    return effect;
  }

  OleThread ole_;
  HWND from_ = MakeWindow("from", 40);
  HWND onto_ = MakeWindow("onto", 360);
  Log log_;
  std::atomic<int> told_ = 0;
  DWORD answer_ = DROPEFFECT_COPY;
  std::function<void()> onOver_;
  OleDropTarget target_;
  /// What the tests call a target with.
  OleDragSource source_{std::weak_ptr<const OleDragEvents>()};
};

TEST_F(OleDragDropTest, ATargetTellsEnteringMovingLeavingAndDropping) {
  ASSERT_TRUE(target_.Register(onto_, Logging()));
  IDropTarget* const target = Registered();
  source_.Data().SetText("hello");
  IDataObject* const data = source_.dataObject();
  const ULONG before = References(data);
  DWORD effects[] = {kCopyOrMove, DROPEFFECT_COPY, kCopyOrMove, kCopyOrMove};
  EXPECT_EQ(target->DragEnter(data, MK_LBUTTON, At(10, 20), &effects[0]), S_OK);
  answer_ = DROPEFFECT_MOVE;
  EXPECT_EQ(target->DragOver(MK_RBUTTON | MK_MBUTTON | MK_ALT, At(-1, 5), &effects[1]), S_OK);
  EXPECT_EQ(target->DragLeave(), S_OK);
  EXPECT_EQ(target->DragEnter(data, MK_RBUTTON, At(10, 20), &effects[2]), S_OK);
  EXPECT_EQ(target->Drop(data, MK_CONTROL, At(12, 21), &effects[3]), S_OK);
  // The second time the source does not allow what the listener wants.
  const DWORD expected[] = {DROPEFFECT_COPY, DROPEFFECT_NONE, DROPEFFECT_MOVE, DROPEFFECT_MOVE};
  EXPECT_TRUE(std::ranges::equal(effects, expected));
  EXPECT_EQ(References(data), before) << "what was dropped is let go";
  EXPECT_EQ(log_, (Log{"over effect 3 button 1 shift 0 at 10,20 state 0 text",
                       "over effect 1 button 6 shift 4 at -1,5 state 2 text",
                       "over effect 0 button 6 shift 4 at -1,5 state 1 text",
                       "over effect 3 button 2 shift 0 at 10,20 state 0 text",
                       "drop effect 3 button 2 shift 2 at 12,21 hello"}));
}

TEST_F(OleDragDropTest, OfSeveralEffectsTheKeysChoose) {
  constexpr DWORD all = DROPEFFECT_COPY | DROPEFFECT_MOVE | DROPEFFECT_LINK;
  answer_ = all | DROPEFFECT_SCROLL;
  ASSERT_TRUE(target_.Register(onto_, Logging()));
  struct Case {
    DWORD allowed;
    DWORD keys;
    DWORD chosen;
  };
  for (const Case& c : std::vector<Case>{{all, 0, DROPEFFECT_COPY},
                                         {all, MK_CONTROL, DROPEFFECT_COPY},
                                         {all, MK_SHIFT, DROPEFFECT_MOVE},
                                         {all, MK_CONTROL | MK_SHIFT, DROPEFFECT_LINK},
                                         {DROPEFFECT_MOVE, MK_CONTROL, DROPEFFECT_MOVE},
                                         {DROPEFFECT_LINK, 0, DROPEFFECT_LINK},
                                         {DROPEFFECT_NONE, 0, DROPEFFECT_NONE}}) {
    DWORD effect = c.allowed;
    Registered()->DragOver(MK_LBUTTON | c.keys, At(1, 1), &effect);
    EXPECT_EQ(effect, c.chosen | DROPEFFECT_SCROLL) << c.allowed << " " << c.keys;
  }
}

TEST_F(OleDragDropTest, ATargetOutlivesNeitherItsWindowNorItsRegistration) {
  ASSERT_TRUE(target_.Register(onto_, {}));
  EXPECT_EQ(Drop(Registered()), DWORD{DROPEFFECT_NONE}) << "nobody listens";
  OleDropTarget second;
  EXPECT_FALSE(second.Register(onto_, Logging())) << "a window has one target";
  EXPECT_FALSE(second.Register(nullptr, Logging()));
  const auto throws = [](OleData&, DWORD&, const MouseState&) { throw std::runtime_error("no"); };
  ASSERT_TRUE(target_.Register(onto_, {.dragOver = {}, .dragDrop = throws}));
  EXPECT_EQ(Drop(Registered(), E_UNEXPECTED), DWORD{DROPEFFECT_NONE});
  for (const bool destroys : {false, true}) {
    ASSERT_TRUE(target_.Register(onto_, Logging()));
    const auto kept = ComPtr<IDropTarget>::Share(Registered());
    ASSERT_TRUE(kept);
    if (destroys) {
      DestroyWindow(onto_);
    } else {
      target_.Revoke();
    }
    EXPECT_FALSE(target_.registered());
    EXPECT_EQ(References(kept.get()), 1U) << "only this test still has it";
    EXPECT_EQ(Drop(kept.get()), DWORD{DROPEFFECT_NONE});
    EXPECT_EQ(log_, Log{});
  }
}

TEST_F(OleDragDropTest, AListenerMayEndTheWindowAndTheTarget) {
  auto target = std::make_unique<OleDropTarget>();
  const auto held = std::make_shared<int>(7);
  int seen = 0;
  ASSERT_TRUE(target->Register(
      onto_, {.dragOver = {}, .dragDrop = [&, held](OleData& data, DWORD& effect, const MouseState&) {
                DestroyWindow(onto_);
                target.reset();
                // The listener itself and what it was given are still there.
                seen = *held;
                log_.push_back(data.GetText());
                effect = DROPEFFECT_MOVE;
              }}));
  source_.Data().SetText("last");
  EXPECT_EQ(Drop(Registered()), DWORD{DROPEFFECT_MOVE});
  EXPECT_EQ(seen, 7);
  EXPECT_EQ(log_, Log{"last"});
  EXPECT_EQ(held.use_count(), 1) << "the listener is gone with its target";
}

TEST_F(OleDragDropTest, DataKeepTextsAndFilesUntilCleared) {
  OleData data = source_.Data();
  EXPECT_EQ(data.GetText(), "");
  const auto own = static_cast<CLIPFORMAT>(RegisterClipboardFormatA("BnSnippetName"));
  const std::vector<std::string> files = {"C:\\one.bns", "C:\\caf\xE9.bns"};
  EXPECT_TRUE(data.SetText("plain") && data.SetText("caf\xE9", CF_UNICODETEXT) && data.SetText("own", own) &&
              data.SetFiles(files));

  // As another program sees it.
  OleData seen(ComPtr<IDataObject>::Share(source_.dataObject()));
  EXPECT_TRUE(seen.GetFormat(CF_TEXT) && seen.GetFormat(own) && seen.GetFormat(CF_HDROP));
  EXPECT_FALSE(seen.GetFormat(CF_BITMAP));
  EXPECT_EQ(seen.GetText() + seen.GetText(CF_UNICODETEXT) + seen.GetText(own), "plaincaf\xE9own");
  EXPECT_EQ(seen.Files(), files);
  EXPECT_FALSE(seen.SetText("x") || seen.SetFiles({}) || seen.Offer(CF_TEXT) || seen.Clear());
  EXPECT_EQ(seen.GetText(), "plain") << "only the source changes what it drags";

  EXPECT_TRUE(data.SetFiles({}));
  EXPECT_FALSE(seen.GetFormat(CF_HDROP)) << "no files, no list";
  EXPECT_TRUE(data.Clear());
  EXPECT_FALSE(seen.GetFormat(CF_TEXT) || seen.GetFormat(CF_UNICODETEXT) || seen.GetFormat(own));

  ASSERT_TRUE(CopyToClipboard(from_, "caf\xE9"));
  ComPtr<IDataObject> clipboard;
  ASSERT_EQ(OleGetClipboard(clipboard.Put()), S_OK);
  const OleData copied(std::move(clipboard));
  EXPECT_EQ(copied.GetText() + copied.GetText(CF_UNICODETEXT),
            "caf\xE9"
            "caf\xE9")
      << "the platform's own";
}

TEST_F(OleDragDropTest, OfferedDataAreListedAndAskedForOnce) {
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
    ComPtr<IEnumFORMATETC> formats;
    ASSERT_EQ(kept->EnumFormatEtc(DATADIR_GET, formats.Put()), S_OK);
    std::vector<int> listed;
    for (FORMATETC format{}; formats->Next(1, &format, nullptr) == S_OK;) listed.push_back(format.cfFormat);
    EXPECT_EQ(listed, (std::vector<int>{CF_TEXT, CF_OEMTEXT, CF_UNICODETEXT}));
    const OleData seen(ComPtr<IDataObject>::Share(kept.get()));
    EXPECT_EQ(seen.GetText(), "ready");
    EXPECT_EQ(log_, Log{});
    for (int time = 0; time < 2; ++time) EXPECT_EQ(seen.GetText(CF_UNICODETEXT), "on demand");
    EXPECT_EQ(log_, (Log{"set 13"}));
  }
  const auto ask = [&](CLIPFORMAT id, DWORD aspect, DWORD storage) {
    FORMATETC format{id, nullptr, aspect, -1, storage};
    STGMEDIUM medium{};
    return kept->GetData(&format, &medium);
  };
  EXPECT_EQ(ask(CF_TEXT, DVASPECT_CONTENT, TYMED_ISTREAM), DV_E_TYMED);
  EXPECT_EQ(ask(CF_TEXT, DVASPECT_ICON, TYMED_HGLOBAL), DV_E_DVASPECT);
  for (const CLIPFORMAT missing : {CLIPFORMAT{CF_DIB}, CLIPFORMAT{CF_OEMTEXT}})
    EXPECT_EQ(ask(missing, DVASPECT_CONTENT, TYMED_HGLOBAL), DV_E_FORMATETC);
  EXPECT_EQ(OleData(std::move(kept)).GetText(), "ready");
  EXPECT_EQ(log_, (Log{"set 13"})) << "the drag is over: nobody is asked any more";
}

TEST_F(OleDragDropTest, ARealDragEndsWithADropWithEscapeOrWithItsEvents) {
  ASSERT_TRUE(target_.Register(onto_, Logging()));
  const std::vector<std::pair<std::string, Log>> ends = {
      {"dropped", {"start", "over state 0", "feedback 1", "over state 2", "set 1", "drop", "complete 1"}},
      {"given up", {"start", "over state 0", "feedback 1", "over state 2", "over state 1", "complete 0"}},
      {"without events", {"start", "over state 0", "feedback 1", "over state 2", "over state 1"}}};
  for (const auto& [end, expected] : ends) {
    SCOPED_TRACE(end);
    log_.clear();
    told_ = 0;
    auto events = std::make_shared<const OleDragEvents>(OleDragEvents{
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
        .OLEGiveFeedback = [this](DWORD effect,
                                  bool&) { log_.push_back("feedback " + std::to_string(effect)); },
        .OLECompleteDrag = [this](DWORD effect) { log_.push_back("complete " + std::to_string(effect)); }});
    onOver_ = [&] {
      if (end == "without events" && told_ > 1) events.reset();
    };
    // A drag begins with a button held over the source.
    SetForegroundWindow(from_);
    PointAt(from_, {50, 50});
    PressMouse();
    ASSERT_TRUE(WaitUntil([] { return GetKeyState(VK_LBUTTON) < 0; }));
    std::atomic<bool> ended = false;
    {
      // The user beside the drag, which does not return before its end.
      const Driver driver([&] {
        POINT screen = Screen({40, 40});
        // The system may not see every step.
        const auto move = [&] {
          MovePointer(screen);
          screen.x ^= 1;
        };
        WaitUntil([&] { return told_ > 1; }, 5000, move);
        if (end == "dropped") ReleaseMouse();
        if (end == "given up") PressKey(VK_ESCAPE);
        EXPECT_TRUE(WaitUntil([&] { return ended.load(); }, 10000, move)) << "the button may be held on";
        ReleaseMouse();
      });
      OleDrag(events);
      ended = true;
    }
    WaitUntil([] { return GetKeyState(VK_LBUTTON) >= 0; });
    // Each kind of news once. Feedback of no effect comes on the way, or not; and where exactly the
    // drop is depends on how much of the way the system has seen.
    Log course;
    for (const std::string& entry : log_) {
      const bool drop =
          entry.starts_with("drop effect 3 button 1 shift 0 at ") && entry.ends_with(" dragged");
      const std::string kind = drop ? "drop"
                               : !entry.starts_with("over")
                                   ? entry
                                   : "over state " + entry.substr(entry.find("state ") + 6, 1);
      if (std::ranges::count(course, kind) == 0 && kind != "feedback 0") course.push_back(kind);
    }
    EXPECT_EQ(course, expected);
  }
}

}  // namespace
}  // namespace snip::test
