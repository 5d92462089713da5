#include "platform/FolderChange.h"

namespace snip {

void FolderChange::Watch(const std::string& folder) {
  Stop();
  // Many programs save by giving a new file the name of the one before.
  notification_.Reset(FindFirstChangeNotificationA(
      folder.c_str(), FALSE,
      FILE_NOTIFY_CHANGE_SIZE | FILE_NOTIFY_CHANGE_LAST_WRITE | FILE_NOTIFY_CHANGE_FILE_NAME));
  Wait();
}

void FolderChange::Stop() {
  wait_.Reset();
  notification_.Reset();
  changed_ = false;
}

bool FolderChange::Take() {
  if (!changed_.exchange(false)) return false;
  FindNextChangeNotification(notification_.get());
  Wait();
  return true;
}

/// For one change at a time: for a folder that has been removed the system would report changes without end.
void FolderChange::Wait() {
  wait_.Reset();
  if (!notification_) return;
  HANDLE wait = nullptr;
  if (RegisterWaitForSingleObject(&wait, notification_.get(), &Changed, &changed_, INFINITE,
                                  WT_EXECUTEONLYONCE | WT_EXECUTEINWAITTHREAD) != 0) {
    wait_.Reset(wait);
  } else {
    changed_ = true;  // so that it is looked for and tried again
  }
}

void FolderChange::Changed(void* changed, BOOLEAN /*timedOut*/) {
  *static_cast<std::atomic<bool>*>(changed) = true;
}

}  // namespace snip
