#pragma once

// Of the resources.
#define ID_PROGRAM 1 // The icon (which the build adds), the menu and the accelerators.
#define DIALOG_APPOINTMENT 101
#define DIALOG_GO_TO 102
#define DIALOG_PROGRESS 104
#define PAGE_WEEKS 105
#define PAGE_TIME 106
#define TEXT_OPTIONS 1

// Of the commands.
#define ID_NEW 200
#define ID_OPEN 201
#define ID_SAVE 202
#define ID_SAVE_AS 203
#define ID_IMPORT 204
#define ID_EXPORT 205
#define ID_RECENT 206
#define ID_EXIT 207
#define ID_ADD 220
#define ID_CHANGE 221
#define ID_DELETE 222
#define ID_PREVIOUS 240
#define ID_NEXT 241
#define ID_TODAY 242
#define ID_GO_TO 243
#define ID_OPTIONS 244

// Of the controls in dialogs.
#define ID_SUBJECT 1001
#define ID_PLACE 1002
#define ID_CATEGORY 1003
#define ID_ALL_DAY 1004
#define ID_FROM_DATE 1005
#define ID_FROM_TIME 1006
#define ID_TO_DATE 1007
#define ID_TO_TIME 1008
#define ID_REPEAT 1009
#define ID_NOTE 1010
#define ID_HINT 1011
#define ID_ZONE 1012
#define ID_MONTH 1013
#define ID_YEAR 1014
#define ID_BAR 1016
#define ID_FIRST_DAY 1017
#define ID_MINIMAL_DAYS 1018
#define ID_CUTOVER 1019
#define ID_TITLE 1020

// Of the program's window.
#define ID_TREE 1100
#define ID_LIST 1101
#define ID_STATUS 1102
