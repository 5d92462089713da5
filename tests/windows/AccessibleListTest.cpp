#include "platform/AccessibleList.h"

#include <gtest/gtest.h>

#include <atomic>
#include <functional>
#include <map>
#include <memory>
#include <new>
#include <sstream>
#include <stdexcept>
#include <string>
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
    return Create({.className = "ThreeButtons",
                   .title = "Snippet bar",
                   .style = WS_VISIBLE | (parent != nullptr ? WS_CHILD : WS_POPUP | WS_BORDER),
                   .place = place,
                   .parent = parent});
  }

  // AccessibleItems.
  LONG WholeRole() const override { return ROLE_SYSTEM_TOOLBAR; }
  int AccessibleCount() const override { return static_cast<int>(items.size()); }
  AccessibleItem DescribeItem(int item) const override {
    if (beforeAnswer) beforeAnswer();
    return items.at(static_cast<std::size_t>(item));
  }
  std::optional<int> FocusedItem() const override { return focused; }
  void DoDefaultAction(int item) override {
    pressed.push_back(item);
    // Copied, as it may end this object.
    if (const std::function<void()> action = whenPressed) action();
  }

  AccessibleList accessible{*this, *this};
  std::vector<AccessibleItem> items = {
      {"New snippet", ROLE_SYSTEM_PUSHBUTTON, 0, {2, 3, 50, 20}, "Alt+N", "Press"},
      {"", ROLE_SYSTEM_SEPARATOR, 0, {52, 3, 8, 20}, "", ""},
      {"Na\xEFve", ROLE_SYSTEM_CHECKBUTTON, STATE_SYSTEM_CHECKED, {60, 3, 40, 20}, "", "Uncheck"}};
  std::optional<int> focused;
  std::function<void()> beforeAnswer;
  std::function<void()> whenPressed;
  std::vector<int> pressed;

 protected:
  LRESULT HandleMessage(UINT message, WPARAM wParam, LPARAM lParam) override {
    if (const std::optional<LRESULT> answer = accessible.Answer(message, wParam, lParam)) return *answer;
    return Window::HandleMessage(message, wParam, lParam);
  }
};

/// Runs a client's part in a thread of its own while this one, the window's, answers messages. What the
/// client finds is to be looked at after that, here.
void InClientThread(const std::function<void()>& script) {
  std::atomic<bool> done = false;
  const Driver driver([&] {
    {
      const ComApartment apartment;
      script();
    }
    done = true;
  });
  WaitUntil([&] { return done.load(); });
}

ULONG References(IUnknown* object) {
  object->AddRef();
  return object->Release();
}

using Call = HRESULT (*)(IAccessible&, VARIANT child);

template <auto Method, class Result>
HRESULT AsksAbout(IAccessible& object, VARIANT child) {
  Result result;
  return (object.*Method)(child, result.Put());
}

template <auto Method, class Result>
HRESULT Asks(IAccessible& object, VARIANT /*child*/) {
  Result result;
  return (object.*Method)(result.Put());
}

const std::vector<Call> kAboutAChild = {
    &AsksAbout<&IAccessible::get_accChild, ComPtr<IDispatch>>,
    &AsksAbout<&IAccessible::get_accName, Bstr>,
    &AsksAbout<&IAccessible::get_accValue, Bstr>,
    &AsksAbout<&IAccessible::get_accDescription, Bstr>,
    &AsksAbout<&IAccessible::get_accHelp, Bstr>,
    &AsksAbout<&IAccessible::get_accKeyboardShortcut, Bstr>,
    &AsksAbout<&IAccessible::get_accDefaultAction, Bstr>,
    &AsksAbout<&IAccessible::get_accRole, Variant>,
    &AsksAbout<&IAccessible::get_accState, Variant>,
    [](IAccessible& object, VARIANT child) {
      LONG topic = 0;
      return object.get_accHelpTopic(Bstr().Put(), child, &topic);
    },
    [](IAccessible& object, VARIANT child) {
      LONG number = 0;
      return object.accLocation(&number, &number, &number, &number, child);
    },
    [](IAccessible& object, VARIANT child) {
      return object.accNavigate(NAVDIR_NEXT, child, Variant().Put());
    },
    [](IAccessible& object, VARIANT child) { return object.accSelect(SELFLAG_NONE, child); },
    [](IAccessible& object, VARIANT child) { return object.accDoDefaultAction(child); },
    [](IAccessible& object, VARIANT child) { return object.put_accName(child, Bstr("x").get()); },
    [](IAccessible& object, VARIANT child) { return object.put_accValue(child, Bstr("x").get()); }};
