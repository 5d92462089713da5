#pragma once

// Resource numbers, shared by the resource script and the program.

#define IDI_SNIPSTORE 1

// The four icons of the message box, in the order of its `img` elements 0 to 3.
#define IDI_MESSAGE_INFORMATION 10
#define IDI_MESSAGE_QUESTION 11
#define IDI_MESSAGE_EXCLAMATION 12
#define IDI_MESSAGE_CRITICAL 13

// IDB_..., the pictures of the toolbars and menus: made from the names of the files in pictures/toolbar/.
#include "pictures/toolbar.h"
