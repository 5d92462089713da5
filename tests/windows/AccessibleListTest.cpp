#include <gtest/gtest.h>

#include "platform/AccessibleList.h"

#include <atomic>
#include <functional>
#include <memory>
#include <new>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include "platform/Window.h"
#include "tests/support/AccessibleClient.h"
#include "tests/support/TestDesktop.h"

namespace snip::test {
namespace {

/// A bar with three buttons that exist for assistive programs alone.
class ThreeButtons : public Window, public AccessibleItems {
 public:
  ~ThreeButtons() override { Destroy(); }

  bool CreateAt(const Rect& place, HWND parent = nullptr) {
    Creation creation;
    creation.className = "ThreeButtons";
    creation.style = WS_VISIBLE | (parent != nullptr ? WS_CHILD : WS_POPUP | WS_BORDER);
    creation.place = place;
    creation.parent = parent;
    return Create(creation);
  }

  // AccessibleItems.
  AccessibleWhole DescribeWhole() const override { return {"Snippet bar", ROLE_SYSTEM_TOOLBAR, 0}; }
  int AccessibleCount() const override { return static_cast<int>(items.size()); }
  AccessibleItem DescribeItem(int item) const override {
    if (beforeAnswer) beforeAnswer();
    return items.at(static_cast<std::size_t>(item));
  }
  std::optional<int> FocusedItem() const override { return focused; }
  void FocusItem(int item) override { focused = item; }
  void DoDefaultAction(int item) override {
    pressed.push_back(item);
    pressedIn = GetCurrentThreadId();
    // Copied, as it may end this object.
    if (const std::function<void()> action = whenPressed) action();
  }

  AccessibleList accessible{*this, *this};
  std::vector<AccessibleItem> items = {
      {"New snippet", ROLE_SYSTEM_PUSHBUTTON, 0, {2, 3, 50, 20}, "Alt+N", "Press"},
      {"", ROLE_SYSTEM_SEPARATOR, 0, {52, 3, 8, 20}, "", ""},
      {"Na\xEFve",
       ROLE_SYSTEM_CHECKBUTTON,
       STATE_SYSTEM_CHECKED | STATE_SYSTEM_FOCUSABLE,
       {60, 3, 40, 20},
       "",
       "Uncheck"},
  };
  std::optional<int> focused;
  std::function<void()> beforeAnswer;
  std::function<void()> whenPressed;
  std::vector<int> pressed;
  DWORD pressedIn = 0;

