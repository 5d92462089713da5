#pragma once

#include "app/ClickSubscription.h"

namespace snip::vba {

/// The add-in's entry in the editor's add-ins menu, from `Add` until this is destroyed. It is temporary: the
/// editor drops it when the editor itself ends.
class MenuEntry {
 public:
  class Owner : public ClickListener {
   public:
    /// Whether the add-in is still connected to an editor.
    virtual bool ConnectedTo(const IDispatch* editor) const = 0;

   protected:
    ~Owner() = default;
  };

  MenuEntry() = default;
  ~MenuEntry();
  MenuEntry(const MenuEntry&) = delete;
  MenuEntry& operator=(const MenuEntry&) = delete;

  /// Adds the entry to the menus of `editor`, the editor's root object, and removes entries left from an
  /// earlier time. False, without an entry, if the editor refuses. The editor may disconnect during these
  /// calls; then no more are made. Call it once.
  bool Add(IDispatch* editor, Owner& owner);

 private:
  ComPtr<IDispatch> button_;
  ClickSubscription<CommandBarButtonEvents> clicks_;
};

}  // namespace snip::vba