const std::vector<Call> kAboutTheWhole = {
    &Asks<&IAccessible::get_accParent, ComPtr<IDispatch>>, &Asks<&IAccessible::get_accFocus, Variant>,
    &Asks<&IAccessible::get_accSelection, Variant>,
    [](IAccessible& object, VARIANT) {
      LONG count = 0;
      return object.get_accChildCount(&count);
    },
    [](IAccessible& object, VARIANT) { return object.accHitTest(130, 110, Variant().Put()); }};

/// How many of all calls, about the whole and about its first two items, give a result.
int Results(const AccessibleClient& client, HRESULT result) {
  int count = 0;
  for (const std::vector<Call>* calls : {&kAboutAChild, &kAboutTheWhole}) {
    for (const Call call : *calls) {
      for (const LONG child : {0, 1, 2}) count += call(*client.get(), Variant(child).get()) == result ? 1 : 0;
    }
  }
  return count;
}

class AccessibleListTest : public testing::Test {
 protected:
  void SetUp() override { ASSERT_TRUE(bar_->CreateAt({100, 100, 200, 40})); }

  std::vector<int> PressedByNow() {
    AnswerMessages();
    return bar_->pressed;
  }

  /// Asks questions with "; " between them, such as "hit 2 3", a place in the window, or "next 1". The
  /// answers are numbers, "-" for nothing, "wrong" for a bad argument and "never" for what the list does not
  /// do.
  std::string Answers(const AccessibleClient& client, const std::string& questions) const {
    std::ostringstream answers;
    std::istringstream all(questions);
    for (std::string question; std::getline(all >> std::ws, question, ';');) {
      std::istringstream words(question);
      std::string verb;
      LONG first = 0, second = 0;
      words >> verb >> first >> second;
      POINT at{first, second};
      ClientToScreen(bar_->hWnd(), &at);
      const VARIANT child = Variant(first).Detach();
      const std::map<std::string, LONG> directions = {
          {"first", NAVDIR_FIRSTCHILD}, {"last", NAVDIR_LASTCHILD},
          {"next", NAVDIR_NEXT},        {"previous", NAVDIR_PREVIOUS},
          {"left", NAVDIR_LEFT},        {"max", NAVDIR_MAX},
          {"min", NAVDIR_MIN}};
      Variant told(77);
      HRESULT result = E_UNEXPECTED;
      if (verb == "hit") result = client->accHitTest(at.x, at.y, told.Put());
      if (verb == "focus") result = client->get_accFocus(told.Put());
      if (verb == "selection") result = client->get_accSelection(told.Put());
      if (verb == "state") result = client->get_accState(child, told.Put());
      if (verb == "select") result = client->accSelect(second, child), told = Variant();
      if (verb == "press") result = client->accDoDefaultAction(child), told = Variant();
      if (const auto way = directions.find(verb); way != directions.end())
        result = client->accNavigate(way->second, child, told.Put());
      answers << (answers.tellp() > 0 ? " " : "");
      if (result == S_OK && !told.empty())
        answers << told.get().lVal;
      else if (result == S_OK)
        answers << "done";
      else if (result == S_FALSE && told.empty())
        answers << '-';
      else
        answers << (result == E_INVALIDARG ? "wrong" : result == DISP_E_MEMBERNOTFOUND ? "never" : "?");
    }
    return answers.str();
  }

