#pragma once

/// @file
/// What is exported.

/// Marks what the library exports: exported while the library itself is built, imported by its users.
#ifdef TARN_BUILDING
#define TARN_API __declspec(dllexport)
#else
#define TARN_API __declspec(dllimport)
#endif
