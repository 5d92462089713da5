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
  /// has found that the environment is not there any more.
  ComHostEnvironment(const host::VBE& root, std::function<void()> lost);

  std::unique_ptr<HostCodePane> ActiveCodePane() override;
  std::unique_ptr<HostModule> AddStandardModule() override;
  void Activate() override;
  void Lost() override { lost_(); }

 private:
  const host::VBE& root_;
  std::function<void()> lost_;
};

}  // namespace snip