  ComApartment apartment_;
  std::unique_ptr<ThreeButtons> bar_ = std::make_unique<ThreeButtons>();
};

TEST_F(AccessibleListTest, AnswersFollowTheWindowAndItsItems) {
  const AccessibleClient client(bar_->hWnd());
  const HWND window = bar_->hWnd();
  static_assert(STATE_SYSTEM_CHECKED == 16 && STATE_SYSTEM_INVISIBLE == 0x8000 &&
                STATE_SYSTEM_OFFSCREEN == 0x10000 && STATE_SYSTEM_FOCUSED == 4 &&
                STATE_SYSTEM_UNAVAILABLE == 1);
  const std::string states = "state 1; state 3; state 0; focus";
  struct Case {
    std::function<void()> change;
    std::string questions, answers;
  };
  const std::vector<Case> cases = {
      {[] { SetFocus(nullptr); }, states, "0 16 0 -"},
      {[] {}, "hit 2 3; hit 51 22; hit 52 3; hit 100 22; hit 99 23; hit -1 3; hit 50 38", "1 1 2 0 0 - -"},
      {[] {}, "first 0; last 0; next 1; next 2; next 3; previous 3; previous 1; next 0", "1 3 2 3 - 2 - -"},
      {[] {}, "first 1; left 2; max 2; min 0; left 0", "wrong never wrong wrong -"},
      {[] {}, "select 1 1; select 0 1; select 1 2; select 1 0; select 1 32; select 0 32; selection",
       "never never never done wrong wrong -"},
      // What is cut off at the window's edge is not there to be pointed at.
      {[&] { bar_->items[2].place.width = 500; }, "hit 197 10; hit 198 10", "3 -"},
      {[&] { bar_->items[2].place.left = 197; }, states, "0 16 0 -"},
      {[&] { bar_->items[2].place.left = 198; }, states, "0 65552 0 -"},
      {[&] { bar_->items[2].place.left = 60, ShowWindow(window, SW_HIDE); }, states, "32768 32784 32768 -"},
      {[&] { ShowWindow(window, SW_SHOWNA), EnableWindow(window, FALSE); }, states, "1 17 1 -"},
      {[&] { EnableWindow(window, TRUE), SetFocus(window); }, states, "0 16 4 0"},
      {[&] { bar_->focused = 2; }, states, "0 20 4 3"},
      // What becomes impossible between the request and its turn is not done.
      {[&] { bar_->items[0].state = STATE_SYSTEM_UNAVAILABLE; }, "press 0; press 1; press 2; press 3",
       "never never never done"},
      {[&] { bar_->items[2].state = STATE_SYSTEM_UNAVAILABLE, AnswerMessages(); }, "press 3", "never"},
      {[&] { bar_->items[2].state = 0; }, "press 3", "done"},
      {[&] { bar_->items.resize(1), AnswerMessages(), bar_->items[0].state = 0; }, "press 1", "done"},
      {[&] { AnswerMessages(), bar_->items.clear(); }, "first 0; last 0; press 1", "- - wrong"},
  };
  for (const Case& now : cases) {
    now.change();
    EXPECT_EQ(Answers(client, now.questions), now.answers) << now.questions;
  }
  EXPECT_TRUE(client.Children().empty());
  EXPECT_EQ(PressedByNow(), std::vector<int>{0});
}

