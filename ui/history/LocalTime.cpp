#include "ui/history/LocalTime.h"

#include <windows.h>

namespace snip {
namespace {

SYSTEMTIME LocalTime(UtcTime time) {
  constexpr std::int64_t millisecondsFrom1601To1970 = 11644473600000;
  const std::int64_t ticks = (time.time_since_epoch().count() + millisecondsFrom1601To1970) * 10000;
  const FILETIME utc{static_cast<DWORD>(ticks), static_cast<DWORD>(ticks >> 32)};
  FILETIME local{};
  SYSTEMTIME parts{};
  FileTimeToLocalFileTime(&utc, &local);
  FileTimeToSystemTime(&local, &parts);
  return parts;
}

std::string DateOf(const SYSTEMTIME& time) {
  char text[80]{};
  GetDateFormatA(LOCALE_USER_DEFAULT, DATE_SHORTDATE, &time, nullptr, text, sizeof text);
  return text;
}

std::string TimeOf(const SYSTEMTIME& time, DWORD flags) {
  char text[80]{};
  GetTimeFormatA(LOCALE_USER_DEFAULT, flags, &time, nullptr, text, sizeof text);
  return text;
}

}  // namespace

std::string DateAndTime(UtcTime time) {
  const SYSTEMTIME local = LocalTime(time);
  return DateOf(local) + " " + TimeOf(local, 0);
}

std::string ShortTime(UtcTime time, UtcTime now) {
  const SYSTEMTIME local = LocalTime(time);
  const std::string date = DateOf(local);
  return (date == DateOf(LocalTime(now)) ? "" : date + " ") + TimeOf(local, TIME_NOSECONDS);
}

}  // namespace snip
