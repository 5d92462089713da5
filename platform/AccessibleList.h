#pragma once

#include <windows.h>
#include <objbase.h>
#include <oleacc.h>

#include <optional>
#include <string>

#include "platform/Com.h"
#include "platform/Geometry.h"

namespace snip {

class Window;

/// What assistive programs are told of one item of a window that paints its items itself. Roles and states
/// are the platform's ROLE_SYSTEM_ and STATE_SYSTEM_ numbers.
struct AccessibleItem {
  std::string name;  ///< As a person reads it, without "&".
  LONG role = ROLE_SYSTEM_PUSHBUTTON;
  /// What only the window knows: pressed, checked, hot, unavailable. AccessibleList adds whether the item
  /// has the focus, is outside the window, or belongs to a hidden or disabled one.
  LONG state = 0;
  Rect place;                 ///< In client pixels.
  std::string shortcut;       ///< As a person reads it: "Alt+N".
  std::string defaultAction;  ///< What pressing it does, in a word or two; empty when it cannot be pressed.
};

/// What a window with self-painted items tells about them. Items are counted from 0 in the order in which
/// they are read. Only called in the window's thread, while it has its handle; may throw.
class AccessibleItems {
 public:
  /// Of the window as a whole, whose name is its text.
  virtual LONG WholeRole() const = 0;
  virtual int AccessibleCount() const = 0;
  virtual AccessibleItem DescribeItem(int item) const = 0;
  /// The item that the keyboard acts on, of a window that has one: the highlighted item of a menu.
  virtual std::optional<int> FocusedItem() const { return std::nullopt; }
  /// Of a window in which one item can be selected.
  virtual std::optional<int> SelectedItem() const { return std::nullopt; }
  /// Does what pressing the item would do. It may run a modal loop and may destroy the window; what asked
  /// for it does not wait. The item may have changed since it was asked for, but exists and has an action.
  virtual void DoDefaultAction(int item) = 0;

 protected:
  ~AccessibleItems() = default;
};

/// Shows a window's items to assistive programs (Microsoft Active Accessibility): each is a child of the
/// window's client area, with the number that follows its place.
///
/// The window's thread must be a COM apartment and has to answer messages: clients in other threads and
/// processes reach it that way. Clients may keep what they were given for as long as they like; once the
/// window is gone they are told so.
class AccessibleList {
 public:
  /// Both are usually the object that this is a member of.
  AccessibleList(const Window& window, AccessibleItems& items);
  ~AccessibleList();
  AccessibleList(const AccessibleList&) = delete;
  AccessibleList& operator=(const AccessibleList&) = delete;

  /// To be asked first for every message of the window: what is returned is the whole answer, without a
  /// value the message goes its usual way.
  std::optional<LRESULT> Answer(UINT message, WPARAM wParam, LPARAM lParam);

  /// Announces a change, after it was made, as NotifyWinEvent does: EVENT_OBJECT_STATECHANGE, _NAMECHANGE,
  /// _FOCUS of an item; EVENT_OBJECT_REORDER, EVENT_SYSTEM_MENUPOPUPSTART and _MENUPOPUPEND of the whole.
  void Notify(DWORD event) const;
  void Notify(DWORD event, int item) const;

 private:
  class Object;

  LRESULT HandOut(WPARAM wParam);
  void Disconnect();

  const Window& window_;
  AccessibleItems& items_;
  ComPtr<Object> object_;  ///< Made when the first client asks.
};

/// Tells assistive programs what a window without items is.
class AccessiblePart final : private AccessibleItems {
 public:
  AccessiblePart(const Window& window, LONG role) : role_(role), whole_(window, *this) {}

  /// As that of a list.
  std::optional<LRESULT> Answer(UINT message, WPARAM wParam, LPARAM lParam) {
    return whole_.Answer(message, wParam, lParam);
  }

 private:
  LONG WholeRole() const override { return role_; }
  int AccessibleCount() const override { return 0; }
  AccessibleItem DescribeItem(int) const override { return {}; }
  void DoDefaultAction(int) override {}

  LONG role_;
  AccessibleList whole_;
};

}  // namespace snip
