#pragma once

#include <windows.h>

#include <span>
#include <string>
#include <vector>

#include "platform/Handle.h"
#include "platform/MessageFunction.h"

namespace snip {

/// Registry operations over the system's ANSI functions. No operation fails towards its caller: what the
/// registry refuses is shown to the user as a message, a missing key or value is no error, and the operation
/// goes on with what it has.
class Registry32 {
 public:
  explicit Registry32(ShowMessageFunction showMessage);

  /// The program's string settings, kept under HKEY_CURRENT_USER\Software\company\application\section.
  void SaveRegSetting(const std::string& company, const std::string& application, const std::string& section,
                      const std::string& valueName, const std::string& value) const;
  /// Without blanks around it; empty when there is no such value. Makes the key when it is missing. A value
  /// of 255 bytes or more reads as empty, after a message.
  std::string GetRegSetting(const std::string& company, const std::string& application,
                            const std::string& section, const std::string& valueName) const;

  /// The string value of that name ("" for the key's default value), or `defaultText` when there is none or
  /// it is no REG_SZ. Shows no message.
  std::string QueryRegString(HKEY root, const std::string& subKey, const std::string& valueName,
                             const std::string& defaultText) const;

  /// A key opened with all access; empty when that failed.
  UniqueRegKey OpenRegKey(HKEY root, const std::string& subKey, bool createIfMissing) const;
  UniqueRegKey CreateRegKey(HKEY root, const std::string& subKey) const;
  void CloseRegKey(UniqueRegKey key) const;

  /// Writes a value of type REG_SZ, REG_EXPAND_SZ, REG_DWORD (see NumberValueData) or REG_MULTI_SZ
  /// (`extraStrings` behind `value`); any other type only gives a message.
  void SetRegValue(const std::string& value, const UniqueRegKey& key, const std::string& valueName,
                   DWORD type, std::span<const std::string> extraStrings = {}) const;

  /// Reads a value as one of the types REG_SZ, REG_EXPAND_SZ, REG_BINARY (in hexadecimal) or REG_MULTI_SZ
  /// (its first string, all of them in `strings`); any other type only gives a message. `type` becomes the
  /// stored type. At most 255 bytes; a missing value reads as blanks.
  std::string QueryRegValue(const UniqueRegKey& key, const std::string& valueName, DWORD& type,
                            std::vector<std::string>* strings = nullptr) const;

  /// Shows what a result code means, unless it means success or "not found".
  void ReportRegError(LONG code) const;

 private:
  ShowMessageFunction showMessage_;
};

}  // namespace snip
