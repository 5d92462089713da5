#pragma once

#include <string>

namespace snip {

/// Whose program is registered as the server of the add-in's class.
enum class Registered {
  None,
  Own,    ///< The file that runs.
  Other,  ///< Another copy, which is there.
  Gone,   ///< A file that is there no more.
};

/// Whether a start enters its program, which the user has already been told of: another copy was started
/// last, the folder was moved, or only a program of the other width (`otherView` of the registry) is
/// registered. A program that is registered nowhere was taken away on purpose.
bool EntersItself(Registered ownView, Registered otherView);

/// Whether taking the program away takes that registration.
bool TakesAway(Registered registered);

/// For whom an entry was written.
enum class Entered { Nowhere, User, All };

/// What came of entering or taking away the program.
struct RegistrationFacts {
  Entered server = Entered::All;  ///< The class, in the registry.
  Entered listed = Entered::All;  ///< The line in "vbaddin.ini"; User is that user's virtual store.
  /// The system has administrators' programs look past what is entered for the user.
  bool hiddenFromAdministrators = false;
  /// Administrators' programs start a file now that ordinary users can write.
  bool replaceable = false;
  bool inKeys = true;  ///< The entries in the registry's lists, with what VBA's editor loads.
};

/// What the user has to be told of it, in paragraphs; empty when everybody's environment finds the add-in.
std::string AfterEntering(const RegistrationFacts& facts);

/// What is said when the registration or an entry in a list could not be taken away; empty when all were.
std::string AfterTakingAway(bool serverGone, bool listGone);

}  // namespace snip
