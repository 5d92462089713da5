#pragma once

// Resource numbers, shared by the resource script and the program.

#define IDI_SNIPSTORE 1

// The four icons of the message box, in the order of its `img` elements 0 to 3.
#define IDI_MESSAGE_INFORMATION 10
#define IDI_MESSAGE_QUESTION 11
#define IDI_MESSAGE_EXCLAMATION 12
#define IDI_MESSAGE_CRITICAL 13

// The pictures of the toolbars and menus.
#define IDB_PASTE_TO_CODE 101
#define IDB_COPY 102
#define IDB_NEW_MODULE 103
#define IDB_EDIT_SNIPPET 104
#define IDB_DELETE_SNIPPET 105
#define IDB_KEEP_ON_TOP 106
#define IDB_ABOUT 107
#define IDB_NEW_SNIPPET 108
#define IDB_NEW_LIBRARY 109
#define IDB_SAVE_LIBRARY 110
#define IDB_WEB_PAGE 111
#define IDB_RENAME_LIBRARY 112
#define IDB_SETTINGS 113
#define IDB_VIEW_ATTACHMENT 114
#define IDB_UNDO 115
#define IDB_CUT 116
#define IDB_PASTE 117
#define IDB_SELECT_ALL 118
#define IDB_COMMIT 119
#define IDB_SYNTAX_HIGHLIGHTING 120

// The arrow beside a toolbar button that opens a menu.
#define IDB_DROP_ARROW 121