TEST_F(AccessibleListTest, BehindAModalWindowNothingIsPressed) {
  const TestFrame frame;
  bar_->Destroy();
  ASSERT_TRUE(bar_->CreateAt({0, 0, 200, 40}, frame.get()));
  const AccessibleClient client(bar_->hWnd());
  EXPECT_TRUE(client.Press("New snippet"));
  EnableWindow(frame.get(), FALSE);
  EXPECT_TRUE(PressedByNow().empty());
  EXPECT_EQ(Answers(client, "press 1; state 1"), "never 1");
  EnableWindow(frame.get(), TRUE);
  EXPECT_TRUE(client.Press("New snippet"));
  EXPECT_EQ(PressedByNow(), std::vector<int>{0});
  bar_->Destroy();
}

TEST_F(AccessibleListTest, RefusesWhatIsNoChildAndWhatHasNoPlaceForTheAnswer) {
  const AccessibleClient client(bar_->hWnd());
  VARIANT shortNumber{};
  shortNumber.vt = VT_I2;
  shortNumber.iVal = 1;
  const std::vector<VARIANT> wrong = {
      Variant(4).Detach(),       Variant(-1).Detach(), Variant(MAXLONG).Detach(),
      Variant(MINLONG).Detach(), shortNumber,          VARIANT{}};
  for (const Call call : kAboutAChild) {
    for (const VARIANT& child : wrong) EXPECT_EQ(call(*client.get(), child), E_INVALIDARG);
  }
  EXPECT_EQ(Results(client, E_INVALIDARG), 0);
  EXPECT_EQ(PressedByNow(), std::vector<int>{0});  // by the one valid number

  const VARIANT self = Variant(CHILDID_SELF).Detach();
  LONG number = 0;
  for (const HRESULT result : {client->get_accName(self, nullptr), client->get_accState(self, nullptr),
                               client->get_accChildCount(nullptr), client->get_accParent(nullptr),
                               client->get_accHelpTopic(nullptr, self, &number),
                               client->accLocation(&number, &number, nullptr, &number, self),
                               client->QueryInterface(__uuidof(IAccessible), nullptr)}) {
    EXPECT_EQ(result, E_POINTER);
  }
}

