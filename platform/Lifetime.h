#pragma once

#include <memory>
#include <utility>

namespace snip {

/// A member by which an object sees, after others have acted, whether they have ended it.
class Lifetime {
 public:
  class Watch {
   public:
    bool Ended() const { return alive_.expired(); }

   private:
    friend class Lifetime;
    explicit Watch(std::weak_ptr<const bool> alive) : alive_(std::move(alive)) {}
    std::weak_ptr<const bool> alive_;
  };

  /// To be made before the others act, and asked afterwards.
  Watch Begin() const { return Watch(alive_); }
  /// From now on the object counts as ended.
  void End() { alive_.reset(); }

  /// Calls a handler, which may end the object together with the handler itself; false when it did.
  template <class Handler, class... Arguments>
  bool Call(const Handler& handler, const Arguments&... arguments) const {
    const Watch watch = Begin();
    const Handler kept = handler;
    if (kept) kept(arguments...);
    return !watch.Ended();
  }

 private:
  std::shared_ptr<const bool> alive_ = std::make_shared<const bool>(true);
};

}  // namespace snip
