#include "history/BackgroundWork.h"

#include <exception>
#include <utility>

namespace snip {

bool BackgroundWork::Begin(std::function<void()> work) {
  if (Works()) return false;
  Finish();
  done_ = false;
  try {
    thread_ = std::thread([this, act = std::move(work)] {
      try {
        act();
      } catch (...) {  // an exception that leaves a thread would end the program
      }
      done_ = true;
    });
  } catch (const std::exception&) {
    return false;
  }
  return true;
}

void BackgroundWork::Finish() {
  if (thread_.joinable()) thread_.join();
}

}  // namespace snip
