#pragma once

namespace snip {

/// What `bns` tells its caller; scripts rely on these numbers.
enum class ExitCode {
  Done = 0,
  No = 1,     ///< The answer is no, or something was left out: nothing found, faults, a name already there.
  Usage = 2,  ///< The command line makes no sense.
  File = 3,   ///< A file could not be read or written.
  Malformed = 4,  ///< A file is not of the format it should be of.
  Refused = 5,  ///< It would lose or overwrite something, or the format cannot hold it. Nothing was written.
};

}  // namespace snip
