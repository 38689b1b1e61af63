#pragma once

// Of the controls.
#define ID_TREE 100
#define ID_ORDER 101
#define ID_COLOURS 102
#define ID_DETAILS 103
#define ID_LIST_VIEW 104
#define ID_SMALL_ICONS 105
#define ID_ICONS 106
#define ID_SMALLEST 107
#define ID_SHARE 108
#define ID_WIDTH 109
#define ID_NOTE 110
#define ID_READ_ONLY 111
#define ID_RESET 112
#define ID_SWATCH 113
#define ID_SMALLEST_TEXT 114
#define ID_VIEW 115
#define ID_KINDS 116
#define ID_BODIES 117
#define ID_STATUS 118
#define ID_TOOLS 119
#define ID_DAY 120
#define ID_TIME 121
#define ID_POWER 122
#define ID_POWER_ARROWS 123
#define ID_FIND 124
#define ID_SEEN 125
#define ID_FOLLOW 126
#define ID_FOLLOWING 127
#define ID_FIRST_LABEL 150

// Of the tool bar's buttons.
#define ID_CLEAR_NOTE 200
#define ID_WRITE_DOWN 201
#define ID_RENAME 202

// Of the resources.
#define ID_SMALL_PICTURES 1
#define ID_LARGE_PICTURES 2
#define ID_HUGE_PICTURES 3
#define ID_ORDERS 4
