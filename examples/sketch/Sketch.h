#pragma once

#include <tarn/DPI.h>
#include <tarn/DeviceContext.h>
#include <tarn/Point.h>
#include <tarn/Size.h>

#include <vector>

/// The drawing itself: strokes of the mouse, in the order in which they were made. Its points and its size count in
/// 1/384 inch, finer than any screen, and become pixels when it is drawn.
class Sketch {
public:
    static constexpr int dots = 384;
    static constexpr tarn::Size size{5600, 4000};

    static tarn::Point fromPixels(const tarn::Point& pixels, const tarn::DPI& dpi);
    static tarn::Point toPixels(const tarn::Point& point, const tarn::DPI& dpi);
    static tarn::Size pixelSize(const tarn::DPI& dpi);

    /// The `width` is in units of 1/96 inch.
    void begin(const tarn::Point& at, unsigned long colour, int width);
    void extend(const tarn::Point& to); ///< Goes on with the stroke begun last.
    bool undo();                        ///< Takes the last stroke away; false when there is none.
    void clear() { strokes_.clear(); }

    std::size_t strokeCount() const { return strokes_.size(); }
    void draw(tarn::DeviceContext& context, const tarn::DPI& dpi) const;

private:
    struct Stroke {
        unsigned long colour;
        int width;
        std::vector<tarn::Point> points;
    };

    std::vector<Stroke> strokes_;
};
