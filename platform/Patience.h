#pragma once

#include <algorithm>
#include <chrono>
#include <mutex>
#include <thread>
#include <vector>

namespace snip {

/// How long the calls that share it may wait for other programs: each for as long as it wants, or, while a
/// limit is set, all of them in the same thread together for no longer than that.
class Patience {
 public:
  using Duration = std::chrono::milliseconds;

  /// Holds for the thread that made it, as long as it lives. A second one at the same time can only lessen
  /// what is left.
  class Limit {
   public:
    Limit(Patience& patience, Duration all) : patience_(patience) {
      const std::lock_guard lock(patience_.mutex_);
      Account* account = patience_.Find(thread_);
      if (account == nullptr) account = &patience_.accounts_.emplace_back(thread_);
      ++account->limits;
      account->left = std::min(account->left, all);
    }
    ~Limit() {
      const std::lock_guard lock(patience_.mutex_);
      --patience_.Find(thread_)->limits;
      std::erase_if(patience_.accounts_, [](const Account& account) { return account.limits == 0; });
    }
    Limit(const Limit&) = delete;
    Limit& operator=(const Limit&) = delete;

   private:
    Patience& patience_;
    const std::thread::id thread_ = std::this_thread::get_id();
  };

  /// How much of that may be waited now; it counts as waited.
  Duration Take(Duration wanted) {
    const std::lock_guard lock(mutex_);
    Account* const account = Find(std::this_thread::get_id());
    if (account == nullptr) return wanted;
    const Duration taken = std::min(wanted, account->left);
    account->left -= taken;
    return taken;
  }

 private:
  struct Account {
    explicit Account(std::thread::id owner) : thread(owner) {}
    std::thread::id thread;
    int limits = 0;
    Duration left = Duration::max();
  };

  Account* Find(std::thread::id thread) {
    const auto found = std::ranges::find(accounts_, thread, &Account::thread);
    return found == accounts_.end() ? nullptr : &*found;
  }

  std::mutex mutex_;
  std::vector<Account> accounts_;  ///< Of the threads with a limit.
};

}  // namespace snip
