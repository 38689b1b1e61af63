#pragma once

#include <string>
#include <vector>

/// Draws the two lines of an I2C bus as text, one line of the drawing for each byte, and marks what they
/// mean: S start, P stop, the bits, A acknowledged, N not acknowledged.
class TimingDiagram {
public:
    /// Adds a column with the levels on the wires.
    void sample(bool sda, bool scl);
    bool scl() const { return scl_; } ///< As last sampled.

    /// The drawing so far, which is then begun anew.
    std::string take();

private:
    struct Row {
        std::string marks, sda, scl;
        unsigned byte = 0;
    };

    void mark(bool sda, bool scl);
    void undoBit();

    std::vector<Row> rows_{1};
    bool sda_ = true, scl_ = true;
    unsigned bits_ = 0;
};