TEST_F(AccessibleListTest, IsTheObjectOfTheClientArea) {
  const AccessibleClient client(bar_->hWnd());
  // The border is not part of it.
  EXPECT_EQ(client.Child(3).place, (Rect{161, 104, 40, 20}));
  EXPECT_EQ(client.Child(CHILDID_SELF).place, (Rect{101, 101, 198, 38}));
  EXPECT_EQ(client.Child(CHILDID_SELF).name, "Snippet bar");
  ComPtr<IDispatch> parent;
  ASSERT_EQ(client->get_accParent(parent.Put()), S_OK);
  EXPECT_NE(parent.get(), client.get());
  HWND itsWindow = nullptr;
  EXPECT_EQ(WindowFromAccessibleObject(parent.As<IAccessible>().get(), &itsWindow), S_OK);
  EXPECT_EQ(itsWindow, bar_->hWnd());
  EXPECT_EQ(SendMessageA(bar_->hWnd(), WM_GETOBJECT, 0, OBJID_WINDOW), 0);
  // The object's number may be extended to 64 bits either way.
  for (const LPARAM number : {LPARAM{OBJID_CLIENT}, static_cast<LPARAM>(static_cast<DWORD>(OBJID_CLIENT))}) {
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
  EXPECT_STREQ(result.get().bstrVal, L"New snippet");
}

TEST_F(AccessibleListTest, AReferenceKeptBeyondTheWindowIsToldSo) {
  AccessibleClient client(bar_->hWnd());
  EXPECT_EQ(Results(client, CO_E_OBJNOTCONNECTED), 0);
  bar_->Destroy();
  const int calls = Results(client, CO_E_OBJNOTCONNECTED);
  EXPECT_EQ(calls, 3 * static_cast<int>(kAboutAChild.size() + kAboutTheWhole.size()));
  bar_->accessible.Notify(EVENT_OBJECT_STATECHANGE, 0);
  // Made again it is a new window to clients.
  ASSERT_TRUE(bar_->CreateAt({100, 100, 200, 40}));
  EXPECT_EQ(Results(client, CO_E_OBJNOTCONNECTED), calls);
  EXPECT_EQ(AccessibleClient(bar_->hWnd()).Children().size(), 3U);
  bar_.reset();
  EXPECT_EQ(References(client.get()), 1U);
}

TEST_F(AccessibleListTest, AClientElsewhereLosesItsReferenceWithTheWindow) {
  const AccessibleClient here(bar_->hWnd());
  HRESULT before = E_UNEXPECTED;
  HRESULT after = S_OK;
  ULONG left = 0;
  InClientThread([&] {
    const AccessibleClient client(bar_->hWnd());
    const auto ask = [&] { return client->accDoDefaultAction(Variant(CHILDID_SELF).get()); };
    before = ask();
    PostMessageA(bar_->hWnd(), WM_CLOSE, 0, 0);
    // A client that keeps what it has until its own end keeps nothing alive by that.
    WaitUntil([&] { return (left = References(here.get())) == 1; }, 10000, [] {});
    after = ask();
  });
  EXPECT_EQ(before, DISP_E_MEMBERNOTFOUND);
  EXPECT_EQ(left, 1U);
  EXPECT_TRUE(FAILED(after) && after != before) << after;
}

TEST_F(AccessibleListTest, APressMayEndTheBar) {
  const AccessibleClient client(bar_->hWnd());
  bar_->whenPressed = [&] { bar_.reset(); };
  EXPECT_TRUE(client.Press("New snippet"));
  EXPECT_NE(bar_, nullptr) << "a client does not wait for what its press may open";
  AnswerMessages();
  EXPECT_EQ(bar_, nullptr);
  EXPECT_EQ(client->accDoDefaultAction(Variant(1).get()), CO_E_OBJNOTCONNECTED);
}

TEST_F(AccessibleListTest, NoExceptionReachesAClient) {
  const AccessibleClient client(bar_->hWnd());
  Bstr name;
  bar_->beforeAnswer = [] { throw std::runtime_error("cannot tell"); };
  EXPECT_EQ(client->get_accName(Variant(1).get(), name.Put()), E_UNEXPECTED);
  bar_->beforeAnswer = [] { throw std::bad_alloc(); };
  EXPECT_EQ(client->get_accName(Variant(1).get(), name.Put()), E_OUTOFMEMORY);
  EXPECT_EQ(name.get(), nullptr);
}

std::size_t BytesInUse() {
  std::size_t bytes = 0;
  HANDLE heaps[64]{};
  for (DWORD i = 0, count = std::min<DWORD>(GetProcessHeaps(64, heaps), 64); i < count; ++i) {
    PROCESS_HEAP_ENTRY entry{};
    while (HeapWalk(heaps[i], &entry) != 0) {
      if ((entry.wFlags & PROCESS_HEAP_ENTRY_BUSY) != 0) bytes += entry.cbData;
    }
  }
  return bytes;
}

TEST_F(AccessibleListTest, QueriesLeaveNothingBehind) {
  const AccessibleClient client(bar_->hWnd());
  const auto askEverything = [&](int times) {
    for (int i = 0; i < times; ++i) Results(client, S_OK);
    AnswerMessages();  // the presses
    bar_->pressed = {};
  };
  // What is made once, such as the system's caches, is made by the first round.
  askEverything(20);
  const ULONG references = References(client.get());
  const std::size_t before = BytesInUse();
  constexpr int kRounds = 200;
  askEverything(kRounds);
  // A leak in a single one of the calls would be of kRounds allocations.
  EXPECT_LT(BytesInUse(), before + std::size_t{8} * kRounds);
  InClientThread([&] { Results(AccessibleClient(bar_->hWnd()), S_OK); });
  EXPECT_TRUE(WaitUntil([&] { return References(client.get()) == references; })) << References(client.get());
}

}  // namespace
}  // namespace snip::test
