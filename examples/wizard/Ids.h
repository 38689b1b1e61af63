#pragma once

// Of the pages' templates and their controls.

#define PAGE_NAME 101
#define PAGE_TICKETS 102
#define PAGE_SUMMARY 103

#define ID_NAME 1001
#define ID_TICKETS 1002
#define ID_HINT 1003
#define ID_SUMMARY 1004
#define ID_CHANGE 1005

#define TEXT_CAPTION 1
#define TEXT_NAME 2
#define TEXT_NAME_HELP 3
#define TEXT_TICKETS 4
#define TEXT_TICKETS_HELP 5
#define TEXT_SUMMARY 6
#define TEXT_SUMMARY_HELP 7
