#pragma once

#include <tarn/DeviceContext.h>
#include <tarn/Point.h>
#include <tarn/Size.h>

#include <vector>

/// The drawing itself: strokes of the mouse, in the order in which they were made.
class Sketch {
public:
    static constexpr tarn::Size size{1400, 1000};

    void begin(const tarn::Point& at, unsigned long colour, int width);
    void extend(const tarn::Point& to); ///< Goes on with the stroke begun last.
    bool undo();                        ///< Takes the last stroke away; false when there is none.
    void clear() { strokes_.clear(); }

    std::size_t strokeCount() const { return strokes_.size(); }
    void draw(tarn::DeviceContext& context) const;

private:
    struct Stroke {
        unsigned long colour;
        int width;
        std::vector<tarn::Point> points;
    };

    std::vector<Stroke> strokes_;
};
