#pragma once

#include "app/ClickSubscription.h"

namespace snip::vba {

/// The add-in's entry in the editor's menu of add-ins, from `Add` to the end of this. It is a temporary one:
/// the editor forgets it when it ends without a word.
class MenuEntry {
 public:
  class Owner : public ClickListener {
   public:
    /// Whether it is still connected to an editor.
    virtual bool ConnectedTo(const IDispatch* editor) const = 0;

   protected:
    ~Owner() = default;
  };

  MenuEntry() = default;
  ~MenuEntry();
  MenuEntry(const MenuEntry&) = delete;
  MenuEntry& operator=(const MenuEntry&) = delete;

  /// Enters it in the menus of `editor`, the editor's root object, in place of those that an earlier time has
  /// left; false, with nothing left, when the editor refuses. It calls nothing more once the editor, which it
  /// waits for, has disconnected. Called once.
  bool Add(IDispatch* editor, Owner& owner);

 private:
  ComPtr<IDispatch> button_;
  ClickSubscription<CommandBarButtonEvents> clicks_;
};

}  // namespace snip::vba
