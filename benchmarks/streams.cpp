#include "Ratios.h"

#include <catch2/catch.hpp>

#include <tarn/Archive.h>
#include <tarn/BufferingStream.h>
#include <tarn/Fields.h>
#include <tarn/FramedStream.h>
#include <tarn/MemoryStream.h>
#include <tarn/StdIOStream.h>

#include "ScratchFolder.h"

#include <cstring>
#include <istream>
#include <memory>
#include <ostream>
#include <streambuf>
#include <vector>

#if __has_include(<cereal/archives/binary.hpp>)
#define HAS_CEREAL 1
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wshadow"
#include <cereal/archives/binary.hpp>
#include <cereal/types/memory.hpp>
#include <cereal/types/polymorphic.hpp>
#include <cereal/types/string.hpp>
#pragma GCC diagnostic pop
#endif

using namespace tarn;

namespace {
/// The growing buffer that every archive here writes to and reads from.
struct Buffer {
    void clear()
    {
        bytes.clear();
        position = 0;
    }
    unsigned put(const void* data, std::size_t size)
    {
        const char* const from = static_cast<const char*>(data);
        bytes.insert(bytes.end(), from, from + size);
        return static_cast<unsigned>(size);
    }
    unsigned get(void* data, std::size_t size)
    {
        size = std::min(size, bytes.size() - position);
        std::memcpy(data, bytes.data() + position, size);
        position += size;
        return static_cast<unsigned>(size);
    }

    std::vector<char> bytes;
    std::size_t position = 0;
};

class BufferStream : public InputStream, public OutputStream {
public:
    explicit BufferStream(Buffer& buffer) : buffer_(buffer) {}
    unsigned read(void* data, unsigned size) override { return buffer_.get(data, size); }
    unsigned write(const void* data, unsigned size) override { return buffer_.put(data, size); }

private:
    Buffer& buffer_;
};

class StandardBuffer : public std::streambuf {
public:
    explicit StandardBuffer(Buffer& buffer) : buffer_(buffer) {}

protected:
    std::streamsize xsputn(const char* data, std::streamsize size) override
    {
        return buffer_.put(data, static_cast<std::size_t>(size));
    }
    std::streamsize xsgetn(char* data, std::streamsize size) override
    {
        return buffer_.get(data, static_cast<std::size_t>(size));
    }

private:
    Buffer& buffer_;
};

/// What an object of the graph holds, with the library's pointers or the standard ones.
template <class Pointer> struct Content {
    Pointer left, right;
    int a = 1, b = 2, c = 3;
    double d = 0.5;
    std::string text = "twelve chars";
};

struct Item : Serializable {
    virtual ~Item() = default;
    template <class Data> static auto fieldsOf(Data& all)
    {
        return fields(all.left, all.right, all.a, all.b, all.c, all.d, all.text);
    }
    void serialize(OutputStream& out) const override { out << fieldsOf(content); }
    void deserialize(InputStream& in) override { in >> fieldsOf(content); }

