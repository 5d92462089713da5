#include "platform/OleDragSource.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <memory>
#include <stdexcept>
#include <string>
#include <tuple>
#include <vector>

#include "platform/Clipboard.h"
#include "platform/OleDropTarget.h"
#include "tests/support/TestDesktop.h"

// What the two ends of a drag say when they are called. A real drag is in BnCommandBarTest.

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
  OleDropTarget::Listener Logging() {
    return {.dragOver =
                [this](OleData& data, DWORD& effect, const MouseState& mouse, OleDragState state) {
                  log_.push_back(Entry("over", effect, mouse) + " state " +
                                 std::to_string(static_cast<int>(state)) +
                                 (data.GetFormat(CF_TEXT) ? " text" : ""));
                  effect = answer_;
                },
            .dragDrop =
                [this](OleData& data, DWORD& effect, const MouseState& mouse) {
                  log_.push_back(Entry("drop", effect, mouse) + " " + data.GetText());
                  effect = answer_;
                }};
  }

  /// The target that a drag would find.
  IDropTarget* Registered() const {
    return static_cast<IDropTarget*>(GetPropA(window_.get(), "OleDropTargetInterface"));
  }
  POINTL At(LONG x, LONG y) const {
    POINT screen{x, y};
    ClientToScreen(window_.get(), &screen);
    return {screen.x, screen.y};
  }
  /// Drops the source's data; the effect that comes of it.
  DWORD Drop(IDropTarget* target, HRESULT expected = S_OK) {
    DWORD effect = kCopyOrMove;
    EXPECT_EQ(target->Drop(source_.dataObject(), 0, At(1, 1), &effect), expected);
    return effect;
  }

  OleThread ole_;
  const TestFrame window_{"onto"};
  Log log_;
  DWORD answer_ = DROPEFFECT_COPY;
  OleDropTarget target_;
  const std::shared_ptr<const OleDragEvents> events_ = std::make_shared<const OleDragEvents>(OleDragEvents{
      .OLEStartDrag = {},
      .OLESetData =
          [this](OleData& data, CLIPFORMAT format) {
            log_.push_back("set " + std::to_string(format));
            // Looking at what is not there yet does not ask again.
            EXPECT_EQ(data.GetText(format), "");
            data.SetText("on demand", format);
          },
      .OLEGiveFeedback = [](DWORD effect,
                            bool& defaultCursors) { defaultCursors = effect == DROPEFFECT_COPY; },
      .OLECompleteDrag = {}});
  OleDragSource source_{events_};
};

TEST_F(OleDragDropTest, ATargetTellsEnteringMovingLeavingAndDropping) {
  ASSERT_TRUE(target_.Register(window_.get(), Logging()));
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
  ASSERT_TRUE(target_.Register(window_.get(), Logging()));
  for (const auto& [allowed, keys, chosen] :
       std::vector<std::tuple<DWORD, DWORD, DWORD>>{{all, 0, DROPEFFECT_COPY},
                                                    {all, MK_CONTROL, DROPEFFECT_COPY},
                                                    {all, MK_SHIFT, DROPEFFECT_MOVE},
                                                    {all, MK_CONTROL | MK_SHIFT, DROPEFFECT_LINK},
                                                    {DROPEFFECT_MOVE, MK_CONTROL, DROPEFFECT_MOVE},
                                                    {DROPEFFECT_LINK, 0, DROPEFFECT_LINK},
                                                    {DROPEFFECT_NONE, 0, DROPEFFECT_NONE}}) {
    DWORD effect = allowed;
    Registered()->DragOver(MK_LBUTTON | keys, At(1, 1), &effect);
    EXPECT_EQ(effect, chosen | DROPEFFECT_SCROLL) << allowed << " " << keys;
  }
}

