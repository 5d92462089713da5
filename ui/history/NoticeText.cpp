#include "ui/history/NoticeText.h"

namespace snip {

NoticeText NoticeOf(LibraryEvent::Kind kind, const std::string& name, const std::string& time) {
  using enum NoticeChoice;
  const std::string quoted = "'" + name + "'";
  switch (kind) {
    case LibraryEvent::Kind::SaveFailed:
      return {quoted + " could not be saved. All of it is still here.", {SaveAgain, History, Close}};
    case LibraryEvent::Kind::SaveCompleted:
      return {"The last save of " + quoted + " was interrupted. It has been completed.", {History, Close}};
    case LibraryEvent::Kind::UnsavedFound:
      return {"Unsaved changes of " + quoted + " from " + time + " were found.", {TakeThem, History, Close}};
    case LibraryEvent::Kind::ChangedOutside:
      return {quoted + " was changed by another program.", {LoadAgain, History, Close}};
    default:
      return {"The history of " + quoted + " cannot be written. Saving works without it.", {Close}};
  }
}

const char* CaptionOf(NoticeChoice choice) {
  switch (choice) {
    case NoticeChoice::LoadAgain:
      return "&Load Again";
    case NoticeChoice::TakeThem:
      return "&Take Them";
    case NoticeChoice::SaveAgain:
      return "&Save Again";
    case NoticeChoice::History:
      return "&History";
    default:
      return "&Close";
  }
}

}  // namespace snip
