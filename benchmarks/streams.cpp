#include "Growth.h"
#include "Ratios.h"

#include <catch2/catch.hpp>

#include <tarn/BufferingStream.h>
#include <tarn/MemoryStream.h>
#include <tarn/StdIOStream.h>

#include "ScratchFolder.h"

#include <cstring>
#include <string>
#include <vector>

using namespace tarn;

namespace {
constexpr unsigned valueCount = 1000000;
// Not known to the compiler, so that it calls the runtime library's function for each piece.
void* (*volatile runtimeCopy)(void*, const void*, std::size_t) = &std::memcpy;

char* copyPiece(char* to, const void* from, std::size_t size)
{
    runtimeCopy(to, from, size);
    return to + size;
}

/// A stream that has the memory for `size` bytes already.
MemoryOutputStream withRoomFor(unsigned size)
{
    MemoryOutputStream out;
    out.setFilePointer(size, Seekable::begin);
    return out;
}
} // namespace

TEST_CASE("operator<< against memcpy")
{
    bench::Ratios table("A million values into memory of known size");
    const std::vector<int> numbers(valueCount, 7);
    const std::vector<std::string> texts(valueCount, "twelve chars");
    MemoryOutputStream out = withRoomFor(valueCount * 16);
    std::vector<char> memory(valueCount * 16);

    const auto writeNumbers = [&] {
        out.setFilePointer(0, Seekable::begin);
        for (const int number : numbers)
            out << number;
    };
    const auto writeTexts = [&] {
        out.setFilePointer(0, Seekable::begin);
        for (const std::string& text : texts)
            out << text;
    };
    table.row("integers, memcpy of the runtime library", 1.2, writeNumbers, [&] {
        char* to = memory.data();
        for (const int number : numbers)
            to = copyPiece(to, &number, sizeof number);
    });
    table.row("integers, memcpy as the compiler's own store", 1.2, writeNumbers, [&] {
        char* to = memory.data();
        for (const int number : numbers) {
            std::memcpy(to, &number, sizeof number);
            to += sizeof number;
            bench::keep(*to);
        }
    });
    table.row("strings of 12 characters, memcpy of the runtime library", 1.2, writeTexts, [&] {
        char* to = memory.data();
        for (const std::string& text : texts) {
            const auto length = static_cast<unsigned>(text.size());
            to = copyPiece(to, &length, sizeof length);
            to = copyPiece(to, text.data(), length);
        }
    });
}

TEST_CASE("Many small writes into memory that has to be made")
{
    bench::Ratios table("200,000 integers into a MemoryOutputStream");
    constexpr unsigned count = 200000;
    const auto writeTo = [](OutputStream& out) {
        for (unsigned i = 0; i < count; ++i)
            out << i;
    };
    const auto sized = [&] {
        MemoryOutputStream out = withRoomFor(count * sizeof(unsigned));
        out.setFilePointer(0, Seekable::begin);
        writeTo(out);
    };
    table.row(
        "through a BufferingOutputStream, the one that has its size", 1.5,
        [&] {
            MemoryOutputStream memory;
            BufferingOutputStream out(memory);
            writeTo(out);
            out.flush();
        },
        sized);
    table.row(
        "by itself, the one that has its size", 100,
        [&] {
            MemoryOutputStream out;
            writeTo(out);
        },
        sized);
}

namespace {
constexpr unsigned blockSize = 32 << 20;
constexpr unsigned blockRounds = 32; // 1 GB in all.
} // namespace

TEST_CASE("Copying streams against memcpy and the runtime library")
{
    bench::Ratios table("Stream to stream");
    const std::vector<char> source(blockSize, 'x');
    std::vector<char> memory(blockSize);
    MemoryInputStream in(source.data(), blockSize);
    MemoryOutputStream out = withRoomFor(blockSize);
    const auto copyStreams = [&] {
        for (unsigned i = 0; i < blockRounds; ++i) {
            in.setFilePointer(0, Seekable::begin);
            out.setFilePointer(0, Seekable::begin);
            static_cast<OutputStream&>(out) << static_cast<InputStream&>(in);
        }
    };
    const auto eachPiece = [&](auto copy) {
        for (unsigned i = 0; i < blockRounds; ++i)
            for (unsigned at = 0; at < blockSize; at += 10000)
                copy(at, std::min(10000u, blockSize - at));
    };
    table.row("1 GB through memory, a loop of memcpy over a work buffer", 1.1, copyStreams, [&] {
        char work[10000];
        eachPiece([&](unsigned at, unsigned size) {
            std::memcpy(work, source.data() + at, size);
            bench::keep(work);
            std::memcpy(memory.data() + at, work, size);
        });
    });
    table.row("1 GB through memory, a loop of memcpy straight across", 1.05, copyStreams, [&] {
        eachPiece([&](unsigned at, unsigned size) { std::memcpy(memory.data() + at, source.data() + at, size); });
    });
}

TEST_CASE("StdIOStream against fread and fwrite")
{
    bench::Ratios table("A file of 16 MB, in pieces");
    const support::ScratchFolder folder;
    const std::string name = folder.file("data");
    std::vector<char> piece(64 << 10, 'x');
    for (const unsigned size : {16u, 1000u, 64u << 10}) {
        const unsigned count = (16u << 20) / size;
        const std::string suffix = " in pieces of " + std::to_string(size);
        table.row(
            "write" + suffix, 1.05,
            [&] {
                StdIOStream stream(name.c_str(), "wb");
                for (unsigned i = 0; i < count; ++i)
                    stream.write(piece.data(), size);
            },
            [&] {
                FILE* const file = fopen(name.c_str(), "wb");
                for (unsigned i = 0; i < count; ++i)
                    fwrite(piece.data(), 1, size, file);
                fclose(file);
            });
        table.row(
            "read" + suffix, 1.05,
            [&] {
                StdIOStream stream(name.c_str(), "rb");
                while (stream.read(piece.data(), size) == size)
                    ;
            },
            [&] {
                FILE* const file = fopen(name.c_str(), "rb");
                while (fread(piece.data(), 1, size, file) == size)
                    ;
                fclose(file);
            });
    }
}

TEST_CASE("Memory: growth", "[.growth]")
{
    const bench::Growth growth("Integers into a stream in memory", "integers");
    const auto writeTo = [](OutputStream& out, unsigned count) {
        for (unsigned i = 0; i < count; ++i)
            out << i;
    };
    growth.line("MemoryOutputStream", bench::tens(2, 6), [&](unsigned count) {
        return [=] {
            MemoryOutputStream out;
            writeTo(out, count);
        };
    });
    growth.line("behind a BufferingOutputStream", bench::tens(2, 6), [&](unsigned count) {
        return [=] {
            MemoryOutputStream memory;
            BufferingOutputStream out(memory);
            writeTo(out, count);
            out.flush();
        };
    });
    growth.line("into a standard vector", bench::tens(2, 6), [](unsigned count) {
        return [=] {
            std::vector<unsigned> memory;
            for (unsigned i = 0; i < count; ++i)
                memory.push_back(i);
            bench::keep(memory);
        };
    });
}
