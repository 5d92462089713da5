#include "app/Rights.h"

#include <windows.h>

#include <algorithm>
#include <optional>
#include <vector>

#include "platform/Handle.h"

namespace snip {
namespace {

UniqueKernelObject OwnToken(DWORD access) {
  HANDLE token = nullptr;
  OpenProcessToken(GetCurrentProcess(), access, &token);
  return UniqueKernelObject(token);
}

/// A number that the system tells of the process's token; nothing on systems that do not know it.
std::optional<DWORD> TokenNumber(TOKEN_INFORMATION_CLASS what) {
  const UniqueKernelObject token = OwnToken(TOKEN_QUERY);
  DWORD number = 0;
  DWORD size = 0;
  if (!token || GetTokenInformation(token.get(), what, &number, sizeof number, &size) == 0)
    return std::nullopt;
  return number;
}

/// Whether the same user also runs programs without administrators' rights.
bool UserIsAlsoOrdinary() {
  return TokenNumber(TokenElevationType) == static_cast<DWORD>(TokenElevationTypeFull);
}

/// The process's own rights without those of administrators, to ask the system with. Somebody who is an
/// administrator in all that he does is left out as well: what remains are the groups that everybody is in.
UniqueKernelObject OrdinaryToken() {
  const UniqueKernelObject own = OwnToken(TOKEN_DUPLICATE | TOKEN_QUERY | TOKEN_ASSIGN_PRIMARY);
  SID_IDENTIFIER_AUTHORITY authority = SECURITY_NT_AUTHORITY;
  PSID administrators = nullptr;
  if (!own || AllocateAndInitializeSid(&authority, 2, SECURITY_BUILTIN_DOMAIN_RID, DOMAIN_ALIAS_RID_ADMINS, 0,
                                       0, 0, 0, 0, 0, &administrators) == 0) {
    return UniqueKernelObject();
  }
  alignas(TOKEN_USER) BYTE user[sizeof(TOKEN_USER) + SECURITY_MAX_SID_SIZE]{};
  DWORD size = 0;
  GetTokenInformation(own.get(), TokenUser, user, sizeof user, &size);
  SID_AND_ATTRIBUTES denied[] = {{administrators, 0},
                                 {reinterpret_cast<const TOKEN_USER*>(user)->User.Sid, 0}};
  HANDLE restricted = nullptr;
  CreateRestrictedToken(own.get(), DISABLE_MAX_PRIVILEGE, UserIsAlsoOrdinary() ? 1 : 2, denied, 0, nullptr, 0,
                        nullptr, &restricted);
  FreeSid(administrators);
  const UniqueKernelObject owner(restricted);
  HANDLE asking = nullptr;
  if (owner) DuplicateToken(restricted, SecurityIdentification, &asking);
  return UniqueKernelObject(asking);
}

bool Allows(const UniqueKernelObject& token, const std::wstring& path, std::initializer_list<DWORD> rights) {
  constexpr SECURITY_INFORMATION kParts =
      OWNER_SECURITY_INFORMATION | GROUP_SECURITY_INFORMATION | DACL_SECURITY_INFORMATION;
  DWORD size = 0;
  GetFileSecurityW(path.c_str(), kParts, nullptr, 0, &size);
  std::vector<BYTE> descriptor(size);
  if (size == 0 || GetFileSecurityW(path.c_str(), kParts, descriptor.data(), size, &size) == 0) return false;
  return std::any_of(rights.begin(), rights.end(), [&](DWORD right) {
    GENERIC_MAPPING mapping{FILE_GENERIC_READ, FILE_GENERIC_WRITE, FILE_GENERIC_EXECUTE, FILE_ALL_ACCESS};
    PRIVILEGE_SET privileges{};
    DWORD privilegesSize = sizeof privileges;
    DWORD granted = 0;
    BOOL allowed = FALSE;
    return AccessCheck(descriptor.data(), token.get(), right, &mapping, &privileges, &privilegesSize,
                       &granted, &allowed) != 0 &&
           allowed != 0;
  });
}

}  // namespace

bool RunsElevated() {
  return TokenNumber(TokenElevation).value_or(1) != 0;
}

bool RightsAreSplit() {
  return TokenNumber(TokenElevation).has_value();
}

bool WritesAreVirtual() {
  return TokenNumber(TokenVirtualizationEnabled).value_or(0) != 0;
}

bool ReplaceableByOrdinaryUsers(const std::wstring& file) {
  const UniqueKernelObject token = OrdinaryToken();
  if (!token) return false;
  const std::wstring folder = file.substr(0, file.find_last_of(L'\\') + 1);
  return Allows(token, file, {FILE_WRITE_DATA, DELETE, WRITE_DAC}) ||
         Allows(token, folder, {FILE_DELETE_CHILD, WRITE_DAC});
}

}  // namespace snip
