#pragma once

#include <string>

#include "history/Files.h"

namespace snip {

/// Date and local time to the second, in the format of the user's system.
std::string DateAndTime(UtcTime time);
/// The same to the minute, and without the date if it is that of `now`.
std::string ShortTime(UtcTime time, UtcTime now);

}  // namespace snip
