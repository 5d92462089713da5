#pragma once

#include <windows.h>
#include <ole2.h>

#include <string>
#include <vector>

#include "platform/Com.h"

namespace snip {

/// What is dragged. A source fills it, a target reads it; texts are in the ANSI code page.
class OleData {
 public:
  class Store;

  /// What somebody else drags: to be read only.
  explicit OleData(ComPtr<IDataObject> object);
  /// What this program drags.
  explicit OleData(ComPtr<Store> store);
  OleData(OleData&&) noexcept;
  OleData& operator=(OleData&&) noexcept;
  ~OleData();

  bool GetFormat(CLIPFORMAT format) const;
  /// Empty when there is no text. CF_UNICODETEXT is converted, any other format taken as bytes up to a zero.
  std::string GetText(CLIPFORMAT format = CF_TEXT) const;
  /// Names of the files that are dragged (CF_HDROP).
  std::vector<std::string> Files() const;

  // These are false for what somebody else drags.
  bool SetText(const std::string& text, CLIPFORMAT format = CF_TEXT);
  /// Without names there is no list of files any more.
  bool SetFiles(const std::vector<std::string>& names);
  /// Offers a format whose data are asked for with OLESetData when a target wants them.
  bool Offer(CLIPFORMAT format);
  bool Clear();

 private:
  ComPtr<IDataObject> object_;
  ComPtr<Store> store_;
};

}  // namespace snip
