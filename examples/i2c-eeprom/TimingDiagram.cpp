#include "TimingDiagram.h"

#include <cstdio>
#include <utility>

void TimingDiagram::sample(bool sda, bool scl)
{
    Row& row = rows_.back();
    row.marks += ' ';
    row.sda += sda ? '-' : '_';
    row.scl += scl ? '-' : '_';
    mark(sda, scl);
    if (bits_ == 9 && !scl) {
        bits_ = 0;
        rows_.emplace_back();
    }
    sda_ = sda;
    scl_ = scl;
}

void TimingDiagram::mark(bool sda, bool scl)
{
    Row& row = rows_.back();
    if (scl && !scl_) {
        ++bits_;
        if (bits_ <= 8)
            row.byte = row.byte << 1 | (sda ? 1u : 0u);
        row.marks.back() = bits_ <= 8 ? (sda ? '1' : '0') : (sda ? 'N' : 'A');
    } else if (scl && sda != sda_) {
        undoBit();
        row.marks.back() = sda ? 'P' : 'S';
    }
}

// The clock rises for a start or stop too, and only what SDA does then tells it from a bit.
void TimingDiagram::undoBit()
{
    Row& row = rows_.back();
    if (const auto last = row.marks.find_last_of("01"); bits_ > 0 && last != std::string::npos)
        row.marks[last] = ' ';
    bits_ = 0;
    row.byte = 0;
}

std::string TimingDiagram::take()
{
    std::string text;
    for (const Row& row : std::exchange(rows_, std::vector<Row>(1))) {
        if (row.marks.empty())
            continue;
        char byte[8] = "";
        if (row.marks.find_first_of("AN") != std::string::npos)
            std::snprintf(byte, sizeof byte, "   %02X", row.byte);
        text += "       " + row.marks + byte + "\n  SDA  " + row.sda + "\n  SCL  " + row.scl + "\n";
    }
    return text;
}
