#include "app/RegistrationRules.h"

namespace snip {
namespace {

void AddParagraph(std::string& text, const char* paragraph) {
  if (!text.empty()) text += "\r\n\r\n";
  text += paragraph;
}

}  // namespace

bool EntersItself(Registered ownView, Registered otherView) {
  if (ownView == Registered::None) return otherView != Registered::None;
  return ownView != Registered::Own;
}

bool TakesAway(Registered registered) {
  return registered == Registered::Own || registered == Registered::Gone;
}

std::string AfterEntering(const RegistrationFacts& facts) {
  std::string text;
  if (facts.server == Entered::Nowhere) {
    AddParagraph(text,
                 "The program could not be registered, so that the VB IDE cannot load it. "
                 "Run it with /regserver to try again.");
  }
  if (facts.listed == Entered::Nowhere) {
    AddParagraph(
        text,
        "The list of add-ins, vbaddin.ini in the Windows directory, could not be written, so that the "
        "VB IDE does not show the add-in. Run the program with /regserver as administrator.");
  }
  if (!facts.inKeys) {
    AddParagraph(
        text,
        "The lists of add-ins in the registry could not be written, so that VB 6 or the editor of VBA "
        "may not show the add-in. Run the program with /regserver to try again.");
  }
  if (facts.hiddenFromAdministrators && (facts.server == Entered::User || facts.listed == Entered::User)) {
    AddParagraph(
        text,
        "The program was entered for you alone, which a VB IDE that runs as administrator does not see. "
        "If yours does, run the program with /regserver as administrator.");
  }
  if (facts.replaceable && facts.server == Entered::All) {
    AddParagraph(text,
                 "Users who are not administrators can replace this file, which the VB IDE now starts for "
                 "administrators too. Keep it where only administrators may write, or register it without "
                 "their rights.");
  }
  return text;
}

std::string AfterTakingAway(bool serverGone, bool listGone) {
  std::string text;
  if (!serverGone) {
    AddParagraph(text,
                 "The program could not be taken out of the registry. Run it with /unregserver as "
                 "administrator.");
  }
  if (!listGone) {
    AddParagraph(text,
                 "The program could not be taken out of all lists of add-ins: vbaddin.ini in the Windows "
                 "directory and your lists in the registry.");
  }
  return text;
}

}  // namespace snip
