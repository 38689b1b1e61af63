#pragma once

// As much of the platform as the sources that are compiled for the host ask for.

#include <cstdio>

inline void OutputDebugStringA(const char* text) { std::fputs(text, stderr); }
