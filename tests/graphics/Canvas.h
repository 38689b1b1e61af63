#pragma once

#include <tarn/Bitmap.h>
#include <tarn/DeviceContext.h>

#include <string>
#include <vector>

namespace support {
constexpr unsigned long black = RGB(0, 0, 0);
constexpr unsigned long white = RGB(255, 255, 255);
constexpr unsigned long red = RGB(255, 0, 0);
constexpr unsigned long green = RGB(0, 255, 0);
constexpr unsigned long blue = RGB(0, 0, 255);

/// The pixels as text, a line for each row: '.' white, '#' black, 'R', 'G', 'B', and '?' for any other.
std::string pixelsOf(const tarn::DeviceContext& context, int width, int height);

/// A bitmap of a bit count, with a standard colour table for 1 (black, white) and 8 bits (with these five).
HBITMAP newDIBSection(int width, int height, unsigned short bitsPerPixel);

inline bool isAlive(HGDIOBJ object) { return GetObjectType(object) != 0; }

/// Paper in memory to draw on.
class Canvas {
public:
    Canvas(int width, int height, unsigned short bitsPerPixel = 32, unsigned long colour = white);

    std::string pixels() const { return pixelsOf(context, width_, height_); }

private:
    int width_, height_;
    tarn::Bitmap bitmap_; // Before the context, which must let go of it first.

public:
    tarn::DeviceContext context;
};

/// While it lives only so many drawing objects and contexts can be made.
class NoFreeGDIObjects {
public:
    explicit NoFreeGDIObjects(std::size_t but = 0);
    NoFreeGDIObjects(const NoFreeGDIObjects&) = delete;
    NoFreeGDIObjects& operator=(const NoFreeGDIObjects&) = delete;
    ~NoFreeGDIObjects();

private:
    std::vector<HBRUSH> taken_;
};
} // namespace support
