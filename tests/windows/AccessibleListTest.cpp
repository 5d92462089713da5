#include <gtest/gtest.h>

#include "platform/AccessibleList.h"

#include <algorithm>
#include <atomic>
#include <functional>
#include <memory>
#include <new>
#include <stdexcept>
#include <thread>
#include <vector>

#include "platform/Handle.h"
#include "platform/Win32Text.h"
#include "platform/Window.h"
#include "tests/windows/AccessibleClient.h"
#include "tests/windows/AccessibleClientProgram.h"
#include "tests/windows/TestDesktop.h"

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

/// A call that takes a child's number, by its name.
struct ChildCall {
  const char* name;
  std::function<HRESULT(IAccessible&, VARIANT)> run;
};

template <class Method>
std::function<HRESULT(IAccessible&, VARIANT)> Text(Method method) {
  return [method](IAccessible& object, VARIANT child) {
    Bstr text;
    return (object.*method)(child, text.Put());
  };
}

template <class Method>
std::function<HRESULT(IAccessible&, VARIANT)> Value(Method method) {
  return [method](IAccessible& object, VARIANT child) {
    Variant value;
    return (object.*method)(child, value.Put());
  };
}

std::vector<ChildCall> ChildCalls() {
  return {
      {"child",
       [](IAccessible& object, VARIANT child) {
         ComPtr<IDispatch> dispatch;
         return object.get_accChild(child, dispatch.Put());
       }},
      {"name", Text(&IAccessible::get_accName)},
      {"value", Text(&IAccessible::get_accValue)},
      {"description", Text(&IAccessible::get_accDescription)},
      {"help", Text(&IAccessible::get_accHelp)},
      {"shortcut", Text(&IAccessible::get_accKeyboardShortcut)},
      {"default action", Text(&IAccessible::get_accDefaultAction)},
      {"role", Value(&IAccessible::get_accRole)},
      {"state", Value(&IAccessible::get_accState)},
      {"help topic",
       [](IAccessible& object, VARIANT child) {
         Bstr file;
         LONG topic = 0;
         return object.get_accHelpTopic(file.Put(), child, &topic);
       }},
      {"location",
       [](IAccessible& object, VARIANT child) {
         LONG number = 0;
         return object.accLocation(&number, &number, &number, &number, child);
       }},
      {"navigate",
       [](IAccessible& object, VARIANT child) {
         Variant end;
         return object.accNavigate(NAVDIR_NEXT, child, end.Put());
       }},
      {"select", [](IAccessible& object, VARIANT child) { return object.accSelect(SELFLAG_NONE, child); }},
      {"press", [](IAccessible& object, VARIANT child) { return object.accDoDefaultAction(child); }},
      {"put name",
       [](IAccessible& object, VARIANT child) { return object.put_accName(child, Bstr("x").get()); }},
      {"put value",
       [](IAccessible& object, VARIANT child) { return object.put_accValue(child, Bstr("x").get()); }},
  };
}

/// The calls that take none.
std::vector<ChildCall> WholeCalls() {
  return {
      {"parent",
       [](IAccessible& object, VARIANT) {
         ComPtr<IDispatch> parent;
         return object.get_accParent(parent.Put());
       }},
      {"count",
       [](IAccessible& object, VARIANT) {
         LONG count = 0;
         return object.get_accChildCount(&count);
       }},
      {"focus",
       [](IAccessible& object, VARIANT) {
         Variant child;
         return object.get_accFocus(child.Put());
       }},
      {"selection",
       [](IAccessible& object, VARIANT) {
         Variant children;
         return object.get_accSelection(children.Put());
       }},
      {"hit test",
       [](IAccessible& object, VARIANT) {
         Variant child;
         return object.accHitTest(130, 110, child.Put());
       }},
  };
}

class AccessibleListTest : public testing::Test {
 protected:
  void SetUp() override { ASSERT_TRUE(bar_->CreateAt({100, 100, 200, 40})); }