    Content<ref_ptr<Item>> content;
};
struct Leaf final : Item {};
struct Branch final : Item {};
const SerializableImpl<Leaf> leafRegistration(declaredAsStruct);
const SerializableImpl<Branch> branchRegistration(declaredAsStruct);

/// A tree whose leaves refer back to their parents and grandparents.
template <class Pointer, class LeafType, class BranchType> std::vector<Pointer> makeGraph(unsigned count)
{
    std::vector<Pointer> all;
    for (unsigned i = 0; i < count; ++i)
        all.push_back(2 * i + 2 < count ? Pointer(new BranchType) : Pointer(new LeafType));
    for (unsigned i = 0; i < count; ++i) {
        const bool isBranch = 2 * i + 2 < count;
        const unsigned parent = (i - 1) / 2;
        all[i]->content.left = all[isBranch ? 2 * i + 1 : parent];
        all[i]->content.right = all[isBranch ? 2 * i + 2 : (parent - 1) / 2];
    }
    return all;
}

template <class Pointer> void dismantle(const Pointer& item)
{
    Pointer left, right;
    std::swap(left, item->content.left);
    std::swap(right, item->content.right);
    if (left)
        dismantle(left);
    if (right)
        dismantle(right);
}

void writeGraph(Buffer& buffer, const ref_ptr<Item>& root)
{
    BufferStream stream(buffer);
    Archive archive(stream, stream);
    archive << root;
}

ref_ptr<Item> readGraph(Buffer& buffer)
{
    BufferStream stream(buffer);
    Archive archive(stream, stream);
    ref_ptr<Item> root;
    archive >> root;
    return root;
}

/// Seconds for the shortest of some rounds of `work`, with what it made given up outside the measured time.
template <class Work> double shortest(int rounds, Work work)
{
    double best = 1e9;
    for (int i = 0; i < rounds; ++i)
        best = std::min(best, work());
    return best;
}

template <class Pointer, class Read> double secondsOfReading(Buffer& buffer, Read read)
{
    buffer.position = 0;
    Pointer root;
    const double seconds = bench::secondsOf([&] { root = read(buffer); });
    dismantle(root);
    return seconds;
}

void printRow(const char* what, double limit, double ours, double other)
{
    std::printf("%-58s %10.3f %10.3f %7.2f %7.2f%s\n", what, ours * 1e3, other * 1e3, ours / other, limit,
                ours / other <= limit ? "" : "  MISSED");
    std::fflush(stdout);
}
} // namespace

namespace {
/// The same objects for a program of its own that has no use for an archive: they know their own numbers, plain
/// functions write the very bytes, and nobody counts references.
struct HandItem {
    virtual ~HandItem() = default;
    virtual const char* name() const = 0;

    Content<HandItem*> content;
    unsigned number = 0;
};
struct HandLeaf final : HandItem {
    const char* name() const override { return "struct Leaf"; }
};
struct HandBranch final : HandItem {
    const char* name() const override { return "struct Branch"; }
};
using HandPointer = HandItem*;

class HandWriter {
public:
    explicit HandWriter(Buffer& buffer) : buffer_(buffer) {}
    void write(HandItem& item)
    {
        if (item.number != 0) {
            put(item.number);
            return;
        }
        item.number = ++last_;
        const unsigned length = static_cast<unsigned>(std::strlen(item.name()));
        const unsigned head[] = {0, item.number, length};
        put(head);
        buffer_.put(item.name(), length);
        write(*item.content.left);
        write(*item.content.right);
        put(item.content.a);
        put(item.content.b);
        put(item.content.c);
        put(item.content.d);
        put(static_cast<unsigned>(item.content.text.size()));
        buffer_.put(item.content.text.data(), item.content.text.size());
        all_.push_back(&item);
    }
    ~HandWriter()
    {
        for (HandItem* const item : all_)
            item->number = 0;
    }

private:
    template <class T> void put(const T& value) { buffer_.put(&value, sizeof value); }

    Buffer& buffer_;
    unsigned last_ = 0;
    std::vector<HandItem*> all_;
};

class HandReader {
public:
    explicit HandReader(Buffer& buffer) : buffer_(buffer) {}
    HandItem* read()
    {
        if (const auto number = get<unsigned>(); number != 0)
            return all_[number - 1];
        get<unsigned>();
        const auto nameLength = get<unsigned>();
        char name[64];
        buffer_.get(name, nameLength);
        HandItem* const item = name[7] == 'L' ? static_cast<HandItem*>(new HandLeaf) : new HandBranch;
        all_.push_back(item);
        item->content.left = read();
        item->content.right = read();
        item->content.a = get<int>();
        item->content.b = get<int>();
        item->content.c = get<int>();
        item->content.d = get<double>();
        item->content.text.resize(get<unsigned>());
        buffer_.get(item->content.text.data(), item->content.text.size());
        return item;
    }

private:
    template <class T> T get()
    {
        T value{};
        buffer_.get(&value, sizeof value);
        return value;
    }

