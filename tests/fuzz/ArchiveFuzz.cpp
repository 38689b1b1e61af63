// Reads whatever the fuzzer makes up as an archive of the tests' graph, and as single values. What is no
// promised exception, and what stays alive afterwards, is a fault.

#include "Graph.h"

#include <cstdint>
#include <cstdlib>

namespace {
void readValues(const std::uint8_t* data, unsigned size)
{
    tarn::MemoryInputStream stream(data, size);
    tarn::InputStream& in = stream;
    try {
        std::string text;
        bool flag = false;
        short half = 0;
        long long number = 0;
        double real = 0;
        for (;;)
            in >> text >> flag >> tarn::BigEndian >> half >> tarn::LittleEndian >> number >> real;
    } catch (const tarn::EndOfFile&) {
    }
}
} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    graph::readAndDiscard(data, static_cast<unsigned>(size));
    graph::loadAndDiscard(data, static_cast<unsigned>(size));
    if (graph::Counted::alive != 0)
        std::abort();
    readValues(data, static_cast<unsigned>(size));
    return 0;
}
