#pragma once

#include "Test.h"

#include <tarn/Stream.h>

/// Serves its bytes in the pieces that it is told to, keeps what is written as far as it has room, and counts the
/// calls.
struct Pieces : InputStream, BufferedOutputStream {
    explicit Pieces(std::string content = "", unsigned largestRead = ~0u) : source(content), largest(largestRead) {}

    unsigned int read(void* buffer, unsigned int size) override
    {
        ++calls;
        const auto count = source.copy(static_cast<char*>(buffer), std::min(size, largest));
        source.erase(0, count);
        return static_cast<unsigned int>(count);
    }
    unsigned int write(const void* buffer, unsigned int size) override
    {
        ++calls;
        const auto count = std::min<std::size_t>(size, room - written.size());
        written.append(static_cast<const char*>(buffer), count);
        return static_cast<unsigned int>(count);
    }
    void flush() override { ++flushes; }
    void close() override { FAIL("nobody's to close"); }

    std::string source, written;
    unsigned largest;
    std::size_t room = 1000000;
    int calls = 0, flushes = 0;
};
