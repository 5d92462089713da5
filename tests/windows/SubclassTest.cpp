#include "platform/Subclass.h"

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>
#include <tuple>
#include <utility>

#include "platform/Window.h"

namespace snip::test {
namespace {

/// A window with up to three subclasses. Each who sees a message writes down its letter, a capital for
/// WM_NCDESTROY: "a" to "c" the subclasses, "w" the window's own procedure.
class Watched : public Window {
 public:
  Watched() { Create({.className = "SubclassTestWindow", .style = WS_POPUP}); }
  ~Watched() override { Destroy(); }

  /// "a" starts the subclass a, "-a" ends it, "!" destroys the window, "?" throws.
  void Do(std::string_view steps) {
    for (std::size_t i = 0; i < steps.size(); ++i) {
      if (steps[i] == '-') {
        At(steps[++i]).reset();
      } else if (steps[i] == '!') {
        Destroy();
      } else if (steps[i] == '?') {
        throw std::runtime_error("out of order");
      } else {
        EXPECT_TRUE(Begin(steps[i]));
      }
    }
  }
  std::string Seen(const std::function<void()>& action) {
    seen_.clear();
    action();
    return seen_;
  }
  std::string SeenOfOne() {
    return Seen([&] { EXPECT_EQ(SendMessageA(hWnd(), WM_APP, 0, 0), 7); });
  }

  std::string inA;  ///< What a does before it passes a message on.

 protected:
  LRESULT HandleMessage(UINT message, WPARAM wParam, LPARAM lParam) override {
    Note('w', message);
    return message == WM_APP ? 7 : Default(message, wParam, lParam);
  }

 private:
  std::unique_ptr<Subclass>& At(char letter) { return subclasses_[letter - 'a']; }
  bool Begin(char letter) {
    auto& subclass = At(letter);
    if (!subclass) subclass = std::make_unique<Subclass>();
    return subclass->Start(hWnd(), [this, letter](const Subclass::Message& message) {
      Note(letter, message.id);
      if (letter == 'a' && message.id == WM_APP) Do(std::exchange(inA, {}));
      return message.PassOn();
    });
  }
  void Note(char letter, UINT message) {
    if (message == WM_APP) seen_ += letter;
    if (message == WM_NCDESTROY) seen_ += static_cast<char>(letter - 'a' + 'A');
  }

  std::string seen_;
  std::unique_ptr<Subclass> subclasses_[3];
};

TEST(Subclass, SeesMessagesBeforeTheEarlierOnesAndEndsInAnyOrder) {
  for (const auto& [steps, seen] : {std::pair{"", "w"},
                                    {"abc", "cbaw"},
                                    {"aba", "abw"},
                                    {"abc-a", "cbw"},
                                    {"abc-b", "caw"},
                                    {"abc-c", "baw"},
                                    {"abc-b-c", "aw"},
                                    {"ab-a-b", "w"},
                                    {"ab-b-a", "w"},
                                    {"a-ab", "bw"}}) {
    SCOPED_TRACE(steps);
    Watched window;
    const auto own = GetWindowLongPtrA(window.hWnd(), GWLP_WNDPROC);
    window.Do(steps);
    EXPECT_EQ(window.SeenOfOne(), seen);
    EXPECT_EQ(GetWindowLongPtrA(window.hWnd(), GWLP_WNDPROC) == own, std::string(seen) == "w");
    std::string capitals = seen;
    for (char& letter : capitals) letter = static_cast<char>(letter - 'a' + 'A');
    EXPECT_EQ(window.Seen([&] { window.Destroy(); }), capitals);
    window.Do("-a-b-c");
  }
}

TEST(Subclass, MayChangeTheOthersWhileItHandlesAMessage) {
  for (const auto& [inA, seen, seenNext] : {std::tuple{"-a", "cabw", "cbw"},
                                            {"-b", "caw", "caw"},
                                            {"-a-b", "caw", "cw"},
                                            {"-c-a-b", "caw", "w"},
                                            {"a", "cabw", "acbw"}}) {
    SCOPED_TRACE(inA);
    Watched window;
    window.Do("bac");
    window.inA = inA;
    EXPECT_EQ(window.SeenOfOne(), seen);
    EXPECT_EQ(window.SeenOfOne(), seenNext);
  }
  for (const auto& [inA, seen] : {std::pair{"!", "caCABW"}, {"?", "ca"}}) {
    Watched window;
    window.Do("bac");
    window.inA = inA;
    EXPECT_EQ(window.Seen([&] { EXPECT_EQ(SendMessageA(window.hWnd(), WM_APP, 0, 0), 0); }), seen);
  }
  EXPECT_FALSE(Subclass().Start(nullptr, {}));
  EXPECT_FALSE(Subclass().Start(GetDesktopWindow(), {}));
}

}  // namespace
}  // namespace snip::test