TEST_F(OleDragDropTest, ATargetOutlivesNeitherItsWindowNorItsRegistration) {
  ASSERT_TRUE(target_.Register(window_.get(), {}));
  EXPECT_EQ(Drop(Registered()), DWORD{DROPEFFECT_NONE}) << "nobody listens";
  OleDropTarget second;
  EXPECT_FALSE(second.Register(window_.get(), Logging())) << "a window has one target";
  EXPECT_FALSE(second.Register(nullptr, Logging()));
  const auto throws = [](OleData&, DWORD&, const MouseState&) { throw std::runtime_error("no"); };
  ASSERT_TRUE(target_.Register(window_.get(), {.dragOver = {}, .dragDrop = throws}));
  EXPECT_EQ(Drop(Registered(), E_UNEXPECTED), DWORD{DROPEFFECT_NONE});
  for (const bool destroys : {false, true}) {
    ASSERT_TRUE(target_.Register(window_.get(), Logging()));
    const auto kept = ComPtr<IDropTarget>::Share(Registered());
    ASSERT_TRUE(kept);
    if (destroys) {
      DestroyWindow(window_.get());
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
      window_.get(), {.dragOver = {}, .dragDrop = [&, held](OleData& data, DWORD& effect, const MouseState&) {
                        DestroyWindow(window_.get());
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
  const auto own = static_cast<CLIPFORMAT>(RegisterClipboardFormatA("BnSnippetName"));
  const std::vector<std::string> files = {"C:\\one.bns", "C:\\caf\xE9.bns"};
  EXPECT_TRUE(data.SetText("plain") && data.SetText("caf\xE9", CF_UNICODETEXT) && data.SetText("own", own) &&
              data.SetFiles(files));

  // As another program sees it.
  OleData seen(ComPtr<IDataObject>::Share(source_.dataObject()));
  EXPECT_FALSE(seen.GetFormat(CF_BITMAP));
  EXPECT_EQ(seen.GetText() + seen.GetText(CF_UNICODETEXT) + seen.GetText(own), "plaincaf\xE9own");
  EXPECT_EQ(seen.Files(), files);
  EXPECT_FALSE(seen.SetText("x") || seen.SetFiles({}) || seen.Offer(CF_TEXT) || seen.Clear());
  EXPECT_EQ(seen.GetText(), "plain") << "only the source changes what it drags";

  EXPECT_TRUE(data.SetFiles({}));
  EXPECT_FALSE(seen.GetFormat(CF_HDROP)) << "no files, no list";
  EXPECT_TRUE(data.Clear());
  EXPECT_FALSE(seen.GetFormat(CF_TEXT) || seen.GetFormat(own));
}

TEST_F(OleDragDropTest, OfferedDataAreListedAndAskedForOnce) {
  auto source = std::make_unique<const OleDragSource>(events_);
  const auto kept = ComPtr<IDataObject>::Share(source->dataObject());
  OleData data = source->Data();
  data.SetText("ready");
  data.Offer(CF_UNICODETEXT);
  data.Offer(CF_OEMTEXT);
  ComPtr<IEnumFORMATETC> formats;
  ASSERT_EQ(kept->EnumFormatEtc(DATADIR_GET, formats.Put()), S_OK);
  std::vector<int> listed;
  for (FORMATETC format{}; formats->Next(1, &format, nullptr) == S_OK;) listed.push_back(format.cfFormat);
  EXPECT_EQ(listed, (std::vector<int>{CF_TEXT, CF_OEMTEXT, CF_UNICODETEXT}));
  EXPECT_EQ(data.GetText(), "ready");
  EXPECT_EQ(log_, Log{});
  for (int time = 0; time < 2; ++time) EXPECT_EQ(data.GetText(CF_UNICODETEXT), "on demand");
  EXPECT_EQ(log_, (Log{"set 13"}));
  const auto ask = [&](CLIPFORMAT id, DWORD aspect, DWORD storage) {
    FORMATETC format{id, nullptr, aspect, -1, storage};
    STGMEDIUM medium{};
    return kept->GetData(&format, &medium);
  };
  EXPECT_EQ(ask(CF_TEXT, DVASPECT_CONTENT, TYMED_ISTREAM), DV_E_TYMED);
  EXPECT_EQ(ask(CF_TEXT, DVASPECT_ICON, TYMED_HGLOBAL), DV_E_DVASPECT);
  source.reset();
  EXPECT_EQ(ask(CF_OEMTEXT, DVASPECT_CONTENT, TYMED_HGLOBAL), DV_E_FORMATETC);
  EXPECT_EQ(data.GetText(), "ready");
  EXPECT_EQ(log_, (Log{"set 13"})) << "the drag is over: nobody is asked any more";
}

TEST_F(OleDragDropTest, ADragGoesOnUntilEscapeTheLastButtonOrTheEndOfItsEvents) {
  auto events = std::make_shared<const OleDragEvents>(*events_);
  const OleDragSource source(events);
  IDropSource* const drag = source.dropSource();
  EXPECT_EQ(drag->GiveFeedback(DROPEFFECT_COPY), DRAGDROP_S_USEDEFAULTCURSORS);
  EXPECT_EQ(drag->GiveFeedback(DROPEFFECT_MOVE), S_OK);
  for (const DWORD button : std::initializer_list<DWORD>{MK_LBUTTON, MK_RBUTTON, MK_MBUTTON})
    EXPECT_EQ(drag->QueryContinueDrag(FALSE, button | MK_CONTROL), S_OK);
  EXPECT_EQ(drag->QueryContinueDrag(FALSE, MK_SHIFT), DRAGDROP_S_DROP);
  EXPECT_EQ(drag->QueryContinueDrag(TRUE, MK_LBUTTON), DRAGDROP_S_CANCEL);
  events.reset();
  EXPECT_EQ(drag->QueryContinueDrag(FALSE, MK_LBUTTON), DRAGDROP_S_CANCEL);
  EXPECT_EQ(drag->GiveFeedback(DROPEFFECT_MOVE), DRAGDROP_S_USEDEFAULTCURSORS);
}

}  // namespace
}  // namespace snip::test
