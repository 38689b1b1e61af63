#pragma once

// The one way in which the library and its users include the platform's headers: wide entry points by
// default, Windows 7 as the target, without the rarely used parts and without the macros that would
// rename members or standard functions.

#ifndef UNICODE
#define UNICODE
#endif
#ifndef _UNICODE
#define _UNICODE
#endif
#ifndef NOMINMAX
#define NOMINMAX
#endif
#ifndef WIN32_LEAN_AND_MEAN
#define WIN32_LEAN_AND_MEAN
#endif
#ifndef WINVER
#define WINVER 0x0601
#endif
#ifndef _WIN32_WINNT
#define _WIN32_WINNT 0x0601
#endif

#include <windows.h>

// What the platform's macros (PropSheet_Changed, TreeView_SelectItem) send with.
#ifndef SNDMSG
#define SNDMSG ::SendMessageW
#endif

#undef min
#undef max
#undef CreateDialog
#undef CreateFont
#undef CreateService
#undef CreateWindow
#undef DispatchMessage
#undef DrawText
#undef FindResource
#undef GetClassName
#undef GetCurrentTime
#undef GetMessage
#undef GetObject
#undef LoadLibrary
#undef LoadString
#undef SendMessage
#undef StartService
