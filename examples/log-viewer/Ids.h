#pragma once

#define ID_PROGRAM 1
#define DIALOG_FILTER 100

#define ID_LIST 1001
#define ID_STATUS 1002
#define ID_TEXT 1003
#define ID_ERRORS_ONLY 1004

#define ID_OPEN 2001
#define ID_FILTER 2002
#define ID_COPY 2003
#define ID_EXIT 2004