  Rect OnScreen(const Rect& client) const {
    POINT corner{client.left, client.top};
    ClientToScreen(bar_->hWnd(), &corner);
    return {static_cast<int>(corner.x), static_cast<int>(corner.y), client.width, client.height};
  }
  Variant ChildAt(const AccessibleClient& client, Point place) const {
    const Rect screen = OnScreen({place.x, place.y, 0, 0});
    Variant child(77);
    EXPECT_HRESULT_SUCCEEDED(client->accHitTest(screen.left, screen.top, child.Put()));
    return child;
  }

  ComApartment apartment_;
  std::unique_ptr<ThreeButtons> bar_ = std::make_unique<ThreeButtons>();
};

void ExpectTheThreeButtons(const std::vector<AccessibleChild>& children, const std::vector<Rect>& places) {
  ASSERT_EQ(children.size(), 3U);
  EXPECT_EQ(children[0].name, "New snippet");
  EXPECT_EQ(children[0].role, ROLE_SYSTEM_PUSHBUTTON);
  EXPECT_EQ(children[0].state, 0);
  EXPECT_EQ(children[0].shortcut, "Alt+N");
  EXPECT_EQ(children[0].defaultAction, "Press");
  EXPECT_EQ(children[1].name, "");
  EXPECT_EQ(children[1].role, ROLE_SYSTEM_SEPARATOR);
  EXPECT_EQ(children[1].defaultAction, "");
  EXPECT_EQ(children[2].name, "Na\xEFve");
  EXPECT_EQ(children[2].role, ROLE_SYSTEM_CHECKBUTTON);
  EXPECT_EQ(children[2].state, STATE_SYSTEM_CHECKED | STATE_SYSTEM_FOCUSABLE);
  EXPECT_EQ(children[2].shortcut, "");
  for (std::size_t i = 0; i < 3; ++i) EXPECT_EQ(children[i].place, places[i]) << i;
}

TEST_F(AccessibleListTest, AClientInAnotherThreadReadsEveryItem) {
  std::vector<AccessibleChild> children;
  AccessibleChild whole;
  InClientThread([&] {
    const AccessibleClient client(bar_->hWnd());
    children = client.Children();
    whole = client.Child(CHILDID_SELF);
  });
  ExpectTheThreeButtons(children,
                        {OnScreen({2, 3, 50, 20}), OnScreen({52, 3, 8, 20}), OnScreen({60, 3, 40, 20})});
  EXPECT_EQ(whole.name, "Snippet bar");
  EXPECT_EQ(whole.role, ROLE_SYSTEM_TOOLBAR);
  EXPECT_FALSE(whole.Has(STATE_SYSTEM_INVISIBLE));
  // The border is not part of the client area.
  EXPECT_EQ(whole.place, OnScreen({0, 0, 198, 38}));
  EXPECT_EQ(whole.place.left, 101);
}