    Buffer& buffer_;
    std::vector<HandItem*> all_;
};

/// Nobody else frees these.
void dismantle(HandItem* root)
{
    root->number = 1;
    std::vector<HandItem*> all{root};
    for (std::size_t i = 0; i < all.size(); ++i)
        for (HandItem* const next : {all[i]->content.left, all[i]->content.right})
            if (std::exchange(next->number, 1) == 0)
                all.push_back(next);
    for (HandItem* const item : all)
        delete item;
}
} // namespace

#ifdef HAS_CEREAL
namespace {
struct CerealItem {
    virtual ~CerealItem() = default;
    template <class A> void serialize(A& archive)
    {
        archive(content.left, content.right, content.a, content.b, content.c, content.d, content.text);
    }

    Content<std::shared_ptr<CerealItem>> content;
};
struct CerealLeaf final : CerealItem {};
struct CerealBranch final : CerealItem {};

void writeCereal(Buffer& buffer, const std::shared_ptr<CerealItem>& root)
{
    StandardBuffer streambuf(buffer);
    std::ostream stream(&streambuf);
    cereal::BinaryOutputArchive archive(stream);
    archive(root);
}

std::shared_ptr<CerealItem> readCereal(Buffer& buffer)
{
    StandardBuffer streambuf(buffer);
    std::istream stream(&streambuf);
    cereal::BinaryInputArchive archive(stream);
    std::shared_ptr<CerealItem> root;
    archive(root);
    return root;
}
} // namespace

CEREAL_REGISTER_TYPE(CerealLeaf)
CEREAL_REGISTER_TYPE(CerealBranch)
CEREAL_REGISTER_POLYMORPHIC_RELATION(CerealItem, CerealLeaf)
CEREAL_REGISTER_POLYMORPHIC_RELATION(CerealItem, CerealBranch)

TEST_CASE("Archive against cereal's binary archive")
{
    bench::Ratios table("A graph of 100,000 shared objects");
    const auto ours = makeGraph<ref_ptr<Item>, Leaf, Branch>(100000);
    const auto others = makeGraph<std::shared_ptr<CerealItem>, CerealLeaf, CerealBranch>(100000);
    const auto byHand = makeGraph<HandPointer, HandLeaf, HandBranch>(100000);
    Buffer buffer, otherBuffer, handBuffer;
    table.row(
        "write, with the memory made on the way", 0.7,
        [&] {
            buffer = Buffer();
            writeGraph(buffer, ours[0]);
        },
        [&] {
            otherBuffer = Buffer();
            writeCereal(otherBuffer, others[0]);
        },
        7);
    const auto write = [&] {
        buffer.clear();
        writeGraph(buffer, ours[0]);
    };
    table.row(
        "write, into memory that is there", 0.4, write,
        [&] {
            otherBuffer.clear();
            writeCereal(otherBuffer, others[0]);
        },
        15);
    table.row(
        "write, against the same by hand", 2.0, write,
        [&] {
            handBuffer.clear();
            HandWriter(handBuffer).write(*byHand[0]);
        },
        15);
    dismantle(ours[0]);
    dismantle(others[0]);
    dismantle(byHand[0]);
    double reading = 1e9, otherReading = 1e9, handReading = 1e9;
    for (int round = 0; round < 15; ++round) {
        reading = std::min(reading, secondsOfReading<ref_ptr<Item>>(buffer, readGraph));
        otherReading = std::min(otherReading, secondsOfReading<std::shared_ptr<CerealItem>>(otherBuffer, readCereal));
        handReading =
            std::min(handReading,
                     secondsOfReading<HandPointer>(handBuffer, [](Buffer& from) { return HandReader(from).read(); }));
    }
    printRow("read", 0.5, reading, otherReading);
    printRow("read, against the same by hand", 2.0, reading, handReading);
}
#endif

