#include "app/AddInWindow.h"

#include <algorithm>
#include <utility>

namespace snip {

bool AddInWindow::Serves(const WindowUser& user) const {
  return !services_.empty() && services_.back().user == &user;
}

std::vector<AddInWindow::Service>::iterator AddInWindow::Find(const WindowUser& user) {
  return std::find_if(services_.begin(), services_.end(),
                      [&](const Service& service) { return service.user == &user; });
}

bool AddInWindow::Show(WindowUser& user, HostEnvironment* host) {
  Forget(user);
  services_.push_back({&user, host});
  // It may have been unloaded again while it told the user something.
  return window_.Show(host) && window_.hWnd() != nullptr;
}

void AddInWindow::Hide(const WindowUser& user) {
  if (Serves(user)) window_.Hide();
}

bool AddInWindow::Unload(const WindowUser& user) {
  const auto service = Find(user);
  if (service == services_.end()) return true;
  service->host = nullptr;
  if (Serves(user)) {
    if (services_.size() == 1) {
      window_.Unload();
    } else {
      window_.SetHost(services_[services_.size() - 2].host);
    }
  }
  // Another one may have shown it while the user was asked whether to save.
  if (services_.size() == 1 && Serves(user) && window_.hWnd() != nullptr) return false;
  Forget(user);
  return true;
}

void AddInWindow::Forget(const WindowUser& user) {
  if (const auto service = Find(user); service != services_.end()) services_.erase(service);
}

void AddInWindow::OnHidden() {
  // A user that has only waited for this may end with it, and be forgotten.
  const std::vector<Service> told = services_;
  for (const Service& service : told) {
    if (Find(*service.user) != services_.end()) service.user->OnHidden();
  }
}

void AddInWindow::OnUnloaded() {
  std::vector<Service> told = std::exchange(services_, {});
  for (const Service& service : told) service.user->OnHidden();
}

}  // namespace snip