 protected:
  LRESULT HandleMessage(UINT message, WPARAM wParam, LPARAM lParam) override {
    if (const std::optional<LRESULT> answer = accessible.Answer(message, wParam, lParam)) return *answer;
    return Window::HandleMessage(message, wParam, lParam);
  }
};

/// Runs a client's part in a thread of its own while this one, the window's, answers messages. Whatever the
/// client finds is to be looked at after that, here.
void InClientThread(const std::function<void()>& script) {
  const DWORD windowThread = GetCurrentThreadId();
  std::atomic<bool> done = false;
  const Driver driver([&] {
    {
      const ComApartment apartment;
      script();
    }
    done = true;
    PostThreadMessageA(windowThread, WM_NULL, 0, 0);
  });
  // A client makes thousands of calls: each is answered as it comes, not at the next look.
  while (!done) {
    MsgWaitForMultipleObjects(0, nullptr, FALSE, 100, QS_ALLINPUT);
    AnswerMessages();
  }
}

/// The references that an object has by now.
ULONG References(IUnknown* object) {
  object->AddRef();
  return object->Release();
}

/// A call of the object, about a child where it takes one.
struct Call {
  const char* name;
  std::function<HRESULT(IAccessible&, VARIANT)> run;
  bool takesChild = true;
};

template <class Result, class Method>
Call Asks(const char* name, Method method) {
  return {name, [method](IAccessible& object, VARIANT child) {
            Result result;
            return (object.*method)(child, result.Put());
          }};
}

template <class Result, class Method>
Call AsksWhole(const char* name, Method method) {
  return {name,
          [method](IAccessible& object, VARIANT) {
            Result result;
            return (object.*method)(result.Put());
          },
          false};
}

std::vector<Call> Calls() {
  LONG number = 0;
  return {
      Asks<ComPtr<IDispatch>>("child", &IAccessible::get_accChild),
      Asks<Bstr>("name", &IAccessible::get_accName),
      Asks<Bstr>("value", &IAccessible::get_accValue),
      Asks<Bstr>("description", &IAccessible::get_accDescription),
      Asks<Bstr>("help", &IAccessible::get_accHelp),
      Asks<Bstr>("shortcut", &IAccessible::get_accKeyboardShortcut),
      Asks<Bstr>("default action", &IAccessible::get_accDefaultAction),
      Asks<Variant>("role", &IAccessible::get_accRole),
      Asks<Variant>("state", &IAccessible::get_accState),
      {"help topic",
       [number](IAccessible& object, VARIANT child) mutable {
         return object.get_accHelpTopic(Bstr().Put(), child, &number);
       }},
      {"location",
       [number](IAccessible& object, VARIANT child) mutable {
         return object.accLocation(&number, &number, &number, &number, child);
       }},
      {"navigate", [](IAccessible& object,
                      VARIANT child) { return object.accNavigate(NAVDIR_NEXT, child, Variant().Put()); }},
      {"select", [](IAccessible& object, VARIANT child) { return object.accSelect(SELFLAG_NONE, child); }},
      {"press", [](IAccessible& object, VARIANT child) { return object.accDoDefaultAction(child); }},
      {"put name",
       [](IAccessible& object, VARIANT child) { return object.put_accName(child, Bstr("x").get()); }},
      {"put value",
       [](IAccessible& object, VARIANT child) { return object.put_accValue(child, Bstr("x").get()); }},
      AsksWhole<ComPtr<IDispatch>>("parent", &IAccessible::get_accParent),
      AsksWhole<Variant>("focus", &IAccessible::get_accFocus),
      AsksWhole<Variant>("selection", &IAccessible::get_accSelection),
      {"count", [number](IAccessible& object, VARIANT) mutable { return object.get_accChildCount(&number); },
       false},
      {"hit test", [](IAccessible& object, VARIANT) { return object.accHitTest(130, 110, Variant().Put()); },
       false},
  };
}

HRESULT CountOf(const AccessibleClient& client) {
  LONG count = 0;
  return client->get_accChildCount(&count);
}

class AccessibleListTest : public testing::Test {
 protected:
  void SetUp() override { ASSERT_TRUE(bar_->CreateAt({100, 100, 200, 40})); }

  std::vector<int> PressedByNow() {
    AnswerMessages();
    return bar_->pressed;
  }

