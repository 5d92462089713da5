#pragma once

#include <functional>
#include <memory>

#include "app/HostObjects.h"
#include "ui/main/HostEnvironment.h"

namespace snip {

/// The environment behind its root object.
class ComHostEnvironment : public HostEnvironment {
 public:
  /// `root` is the caller's and may be emptied; then the environment is gone. `lost` is called when a request
  /// seems to have found that the environment is not there any more, and says whether it has.
  ComHostEnvironment(const host::VBE& root, std::function<bool()> lost);

  std::unique_ptr<HostCodePane> ActiveCodePane() override;
  std::unique_ptr<HostModule> AddStandardModule() override;
  std::string ProjectName() override;
  bool HasWindow(void* window) override;
  bool Lost() override { return lost_(); }

  /// Tells it its main window, which then need not be asked for while the environment may be busy.
  void SetMainWindow(HWND window) { mainWindow_ = window; }

 private:
  const host::VBE& root_;
  HWND mainWindow_ = nullptr;  ///< Null when not known.
  std::function<bool()> lost_;
};

}  // namespace snip