TEST_F(AccessibleListTest, APressArrivesInTheWindowsThread) {
  bool pressed = false;
  InClientThread([&] { pressed = AccessibleClient(bar_->hWnd()).Press("Na\xEFve"); });
  EXPECT_TRUE(pressed);
  ASSERT_TRUE(WaitUntil([&] { return !bar_->pressed.empty(); }));
  EXPECT_EQ(bar_->pressed, std::vector<int>{2});
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

TEST_F(AccessibleListTest, AClientInAnotherProcessReadsAndPresses) {
  bar_->items[2].name = "Wrap";
  bar_->items[1].state = STATE_SYSTEM_UNAVAILABLE;
  const ProgramResult listed = RunClientProgram(bar_->hWnd());
  EXPECT_EQ(listed.exitCode, 0U);
  EXPECT_EQ(listed.output,
            "1|New snippet|role 43|state 0|Alt+N|Press|103,104 50x20\n"
            "2||role 21|state 1|||153,104 8x20\n"
            "3|Wrap|role 44|state 100010||Uncheck|161,104 40x20\n");

  EXPECT_EQ(RunClientProgram(bar_->hWnd(), "New snippet").exitCode, 0U);
  ASSERT_TRUE(WaitUntil([&] { return !bar_->pressed.empty(); }));
  EXPECT_EQ(bar_->pressed, std::vector<int>{0});
  EXPECT_EQ(bar_->pressedIn, GetCurrentThreadId());
  EXPECT_EQ(RunClientProgram(bar_->hWnd(), "No such button").exitCode, 1U);
}

TEST_F(AccessibleListTest, APointOfTheScreenLeadsToItsItem) {
  const AccessibleClient client(bar_->hWnd());
  EXPECT_TRUE(ChildAt(client, {2, 3}).Is(1));
  EXPECT_TRUE(ChildAt(client, {51, 22}).Is(1));
  EXPECT_TRUE(ChildAt(client, {52, 3}).Is(2));
  EXPECT_TRUE(ChildAt(client, {99, 22}).Is(3));
  EXPECT_TRUE(ChildAt(client, {100, 22}).Is(CHILDID_SELF));
  EXPECT_TRUE(ChildAt(client, {99, 23}).Is(CHILDID_SELF));
  EXPECT_TRUE(ChildAt(client, {1, 3}).Is(CHILDID_SELF));
  EXPECT_TRUE(ChildAt(client, {-1, 3}).empty());
  EXPECT_TRUE(ChildAt(client, {50, 38}).empty());
  // What is cut off at the window's edge is not there to be pointed at.
  bar_->items[2].place.width = 500;
  EXPECT_TRUE(ChildAt(client, {197, 10}).Is(3));
  EXPECT_TRUE(ChildAt(client, {198, 10}).empty());
}

TEST_F(AccessibleListTest, NavigationFollowsTheOrderOfTheItems) {
  const AccessibleClient client(bar_->hWnd());
  const auto go = [&](LONG direction, LONG from) {
    Variant end(77);
    const HRESULT result = client->accNavigate(direction, Variant(from).get(), end.Put());
    if (result == S_OK) return end.Is(end.get().lVal) ? end.get().lVal : -1;
    EXPECT_TRUE(end.empty());
    EXPECT_EQ(result, S_FALSE);
    return 0L;
  };
  EXPECT_EQ(go(NAVDIR_FIRSTCHILD, CHILDID_SELF), 1);
  EXPECT_EQ(go(NAVDIR_LASTCHILD, CHILDID_SELF), 3);
  EXPECT_EQ(go(NAVDIR_NEXT, 1), 2);
  EXPECT_EQ(go(NAVDIR_NEXT, 2), 3);
  EXPECT_EQ(go(NAVDIR_NEXT, 3), 0);
  EXPECT_EQ(go(NAVDIR_PREVIOUS, 3), 2);
  EXPECT_EQ(go(NAVDIR_PREVIOUS, 1), 0);
  EXPECT_EQ(go(NAVDIR_NEXT, CHILDID_SELF), 0);

  Variant end;
  EXPECT_EQ(client->accNavigate(NAVDIR_FIRSTCHILD, Variant(1).get(), end.Put()), E_INVALIDARG);
  EXPECT_EQ(client->accNavigate(NAVDIR_LEFT, Variant(2).get(), end.Put()), DISP_E_MEMBERNOTFOUND);
  EXPECT_EQ(client->accNavigate(NAVDIR_MAX, Variant(2).get(), end.Put()), E_INVALIDARG);
  EXPECT_EQ(client->accNavigate(NAVDIR_MIN, Variant(CHILDID_SELF).get(), end.Put()), E_INVALIDARG);

  bar_->items.clear();
  EXPECT_EQ(go(NAVDIR_FIRSTCHILD, CHILDID_SELF), 0);
  EXPECT_EQ(go(NAVDIR_LASTCHILD, CHILDID_SELF), 0);
  EXPECT_TRUE(client.Children().empty());
}

TEST_F(AccessibleListTest, ANumberThatNamesNoChildIsRefusedEverywhere) {
  const AccessibleClient client(bar_->hWnd());
  VARIANT shortNumber{};
  shortNumber.vt = VT_I2;
  shortNumber.iVal = 1;
  const VARIANT nothing{};
  for (const ChildCall& call : ChildCalls()) {
    EXPECT_EQ(call.run(*client.get(), Variant(4).get()), E_INVALIDARG) << call.name;
    EXPECT_EQ(call.run(*client.get(), Variant(-1).get()), E_INVALIDARG) << call.name;
    EXPECT_EQ(call.run(*client.get(), Variant(MAXLONG).get()), E_INVALIDARG) << call.name;
    EXPECT_EQ(call.run(*client.get(), Variant(MINLONG).get()), E_INVALIDARG) << call.name;
    EXPECT_EQ(call.run(*client.get(), shortNumber), E_INVALIDARG) << call.name;
    EXPECT_EQ(call.run(*client.get(), nothing), E_INVALIDARG) << call.name;
    EXPECT_NE(call.run(*client.get(), Variant(3).get()), E_INVALIDARG) << call.name;
    EXPECT_NE(call.run(*client.get(), Variant(CHILDID_SELF).get()), E_INVALIDARG) << call.name;
  }
  AnswerMessages();
  EXPECT_EQ(bar_->pressed, std::vector<int>{2});  // By the one valid number.
}

TEST_F(AccessibleListTest, WithoutAPlaceForTheAnswerACallIsRefused) {
  const AccessibleClient client(bar_->hWnd());
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

TEST_F(AccessibleListTest, ItemsAreNumbersAndTheWholeIsAnObject) {
  const AccessibleClient client(bar_->hWnd());
  ComPtr<IDispatch> object;
  EXPECT_EQ(client->get_accChild(Variant(1).get(), object.Put()), S_FALSE);
  EXPECT_FALSE(object);
  EXPECT_EQ(client->get_accChild(Variant(CHILDID_SELF).get(), object.Put()), S_OK);
  EXPECT_EQ(object.get(), client.get());
  ComPtr<IUnknown> other;
  EXPECT_EQ(client->QueryInterface(__uuidof(IStream), other.PutVoid()), E_NOINTERFACE);
  EXPECT_FALSE(other);

  HWND window = nullptr;
  EXPECT_EQ(WindowFromAccessibleObject(client.get(), &window), S_OK);
  EXPECT_EQ(window, bar_->hWnd());
}

TEST_F(AccessibleListTest, TheParentIsTheWindowItself) {
  const AccessibleClient client(bar_->hWnd());
  ComPtr<IDispatch> object;
  ASSERT_EQ(client->get_accParent(object.Put()), S_OK);
  const ComPtr<IAccessible> parent = object.As<IAccessible>();
  ASSERT_TRUE(parent);
  EXPECT_NE(parent.get(), client.get());
  HWND window = nullptr;
  EXPECT_EQ(WindowFromAccessibleObject(parent.get(), &window), S_OK);
  EXPECT_EQ(window, bar_->hWnd());
}

TEST_F(AccessibleListTest, OnlyTheClientAreaIsAnsweredFor) {
  const HWND window = bar_->hWnd();
  EXPECT_EQ(SendMessageA(window, WM_GETOBJECT, 0, OBJID_WINDOW), 0);
  EXPECT_EQ(SendMessageA(window, WM_GETOBJECT, 0, OBJID_MENU), 0);
  // The object's number may be extended to 64 bits either way.
  const LPARAM numbers[] = {OBJID_CLIENT, static_cast<LPARAM>(static_cast<DWORD>(OBJID_CLIENT))};
  for (const LPARAM number : numbers) {
    const LRESULT answer = SendMessageA(window, WM_GETOBJECT, 0, number);
    EXPECT_GT(answer, 0);
    ComPtr<IAccessible> object;
    EXPECT_EQ(ObjectFromLresult(answer, __uuidof(IAccessible), 0, object.PutVoid()), S_OK);
    LONG count = 0;
    ASSERT_TRUE(object);
    EXPECT_EQ(object->get_accChildCount(&count), S_OK);
    EXPECT_EQ(count, 3);
  }
}

TEST_F(AccessibleListTest, StatesOfTheWindowShowInItsItems) {
  const AccessibleClient client(bar_->hWnd());
  EXPECT_FALSE(client.Child(3).Has(STATE_SYSTEM_OFFSCREEN));
  bar_->items[2].place.left = 197;
  EXPECT_FALSE(client.Child(3).Has(STATE_SYSTEM_OFFSCREEN));
  bar_->items[2].place.left = 198;
  EXPECT_TRUE(client.Child(3).Has(STATE_SYSTEM_OFFSCREEN | STATE_SYSTEM_CHECKED));

  ShowWindow(bar_->hWnd(), SW_HIDE);
  EXPECT_TRUE(client.Child(1).Has(STATE_SYSTEM_INVISIBLE));
  EXPECT_TRUE(client.Child(CHILDID_SELF).Has(STATE_SYSTEM_INVISIBLE));
  ShowWindow(bar_->hWnd(), SW_SHOWNA);
  EXPECT_FALSE(client.Child(1).Has(STATE_SYSTEM_INVISIBLE));

  EnableWindow(bar_->hWnd(), FALSE);
  EXPECT_TRUE(client.Child(1).Has(STATE_SYSTEM_UNAVAILABLE));
  EXPECT_TRUE(client.Child(CHILDID_SELF).Has(STATE_SYSTEM_UNAVAILABLE));
  EnableWindow(bar_->hWnd(), TRUE);
  EXPECT_FALSE(client.Child(1).Has(STATE_SYSTEM_UNAVAILABLE));
}

TEST_F(AccessibleListTest, WhatCannotBePressedIsNotPressed) {
  const AccessibleClient client(bar_->hWnd());
  const auto press = [&](LONG id) { return client->accDoDefaultAction(Variant(id).get()); };
  EXPECT_EQ(press(CHILDID_SELF), DISP_E_MEMBERNOTFOUND);
  EXPECT_EQ(press(2), DISP_E_MEMBERNOTFOUND);
  bar_->items[0].state = STATE_SYSTEM_UNAVAILABLE;
  EXPECT_EQ(press(1), DISP_E_MEMBERNOTFOUND);

  // What became impossible between the request and its turn.
  EXPECT_EQ(press(3), S_OK);
  bar_->items[2].state = STATE_SYSTEM_UNAVAILABLE;
  AnswerMessages();
  bar_->items[2].state = 0;
  EXPECT_EQ(press(3), S_OK);
  bar_->items.resize(1);
  AnswerMessages();
  EXPECT_TRUE(bar_->pressed.empty());

  bar_->items[0].state = 0;
  EXPECT_EQ(press(1), S_OK);
  AnswerMessages();
  EXPECT_EQ(bar_->pressed, std::vector<int>{0});
}

TEST_F(AccessibleListTest, BehindAModalWindowNothingIsPressed) {
  const HWND frame = CreateWindowExA(0, "STATIC", "frame", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 100, 200, 300,
                                     200, nullptr, nullptr, nullptr, nullptr);
  ThreeButtons child;
  ASSERT_TRUE(child.CreateAt({0, 0, 200, 40}, frame));
  const AccessibleClient client(child.hWnd());
  EXPECT_TRUE(client.Press("New snippet"));
  EnableWindow(frame, FALSE);
  AnswerMessages();
  EXPECT_TRUE(child.pressed.empty());
  EXPECT_FALSE(client.Press("New snippet"));
  EXPECT_TRUE(client.Child(1).Has(STATE_SYSTEM_UNAVAILABLE));
  EnableWindow(frame, TRUE);
  EXPECT_TRUE(client.Press("New snippet"));
  AnswerMessages();
  EXPECT_EQ(child.pressed, std::vector<int>{0});
  child.Destroy();
  DestroyWindow(frame);
}

TEST_F(AccessibleListTest, FocusIsToldAndGiven) {
  const AccessibleClient client(bar_->hWnd());
  const auto focus = [&] {
    Variant child(77);
    const HRESULT result = client->get_accFocus(child.Put());
    EXPECT_EQ(result, child.empty() ? S_FALSE : S_OK);
    return child;
  };
  SetFocus(nullptr);
  EXPECT_TRUE(focus().empty());
  SetFocus(bar_->hWnd());
  ASSERT_EQ(GetFocus(), bar_->hWnd());
  EXPECT_TRUE(focus().Is(CHILDID_SELF));
  EXPECT_TRUE(client.Child(CHILDID_SELF).Has(STATE_SYSTEM_FOCUSED));
  EXPECT_FALSE(client.Child(3).Has(STATE_SYSTEM_FOCUSED));

  const auto select = [&](LONG flags, LONG id) { return client->accSelect(flags, Variant(id).get()); };
  EXPECT_EQ(select(SELFLAG_TAKEFOCUS, 3), S_OK);
  EXPECT_EQ(bar_->focused, 2);
  EXPECT_TRUE(focus().Is(3));
  EXPECT_TRUE(client.Child(3).Has(STATE_SYSTEM_FOCUSED));
  EXPECT_FALSE(client.Child(1).Has(STATE_SYSTEM_FOCUSED));

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

TEST_F(AccessibleListTest, AScriptReadsByTheNameOfTheProperty) {
  const AccessibleClient client(bar_->hWnd());
  UINT count = 0;
  EXPECT_EQ(client->GetTypeInfoCount(&count), S_OK);
  EXPECT_EQ(count, 1U);
  wchar_t name[] = L"accName";
  LPOLESTR names[] = {name};
  DISPID id = 0;
  ASSERT_EQ(client->GetIDsOfNames(GUID_NULL, names, 1, LOCALE_USER_DEFAULT, &id), S_OK);
  EXPECT_EQ(id, DISPID_ACC_NAME);
  VARIANT child = Variant(1).Detach();
  DISPPARAMS arguments{&child, nullptr, 1, 0};
  Variant result;
  ASSERT_EQ(client->Invoke(id, GUID_NULL, LOCALE_USER_DEFAULT, DISPATCH_PROPERTYGET, &arguments, result.Put(),
                           nullptr, nullptr),
            S_OK);
  ASSERT_EQ(result.get().vt, VT_BSTR);
  Bstr text;
  text.Reset(result.Detach().bstrVal);
  EXPECT_EQ(text.Text(), "New snippet");

  wchar_t unknown[] = L"noSuchProperty";
  names[0] = unknown;
  EXPECT_EQ(client->GetIDsOfNames(GUID_NULL, names, 1, LOCALE_USER_DEFAULT, &id), DISP_E_UNKNOWNNAME);
  ComPtr<ITypeInfo> typeInfo;
  EXPECT_EQ(client->GetTypeInfo(1, LOCALE_USER_DEFAULT, typeInfo.Put()), DISP_E_BADINDEX);
}

TEST_F(AccessibleListTest, AReferenceKeptBeyondTheWindowIsToldSo) {
  const AccessibleClient client(bar_->hWnd());
  for (const ChildCall& call : WholeCalls()) {
    EXPECT_NE(call.run(*client.get(), {}), CO_E_OBJNOTCONNECTED) << call.name;
  }
  bar_.reset();
  for (const ChildCall& call : ChildCalls()) {
    EXPECT_EQ(call.run(*client.get(), Variant(CHILDID_SELF).get()), CO_E_OBJNOTCONNECTED) << call.name;
    EXPECT_EQ(call.run(*client.get(), Variant(1).get()), CO_E_OBJNOTCONNECTED) << call.name;
  }
  for (const ChildCall& call : WholeCalls()) {
    EXPECT_EQ(call.run(*client.get(), {}), CO_E_OBJNOTCONNECTED) << call.name;
  }
  // Nobody else keeps it: with the last reference it goes.
  EXPECT_EQ(References(client.get()), 1U);
}

TEST_F(AccessibleListTest, TheObjectOfTheBarMayOutliveItsWindow) {
  const AccessibleClient client(bar_->hWnd());
  bar_->Destroy();
  LONG count = 0;
  EXPECT_EQ(client->get_accChildCount(&count), CO_E_OBJNOTCONNECTED);
  bar_->accessible.Notify(EVENT_OBJECT_REORDER);
  bar_->accessible.Notify(EVENT_OBJECT_STATECHANGE, 0);

  // Made again it is a new window to clients.
  ASSERT_TRUE(bar_->CreateAt({100, 100, 200, 40}));
  EXPECT_EQ(client->get_accChildCount(&count), CO_E_OBJNOTCONNECTED);
  EXPECT_EQ(AccessibleClient(bar_->hWnd()).Children().size(), 3U);
}

TEST_F(AccessibleListTest, AClientElsewhereLosesItsReferenceWithTheWindow) {
  const AccessibleClient here(bar_->hWnd());
  HRESULT before = E_UNEXPECTED;
  HRESULT after = S_OK;
  bool gone = false;
  ULONG left = 0;
  InClientThread([&] {
    const AccessibleClient client(bar_->hWnd());
    LONG count = 0;
    before = client->get_accChildCount(&count);
    const HWND window = bar_->hWnd();
    PostMessageA(window, WM_CLOSE, 0, 0);
    gone = WaitUntil([&] { return IsWindow(window) == 0; }, 10000, [] {});
    // A client that keeps what it has until its own end keeps nothing alive by that.
    WaitUntil([&] { return (left = References(here.get())) == 1; }, 3000, [] {});
    after = client->get_accChildCount(&count);
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
  LONG count = 0;
  EXPECT_EQ(client->get_accChildCount(&count), CO_E_OBJNOTCONNECTED);
}

TEST_F(AccessibleListTest, NoExceptionReachesAClient) {
  const AccessibleClient client(bar_->hWnd());
  Bstr name;
  bar_->beforeAnswer = [] { throw std::runtime_error("cannot tell"); };
  EXPECT_EQ(client->get_accName(Variant(1).get(), name.Put()), E_FAIL);
  bar_->beforeAnswer = [] { throw std::bad_alloc(); };
  EXPECT_EQ(client->get_accName(Variant(1).get(), name.Put()), E_OUTOFMEMORY);
  EXPECT_EQ(name.get(), nullptr);
  bar_->beforeAnswer = nullptr;
  EXPECT_EQ(client->get_accName(Variant(1).get(), name.Put()), S_OK);
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

TEST_F(AccessibleListTest, TheLastReferenceEndsTheObject) {
  AccessibleClient client(bar_->hWnd());
  const void* const object = client.get();
  bar_.reset();
  EXPECT_TRUE(IsAllocated(object));
  client.Reset();
  EXPECT_FALSE(IsAllocated(object));
}

TEST_F(AccessibleListTest, TenThousandQueriesLeaveNothingBehind) {
  const AccessibleClient client(bar_->hWnd());
  int queries = 0;
  const auto askEverything = [&](int times) {
    const std::vector<ChildCall> wholeCalls = WholeCalls();
    const std::vector<ChildCall> childCalls = ChildCalls();
    for (int i = 0; i < times; ++i) {
      for (const ChildCall& call : wholeCalls) call.run(*client.get(), {});
      for (const ChildCall& call : childCalls) {
        call.run(*client.get(), Variant(CHILDID_SELF).get());
        call.run(*client.get(), Variant(2).get());  // Cannot be pressed.
      }
      Bstr text;
      client->get_accName(Variant(1).get(), text.Put());
      client->get_accKeyboardShortcut(Variant(1).get(), text.Put());
      client->get_accDefaultAction(Variant(1).get(), text.Put());
      queries += static_cast<int>(wholeCalls.size() + 2 * childCalls.size()) + 3;
    }
  };
  // What is made once, such as the system's caches, is made by the first round.
  askEverything(20);
  const ULONG references = References(client.get());
  const std::size_t before = BytesInUse();
  constexpr int kRounds = 400;
  queries = 0;
  askEverything(kRounds);
  const std::size_t after = BytesInUse();
  EXPECT_GE(queries, 10000);
  EXPECT_EQ(References(client.get()), references);
  // A leak in a single one of the calls would be of kRounds allocations.
  EXPECT_LT(after, before + std::size_t{8} * kRounds);
}

TEST_F(AccessibleListTest, HandingTheObjectOutLeavesNoReferenceBehind) {
  const AccessibleClient client(bar_->hWnd());
  const ULONG references = References(client.get());
  for (int i = 0; i < 1000; ++i) {
    const AccessibleClient again(bar_->hWnd());
    ASSERT_EQ(again.get(), client.get());
  }
  EXPECT_EQ(References(client.get()), references);
}

TEST_F(AccessibleListTest, ClientsOfOtherThreadsLeaveNoReferenceBehind) {
  const AccessibleClient client(bar_->hWnd());
  const ULONG references = References(client.get());
  for (int round = 0; round < 3; ++round) {
    InClientThread([&] {
      const AccessibleClient reader(bar_->hWnd());
      for (int i = 0; i < 200; ++i) reader.Child(1 + i % 3);
    });
  }
  EXPECT_TRUE(WaitUntil([&] { return References(client.get()) == references; })) << References(client.get());
}

struct WinEvent {
  DWORD event;
  LONG object;
  LONG child;
  friend bool operator==(const WinEvent&, const WinEvent&) = default;
};

/// Collects the events of one window, out of context as screen readers do. The system's callback has no
/// parameter for its owner, so that there is only one at a time.
class WinEventRecorder {
 public:
  explicit WinEventRecorder(HWND window) : window_(window) {
    active = this;
    constexpr DWORD kEvents[] = {EVENT_OBJECT_STATECHANGE,    EVENT_OBJECT_NAMECHANGE,
                                 EVENT_OBJECT_FOCUS,          EVENT_OBJECT_REORDER,
                                 EVENT_SYSTEM_MENUPOPUPSTART, EVENT_SYSTEM_MENUPOPUPEND};
    for (const DWORD event : kEvents) {
      hooks_.push_back(
          SetWinEventHook(event, event, nullptr, &Receive, GetCurrentProcessId(), 0, WINEVENT_OUTOFCONTEXT));
    }
  }
  ~WinEventRecorder() {
    for (const HWINEVENTHOOK hook : hooks_) UnhookWinEvent(hook);
    active = nullptr;
  }
  WinEventRecorder(const WinEventRecorder&) = delete;
  WinEventRecorder& operator=(const WinEventRecorder&) = delete;

  std::vector<WinEvent> events;

 private:
  static void CALLBACK Receive(HWINEVENTHOOK, DWORD event, HWND window, LONG object, LONG child, DWORD,
                               DWORD) {
    if (active != nullptr && window == active->window_) active->events.push_back({event, object, child});
  }

  inline static WinEventRecorder* active = nullptr;
  HWND window_;
  std::vector<HWINEVENTHOOK> hooks_;
};

TEST_F(AccessibleListTest, ChangesAreAnnounced) {
  AnswerMessages();
  const HWND window = bar_->hWnd();
  std::vector<WinEvent> events;
  std::atomic<bool> listening = false;
  const std::size_t expected = 6;
  std::atomic<bool> heardAll = false;
  {
    const Driver driver([&] {
      WinEventRecorder recorder(window);
      listening = true;
      heardAll = WaitUntil([&] { return recorder.events.size() >= expected; });
      events = recorder.events;
    });
    EXPECT_TRUE(WaitUntil([&] { return listening.load(); }));
    // Wine: a thread learns of a new listener with the next message that it takes out of its queue.
    PostThreadMessageA(GetCurrentThreadId(), WM_NULL, 0, 0);
    AnswerMessages();
    bar_->accessible.Notify(EVENT_SYSTEM_MENUPOPUPSTART);
    bar_->accessible.Notify(EVENT_OBJECT_FOCUS, 2);
    bar_->accessible.Notify(EVENT_OBJECT_STATECHANGE, 0);
    bar_->accessible.Notify(EVENT_OBJECT_NAMECHANGE, 1);
    bar_->accessible.Notify(EVENT_OBJECT_REORDER);
    bar_->accessible.Notify(EVENT_SYSTEM_MENUPOPUPEND);
  }
  EXPECT_TRUE(heardAll);
  EXPECT_EQ(events, (std::vector<WinEvent>{
                        {EVENT_SYSTEM_MENUPOPUPSTART, OBJID_CLIENT, CHILDID_SELF},
                        {EVENT_OBJECT_FOCUS, OBJID_CLIENT, 3},
                        {EVENT_OBJECT_STATECHANGE, OBJID_CLIENT, 1},
                        {EVENT_OBJECT_NAMECHANGE, OBJID_CLIENT, 2},
                        {EVENT_OBJECT_REORDER, OBJID_CLIENT, CHILDID_SELF},
                        {EVENT_SYSTEM_MENUPOPUPEND, OBJID_CLIENT, CHILDID_SELF},
                    }));
}

}  // namespace
}  // namespace snip::test