  ComApartment apartment_;
  std::unique_ptr<ThreeButtons> bar_ = std::make_unique<ThreeButtons>();
};

TEST_F(AccessibleListTest, ClientsInOtherThreadsReadAndPress) {
  std::vector<AccessibleChild> children;
  AccessibleChild whole;
  InClientThread([&] {
    const AccessibleClient client(bar_->hWnd());
    children = client.Children();
    whole = client.Child(CHILDID_SELF);
    client.Press("Na\xEFve");
  });
  ASSERT_EQ(children.size(), 3U);
  EXPECT_EQ(children[0].name + children[0].shortcut + children[0].defaultAction, "New snippetAlt+NPress");
  EXPECT_EQ(children[0].role, ROLE_SYSTEM_PUSHBUTTON);
  EXPECT_EQ(children[1].role, ROLE_SYSTEM_SEPARATOR);
  EXPECT_EQ(children[2].name + children[2].shortcut + children[2].defaultAction, "Na\xEFveUncheck");
  EXPECT_EQ(children[2].state, STATE_SYSTEM_CHECKED | STATE_SYSTEM_FOCUSABLE);
  // The border is not part of the client area.
  EXPECT_EQ(children[2].place, (Rect{161, 104, 40, 20}));
  EXPECT_EQ(whole.place, (Rect{101, 101, 198, 38}));
  EXPECT_EQ(whole.name, "Snippet bar");
  EXPECT_EQ(whole.role, ROLE_SYSTEM_TOOLBAR);
  ASSERT_TRUE(WaitUntil([&] { return bar_->pressed == std::vector<int>{2}; }));
  EXPECT_EQ(bar_->pressedIn, GetCurrentThreadId());
}

TEST_F(AccessibleListTest, APressThatOpensSomethingModalDoesNotHoldTheClientUp) {
  std::atomic<bool> returned = false;
  bool sawReturn = false;
  bar_->whenPressed = [&] { sawReturn = WaitUntil([&] { return returned.load(); }, 5000); };
  InClientThread([&] {
    AccessibleClient(bar_->hWnd()).Press("New snippet");
    returned = true;
  });
  ASSERT_TRUE(WaitUntil([&] { return !bar_->pressed.empty(); }));
  EXPECT_TRUE(sawReturn);
}

/// The child that a call has told; -1 when it has told none, with S_FALSE, and -2 for anything amiss.
LONG ChildTold(HRESULT result, const Variant& child) {
  if (result == S_FALSE && child.empty()) return -1;
  return result == S_OK && child.Is(child.get().lVal) ? child.get().lVal : -2;
}

TEST_F(AccessibleListTest, APointOfTheScreenLeadsToItsItem) {
  const AccessibleClient client(bar_->hWnd());
  const auto childAt = [&](POINT at) {
    ClientToScreen(bar_->hWnd(), &at);
    Variant child(77);
    const HRESULT result = client->accHitTest(at.x, at.y, child.Put());
    return ChildTold(result, child);
  };
  const std::vector<std::pair<POINT, LONG>> cases = {
      {{2, 3}, 1}, {{51, 22}, 1}, {{52, 3}, 2}, {{100, 22}, 0}, {{99, 23}, 0}, {{-1, 3}, -1}, {{50, 38}, -1},
  };
  for (const auto& [at, child] : cases) EXPECT_EQ(childAt(at), child) << at.x << ", " << at.y;
  // What is cut off at the window's edge is not there to be pointed at.
  bar_->items[2].place.width = 500;
  EXPECT_EQ(childAt({197, 10}), 3);
  EXPECT_EQ(childAt({198, 10}), -1);
}

TEST_F(AccessibleListTest, NavigationFollowsTheOrderOfTheItems) {
  const AccessibleClient client(bar_->hWnd());
  struct Case {
    LONG direction;
    LONG from;
    HRESULT result;
    LONG to = -1;
  };
  const auto navigate = [&](const std::vector<Case>& cases) {
    for (const auto& [direction, from, expected, to] : cases) {
      Variant end(77);
      const HRESULT result = client->accNavigate(direction, Variant(from).get(), end.Put());
      EXPECT_EQ(result, expected) << direction << " from " << from;
      EXPECT_EQ(SUCCEEDED(result) ? ChildTold(result, end) : -1, to) << direction << " from " << from;
    }
  };
  navigate({
      {NAVDIR_FIRSTCHILD, 0, S_OK, 1},
      {NAVDIR_LASTCHILD, 0, S_OK, 3},
      {NAVDIR_NEXT, 1, S_OK, 2},
      {NAVDIR_NEXT, 2, S_OK, 3},
      {NAVDIR_NEXT, 3, S_FALSE},
      {NAVDIR_PREVIOUS, 3, S_OK, 2},
      {NAVDIR_PREVIOUS, 1, S_FALSE},
      {NAVDIR_NEXT, 0, S_FALSE},
      {NAVDIR_FIRSTCHILD, 1, E_INVALIDARG},
      {NAVDIR_LEFT, 2, DISP_E_MEMBERNOTFOUND},
      {NAVDIR_MAX, 2, E_INVALIDARG},
      {NAVDIR_MIN, 0, E_INVALIDARG},
  });
  bar_->items.clear();
  navigate({{NAVDIR_FIRSTCHILD, 0, S_FALSE}, {NAVDIR_LASTCHILD, 0, S_FALSE}});
  EXPECT_TRUE(client.Children().empty());
}

TEST_F(AccessibleListTest, StatesOfTheWindowShowInItsItems) {
  const AccessibleClient client(bar_->hWnd());
  constexpr LONG kOwn = STATE_SYSTEM_CHECKED | STATE_SYSTEM_FOCUSABLE;
  const HWND window = bar_->hWnd();
  SetFocus(nullptr);
  struct Case {
    const char* name;
    std::function<void()> change;
    LONG first;
    LONG third;
    LONG whole;
  };
  const std::vector<Case> cases = {
      {"as made", [] {}, 0, kOwn, 0},
      {"half outside", [&] { bar_->items[2].place.left = 197; }, 0, kOwn, 0},
      {"outside", [&] { bar_->items[2].place.left = 198; }, 0, kOwn | STATE_SYSTEM_OFFSCREEN, 0},
      {"hidden", [&] { bar_->items[2].place.left = 60, ShowWindow(window, SW_HIDE); }, STATE_SYSTEM_INVISIBLE,
       kOwn | STATE_SYSTEM_INVISIBLE, STATE_SYSTEM_INVISIBLE},
      {"disabled", [&] { ShowWindow(window, SW_SHOWNA), EnableWindow(window, FALSE); },
       STATE_SYSTEM_UNAVAILABLE, kOwn | STATE_SYSTEM_UNAVAILABLE, STATE_SYSTEM_UNAVAILABLE},
      {"with the keyboard", [&] { EnableWindow(window, TRUE), SetFocus(window); }, 0, kOwn,
       STATE_SYSTEM_FOCUSED},
      {"with a focused item", [&] { bar_->focused = 2; }, 0, kOwn | STATE_SYSTEM_FOCUSED,
       STATE_SYSTEM_FOCUSED},
  };
  for (const Case& now : cases) {
    now.change();
    EXPECT_EQ(client.Child(1).state, now.first) << now.name;
    EXPECT_EQ(client.Child(3).state, now.third) << now.name;
    EXPECT_EQ(client.Child(CHILDID_SELF).state, now.whole) << now.name;
  }
}

TEST_F(AccessibleListTest, FocusIsToldAndGiven) {
  const AccessibleClient client(bar_->hWnd());
  const auto focus = [&] {
    Variant child(77);
    const HRESULT result = client->get_accFocus(child.Put());
    return ChildTold(result, child);
  };
  SetFocus(nullptr);
  EXPECT_EQ(focus(), -1);
  SetFocus(bar_->hWnd());
  EXPECT_EQ(focus(), CHILDID_SELF);

  const auto select = [&](LONG flags, LONG id) { return client->accSelect(flags, Variant(id).get()); };
  EXPECT_EQ(select(SELFLAG_TAKEFOCUS, 3), S_OK);
  EXPECT_EQ(bar_->focused, 2);
  EXPECT_EQ(focus(), 3);
  EXPECT_EQ(select(SELFLAG_TAKEFOCUS, 1), DISP_E_MEMBERNOTFOUND);
  EXPECT_EQ(bar_->focused, 2);
  bar_->focused.reset();
  bar_->items[2].state |= STATE_SYSTEM_UNAVAILABLE;
  EXPECT_EQ(select(SELFLAG_TAKEFOCUS, 3), DISP_E_MEMBERNOTFOUND);
  EXPECT_EQ(select(SELFLAG_TAKESELECTION, 1), DISP_E_MEMBERNOTFOUND);
  EXPECT_EQ(select(SELFLAG_NONE, 1), S_OK);
  EXPECT_EQ(select(0x20, 1), E_INVALIDARG);
  EXPECT_EQ(select(0x20, CHILDID_SELF), E_INVALIDARG);
  EXPECT_FALSE(bar_->focused.has_value());
  Variant selected(77);
  EXPECT_EQ(client->get_accSelection(selected.Put()), S_FALSE);
  EXPECT_TRUE(selected.empty());
}

TEST_F(AccessibleListTest, WhatCannotBePressedIsNotPressed) {
  const AccessibleClient client(bar_->hWnd());
  const auto press = [&](LONG id) { return client->accDoDefaultAction(Variant(id).get()); };
  bar_->items[0].state = STATE_SYSTEM_UNAVAILABLE;
  for (const LONG id : {0, 1, 2}) EXPECT_EQ(press(id), DISP_E_MEMBERNOTFOUND) << id;
  // What became impossible between the request and its turn.
  EXPECT_EQ(press(3), S_OK);
  bar_->items[2].state = STATE_SYSTEM_UNAVAILABLE;
  EXPECT_TRUE(PressedByNow().empty());
  bar_->items[2].state = 0;
  EXPECT_EQ(press(3), S_OK);
  bar_->items.resize(1);
  EXPECT_TRUE(PressedByNow().empty());
  bar_->items[0].state = 0;
  EXPECT_EQ(press(1), S_OK);
  EXPECT_EQ(PressedByNow(), std::vector<int>{0});
}

TEST_F(AccessibleListTest, BehindAModalWindowNothingIsPressed) {
  const HWND frame = CreateWindowExA(0, "STATIC", "frame", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 100, 200, 300,
                                     200, nullptr, nullptr, nullptr, nullptr);
  bar_->Destroy();
  ASSERT_TRUE(bar_->CreateAt({0, 0, 200, 40}, frame));
  const AccessibleClient client(bar_->hWnd());
  EXPECT_TRUE(client.Press("New snippet"));
  EnableWindow(frame, FALSE);
  EXPECT_TRUE(PressedByNow().empty());
  EXPECT_FALSE(client.Press("New snippet"));
  EXPECT_TRUE(client.Child(1).Has(STATE_SYSTEM_UNAVAILABLE));
  EnableWindow(frame, TRUE);
  EXPECT_TRUE(client.Press("New snippet"));
  EXPECT_EQ(PressedByNow(), std::vector<int>{0});
  bar_->Destroy();
  DestroyWindow(frame);
}

TEST_F(AccessibleListTest, RefusesWhatIsNoChildAndWhatHasNoPlaceForTheAnswer) {
  const AccessibleClient client(bar_->hWnd());
  VARIANT shortNumber{};
  shortNumber.vt = VT_I2;
  shortNumber.iVal = 1;
  for (const Call& call : Calls()) {
    SCOPED_TRACE(call.name);
    if (!call.takesChild) continue;
    for (const LONG wrong : {4L, -1L, static_cast<long>(MAXLONG), static_cast<long>(MINLONG)}) {
      EXPECT_EQ(call.run(*client.get(), Variant(wrong).get()), E_INVALIDARG) << wrong;
    }
    EXPECT_EQ(call.run(*client.get(), shortNumber), E_INVALIDARG);
    EXPECT_EQ(call.run(*client.get(), VARIANT{}), E_INVALIDARG);
    for (const LONG right : {3, 0}) EXPECT_NE(call.run(*client.get(), Variant(right).get()), E_INVALIDARG);
  }
  EXPECT_EQ(PressedByNow(), std::vector<int>{2});  // By the one valid number.

  const VARIANT self = Variant(CHILDID_SELF).Detach();
  LONG number = 0;
  EXPECT_EQ(client->get_accName(self, nullptr), E_POINTER);
  EXPECT_EQ(client->get_accState(self, nullptr), E_POINTER);
  EXPECT_EQ(client->get_accChildCount(nullptr), E_POINTER);
  EXPECT_EQ(client->get_accParent(nullptr), E_POINTER);
  EXPECT_EQ(client->get_accHelpTopic(nullptr, self, &number), E_POINTER);
  EXPECT_EQ(client->accLocation(&number, &number, nullptr, &number, self), E_POINTER);
  EXPECT_EQ(client->QueryInterface(__uuidof(IAccessible), nullptr), E_POINTER);
}

TEST_F(AccessibleListTest, IsTheObjectOfTheClientArea) {
  const AccessibleClient client(bar_->hWnd());
  ComPtr<IDispatch> parent;
  ASSERT_EQ(client->get_accParent(parent.Put()), S_OK);
  EXPECT_NE(parent.get(), client.get());
  HWND itsWindow = nullptr;
  EXPECT_EQ(WindowFromAccessibleObject(parent.As<IAccessible>().get(), &itsWindow), S_OK);
  EXPECT_EQ(itsWindow, bar_->hWnd());
  EXPECT_EQ(SendMessageA(bar_->hWnd(), WM_GETOBJECT, 0, OBJID_WINDOW), 0);
  // The object's number may be extended to 64 bits either way.
  for (const LPARAM number :
       {static_cast<LPARAM>(OBJID_CLIENT), static_cast<LPARAM>(static_cast<DWORD>(OBJID_CLIENT))}) {
    ComPtr<IAccessible> answer;
    const LRESULT told = SendMessageA(bar_->hWnd(), WM_GETOBJECT, 0, number);
    EXPECT_EQ(ObjectFromLresult(told, __uuidof(IAccessible), 0, answer.PutVoid()), S_OK);
    EXPECT_EQ(answer.get(), client.get());
  }
  // A script asks by the name of the property.
  wchar_t name[] = L"accName";
  LPOLESTR names[] = {name};
  DISPID id = 0;
  ASSERT_EQ(client->GetIDsOfNames(GUID_NULL, names, 1, LOCALE_USER_DEFAULT, &id), S_OK);
  VARIANT child = Variant(1).Detach();
  DISPPARAMS arguments{&child, nullptr, 1, 0};
  Variant result;
  ASSERT_EQ(client->Invoke(id, GUID_NULL, LOCALE_USER_DEFAULT, DISPATCH_PROPERTYGET, &arguments, result.Put(),
                           nullptr, nullptr),
            S_OK);
  Bstr text;
  text.Reset(result.Detach().bstrVal);
  EXPECT_EQ(text.Text(), "New snippet");
}

/// Visits every block that is allocated on a heap of the process. `visit` must not allocate.
template <class Visit>
void ForEachBlock(Visit visit) {
  HANDLE heaps[64]{};
  const DWORD count = std::min<DWORD>(GetProcessHeaps(64, heaps), 64);
  for (DWORD i = 0; i < count; ++i) {
    HeapLock(heaps[i]);
    PROCESS_HEAP_ENTRY entry{};
    while (HeapWalk(heaps[i], &entry) != 0) {
      if ((entry.wFlags & PROCESS_HEAP_ENTRY_BUSY) != 0) visit(entry);
    }
    HeapUnlock(heaps[i]);
  }
}

std::size_t BytesInUse() {
  std::size_t bytes = 0;
  ForEachBlock([&](const PROCESS_HEAP_ENTRY& block) { bytes += block.cbData; });
  return bytes;
}

bool IsAllocated(const void* address) {
  bool found = false;
  ForEachBlock([&](const PROCESS_HEAP_ENTRY& block) {
    const auto* start = static_cast<const char*>(block.lpData);
    found = found || (address >= start && address < start + block.cbData);
  });
  return found;
}

TEST_F(AccessibleListTest, AReferenceKeptBeyondTheWindowIsToldSo) {
  AccessibleClient client(bar_->hWnd());
  for (const Call& call : Calls()) EXPECT_NE(call.run(*client.get(), {}), CO_E_OBJNOTCONNECTED) << call.name;
  bar_->Destroy();
  for (const Call& call : Calls()) {
    for (const LONG child : {0, 1}) {
      EXPECT_EQ(call.run(*client.get(), Variant(child).get()), CO_E_OBJNOTCONNECTED) << call.name;
    }
  }
  bar_->accessible.Notify(EVENT_OBJECT_STATECHANGE, 0);
  // Made again it is a new window to clients.
  ASSERT_TRUE(bar_->CreateAt({100, 100, 200, 40}));
  EXPECT_EQ(CountOf(client), CO_E_OBJNOTCONNECTED);
  EXPECT_EQ(AccessibleClient(bar_->hWnd()).Children().size(), 3U);

  // Nobody else keeps it: with the last reference it goes.
  const void* const object = client.get();
  bar_.reset();
  EXPECT_TRUE(IsAllocated(object));
  client.Reset();
  EXPECT_FALSE(IsAllocated(object));
}

TEST_F(AccessibleListTest, AClientElsewhereLosesItsReferenceWithTheWindow) {
  const AccessibleClient here(bar_->hWnd());
  HRESULT before = E_UNEXPECTED;
  HRESULT after = S_OK;
  bool gone = false;
  ULONG left = 0;
  InClientThread([&] {
    const AccessibleClient client(bar_->hWnd());
    before = CountOf(client);
    const HWND window = bar_->hWnd();
    PostMessageA(window, WM_CLOSE, 0, 0);
    gone = WaitUntil([&] { return IsWindow(window) == 0; }, 10000, [] {});
    // A client that keeps what it has until its own end keeps nothing alive by that.
    WaitUntil([&] { return (left = References(here.get())) == 1; }, 3000, [] {});
    after = CountOf(client);
  });
  EXPECT_EQ(before, S_OK);
  EXPECT_TRUE(gone);
  EXPECT_EQ(left, 1U);
  EXPECT_TRUE(FAILED(after)) << after;
}

TEST_F(AccessibleListTest, APressMayEndTheBar) {
  const AccessibleClient client(bar_->hWnd());
  const HWND window = bar_->hWnd();
  bar_->whenPressed = [&] { bar_.reset(); };
  EXPECT_TRUE(client.Press("New snippet"));
  AnswerMessages();
  EXPECT_EQ(IsWindow(window), 0);
  EXPECT_EQ(CountOf(client), CO_E_OBJNOTCONNECTED);
}

TEST_F(AccessibleListTest, NoExceptionReachesAClient) {
  const AccessibleClient client(bar_->hWnd());
  Bstr name;
  bar_->beforeAnswer = [] { throw std::runtime_error("cannot tell"); };
  EXPECT_EQ(client->get_accName(Variant(1).get(), name.Put()), E_UNEXPECTED);
  bar_->beforeAnswer = [] { throw std::bad_alloc(); };
  EXPECT_EQ(client->get_accName(Variant(1).get(), name.Put()), E_OUTOFMEMORY);
  EXPECT_EQ(name.get(), nullptr);
  bar_->beforeAnswer = nullptr;
  EXPECT_EQ(client->get_accName(Variant(1).get(), name.Put()), S_OK);
}

TEST_F(AccessibleListTest, QueriesLeaveNothingBehind) {
  const AccessibleClient client(bar_->hWnd());
  const std::vector<Call> calls = Calls();
  const auto askEverything = [&](int times) {
    for (int i = 0; i < times; ++i) {
      // Neither of the two can be pressed.
      for (const Call& call : calls) {
        for (const LONG child : {0, 2}) call.run(*client.get(), Variant(child).get());
      }
      for (const auto method : {&IAccessible::get_accName, &IAccessible::get_accKeyboardShortcut,
                                &IAccessible::get_accDefaultAction}) {
        Bstr text;
        (client.get()->*method)(Variant(1).get(), text.Put());
      }
    }
  };
  // What is made once, such as the system's caches, is made by the first round.
  askEverything(20);
  const ULONG references = References(client.get());
  const std::size_t before = BytesInUse();
  constexpr int kRounds = 200;
  askEverything(kRounds);
  // A leak in a single one of the calls would be of kRounds allocations.
  EXPECT_LT(BytesInUse(), before + std::size_t{8} * kRounds);
  InClientThread([&] {
    const AccessibleClient reader(bar_->hWnd());
    for (int i = 0; i < 200; ++i) reader.Child(1 + i % 3);
  });
  EXPECT_TRUE(WaitUntil([&] { return References(client.get()) == references; })) << References(client.get());
}

/// The events of one window that a screen reader hears, one after the other: "event child". The system's
/// callback has no parameter for its owner, so that there is only one at a time.
class WinEventRecorder {
 public:
  explicit WinEventRecorder(HWND window)
      : hook_(SetWinEventHook(EVENT_SYSTEM_MENUPOPUPSTART, EVENT_OBJECT_NAMECHANGE, nullptr, &Receive,
                              GetCurrentProcessId(), 0, WINEVENT_OUTOFCONTEXT)) {
    heard = {};
    listenedTo = window;
  }
  ~WinEventRecorder() { UnhookWinEvent(hook_); }
  WinEventRecorder(const WinEventRecorder&) = delete;
  WinEventRecorder& operator=(const WinEventRecorder&) = delete;