namespace {
/// The same item with a version.
struct VersionedItem : Item {
    static constexpr unsigned int classVersion = 1;
};
struct VersionedLeaf final : VersionedItem {};
struct VersionedBranch final : VersionedItem {};
const SerializableImpl<VersionedLeaf> versionedLeafRegistration("struct VLeaf");
const SerializableImpl<VersionedBranch> versionedBranchRegistration("struct VBranch");

void writeFramed(Buffer& buffer, const ref_ptr<Item>& root)
{
    BufferStream stream(buffer);
    FramedOutputStream frame(stream);
    Archive archive(stream, frame);
    archive << root;
    frame.close();
}

ref_ptr<Item> readFramed(Buffer& buffer)
{
    BufferStream stream(buffer);
    FramedInputStream frame(stream);
    Archive archive(frame, stream);
    ref_ptr<Item> root;
    archive >> root;
    frame.finish();
    return root;
}
} // namespace

TEST_CASE("Archive: versions and frames against an archive without")
{
    bench::Ratios table("A graph of 10,000 shared objects");
    const auto plain = makeGraph<ref_ptr<Item>, Leaf, Branch>(10000);
    const auto versioned = makeGraph<ref_ptr<Item>, VersionedLeaf, VersionedBranch>(10000);
    Buffer buffer, versionedBuffer, framedBuffer;
    const auto write = [&] {
        buffer.clear();
        writeGraph(buffer, plain[0]);
    };
    const auto writeVersions = [&] {
        versionedBuffer.clear();
        writeGraph(versionedBuffer, versioned[0]);
    };
    const auto writeFrame = [&] {
        framedBuffer.clear();
        writeFramed(framedBuffer, plain[0]);
    };
    table.row("write with versions", 1.1, writeVersions, write, 60);
    table.row("write into a frame", 1.15, writeFrame, write, 60);
    dismantle(plain[0]);
    dismantle(versioned[0]);
    double reading = 1e9, readingVersions = 1e9, readingFrame = 1e9;
    for (int round = 0; round < 60; ++round) {
        reading = std::min(reading, secondsOfReading<ref_ptr<Item>>(buffer, readGraph));
        readingVersions = std::min(readingVersions, secondsOfReading<ref_ptr<Item>>(versionedBuffer, readGraph));
        readingFrame = std::min(readingFrame, secondsOfReading<ref_ptr<Item>>(framedBuffer, readFramed));
    }
    printRow("read with versions", 1.1, readingVersions, reading);
    printRow("read from a frame", 1.15, readingFrame, reading);
}

TEST_CASE("Archive: time for each object, from small graphs to large ones")
{
    std::printf("\n%-58s %10s %10s\n", "objects", "write ns", "read ns");
    for (const unsigned count : {10000u, 100000u, 1000000u}) {
        const auto graph = makeGraph<ref_ptr<Item>, Leaf, Branch>(count);
        Buffer buffer;
        const int rounds = static_cast<int>(3000000 / count);
        const double writing = shortest(rounds, [&] {
            buffer.clear();
            return bench::secondsOf([&] { writeGraph(buffer, graph[0]); });
        });
        dismantle(graph[0]);
        const double reading = shortest(rounds, [&] { return secondsOfReading<ref_ptr<Item>>(buffer, readGraph); });
        std::printf("%-58u %10.0f %10.0f\n", count, writing / count * 1e9, reading / count * 1e9);
    }
}

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
        sized, 3);
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
    table.row(
        "1 GB through memory, a loop of memcpy over a work buffer", 1.1, copyStreams,
        [&] {
            char work[10000];
            eachPiece([&](unsigned at, unsigned size) {
                std::memcpy(work, source.data() + at, size);
                bench::keep(work);
                std::memcpy(memory.data() + at, work, size);
            });
        },
        5);
    table.row(
        "1 GB through memory, a loop of memcpy straight across", 1.05, copyStreams,
        [&] {
            eachPiece([&](unsigned at, unsigned size) { std::memcpy(memory.data() + at, source.data() + at, size); });
        },
        3);
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
            },
            30);
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
            },
            40);
    }
}
