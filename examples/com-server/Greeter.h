#pragma once

#include <tarn/Windows.h>

// What the server and its client agree on.

/// The class. Its objects are used through IDispatch: the property "name" is who to greet, the method
/// "greet" returns the greeting, and "greetings" tells how many there were.
constexpr GUID CLSID_Greeter = {0x6d2e1f50, 0x2a7c, 0x4b0e, {0x9d, 0x31, 0x5c, 0x8f, 0x0e, 0x7a, 0x44, 0x12}};
constexpr const wchar_t* greeterProgID = L"Tarn.Greeter";

/// Its events: "greeted", with the greeting as its argument.
constexpr GUID DIID_GreeterEvents = {0x6d2e1f51, 0x2a7c, 0x4b0e, {0x9d, 0x31, 0x5c, 0x8f, 0x0e, 0x7a, 0x44, 0x12}};
constexpr long greetedEvent = 1;