  inline static std::vector<std::pair<DWORD, LONG>> heard;

 private:
  static void CALLBACK Receive(HWINEVENTHOOK, DWORD event, HWND window, LONG object, LONG child, DWORD,
                               DWORD) {
    if (window == listenedTo && object == OBJID_CLIENT) heard.emplace_back(event, child);
  }

  inline static HWND listenedTo;
  HWINEVENTHOOK hook_;
};

TEST_F(AccessibleListTest, ChangesAreAnnounced) {
  AnswerMessages();
  const std::vector<std::pair<DWORD, LONG>> events = {{EVENT_SYSTEM_MENUPOPUPSTART, CHILDID_SELF},
                                                      {EVENT_OBJECT_FOCUS, 3},
                                                      {EVENT_OBJECT_STATECHANGE, 1},
                                                      {EVENT_OBJECT_NAMECHANGE, 2},
                                                      {EVENT_OBJECT_REORDER, CHILDID_SELF},
                                                      {EVENT_SYSTEM_MENUPOPUPEND, CHILDID_SELF}};
  std::atomic<bool> listening = false;
  {
    const Driver driver([&] {
      const WinEventRecorder recorder(bar_->hWnd());
      listening = true;
      WaitUntil([&] { return WinEventRecorder::heard.size() >= events.size(); });
    });
    EXPECT_TRUE(WaitUntil([&] { return listening.load(); }));
    // Wine: a thread learns of a new listener with the next message that it takes out of its queue.
    PostThreadMessageA(GetCurrentThreadId(), WM_NULL, 0, 0);
    AnswerMessages();
    for (const auto& [event, child] : events) {
      if (child == CHILDID_SELF) {
        bar_->accessible.Notify(event);
      } else {
        bar_->accessible.Notify(event, static_cast<int>(child) - 1);
      }
    }
  }
  EXPECT_EQ(WinEventRecorder::heard, events);
}

}  // namespace
}  // namespace snip::test
