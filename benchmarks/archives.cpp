#include "CerealGraph.h"
#include "GraphByHand.h"
#include "ObjectGraph.h"
#include "Growth.h"
#include "Ratios.h"

#include <catch2/catch.hpp>

#include <tarn/FramedStream.h>

using namespace bench;
using tarn::SerializableImpl;

namespace {
/// Measures writing into memory that is there.
template <class Write> auto rewriting(Buffer& buffer, Write write)
{
    return [&buffer, write] {
        buffer.clear();
        write(buffer);
    };
}
/// Measures writing into memory that grows.
template <class Write> auto growing(Buffer& buffer, Write write)
{
    return [&buffer, write] {
        buffer = Buffer();
        write(buffer);
    };
}
} // namespace

#ifdef HAS_CEREAL
TEST_CASE("Archive against cereal's binary archive")
{
    Ratios table("A graph of 100,000 shared objects");
    const auto items = makeItems(100000);
    const auto cerealItems = makeCerealItems(100000);
    const auto handItems = makeHandItems(100000);
    Buffer buffer, otherBuffer, handBuffer;
    const auto write = [&](Buffer& to) { writeGraph(to, items[0]); };
    const auto writeOther = [&](Buffer& to) { writeCereal(to, cerealItems[0]); };
    table.row("write, with the memory made on the way", 0.7, growing(buffer, write), growing(otherBuffer, writeOther));
    table.row("write, into memory that is there", 0.4, rewriting(buffer, write), rewriting(otherBuffer, writeOther));
    table.row("write, against the same by hand", 2.0, rewriting(buffer, write),
              rewriting(handBuffer, [&](Buffer& to) { writeByHand(to, *handItems[0]); }));
    dismantle(items[0]);
    dismantle(cerealItems[0]);
    dismantle(handItems[0]);
    table.row("read", 0.5, reading(buffer, readGraph), reading(otherBuffer, readCereal));
    table.row("read, against the same by hand", 2.0, reading(buffer, readGraph), reading(handBuffer, readByHand));
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

void writeFramed(Buffer& buffer, const ItemPointer& root)
{
    BufferStream stream(buffer);
    tarn::FramedOutputStream frame(stream);
    tarn::Archive archive(stream, frame);
    archive << root;
    frame.close();
}

ItemPointer readFramed(Buffer& buffer)
{
    BufferStream stream(buffer);
    tarn::FramedInputStream frame(stream);
    tarn::Archive archive(frame, stream);
    ItemPointer root;
    archive >> root;
    frame.finish();
    return root;
}
} // namespace

TEST_CASE("Archive: versions and frames against an archive without")
{
    Ratios table("A graph of 10,000 shared objects");
    const auto plain = makeItems(10000);
    const auto versioned = makeGraph<ItemPointer, VersionedLeaf, VersionedBranch>(10000);
    Buffer buffer, versionedBuffer, framedBuffer;
    const auto write = rewriting(buffer, [&](Buffer& to) { writeGraph(to, plain[0]); });
    table.row("write with versions", 1.1, rewriting(versionedBuffer, [&](Buffer& to) { writeGraph(to, versioned[0]); }),
              write);
    table.row("write into a frame", 1.15, rewriting(framedBuffer, [&](Buffer& to) { writeFramed(to, plain[0]); }),
              write);
    dismantle(plain[0]);
    dismantle(versioned[0]);
    table.row("read with versions", 1.1, reading(versionedBuffer, readGraph), reading(buffer, readGraph));
    table.row("read from a frame", 1.15, reading(framedBuffer, readFramed), reading(buffer, readGraph));
}

namespace {
/// Measures writing and reading 1,000,000 objects in one graph, against 100 times those of one of 10,000.
template <class Items, class Write, class Read>
void growthRows(Ratios& table, const std::string& who, Items makeItems, Write write, Read read)
{
    const auto large = makeItems(1000000), small = makeItems(10000);
    Buffer buffer, smallBuffer;
    const auto hundredTimes = [](auto work) {
        return [work](Stopwatch& watch) {
            for (int i = 0; i < 100; ++i)
                work(watch);
        };
    };
    const auto writing = [&](Buffer& to, auto& root) {
        return [&](Stopwatch& watch) {
            to.clear();
            watch.start();
            write(to, root);
            watch.stop();
        };
    };
    table.row("write" + who, 1.1, writing(buffer, large[0]), hundredTimes(writing(smallBuffer, small[0])));
    dismantle(large[0]);
    dismantle(small[0]);
    table.row("read" + who, 1.1, reading(buffer, read), hundredTimes(reading(smallBuffer, read)));
}
} // namespace

TEST_CASE("Archive: large graphs against small ones")
{
    Ratios table("A graph of 1,000,000 objects, against 100 times one of 10,000");
    growthRows(table, "", makeItems, writeGraph, readGraph);
    growthRows(
        table, ", for comparison by hand", makeHandItems, [](Buffer& to, HandItem* root) { writeByHand(to, *root); },
        readByHand);
}

namespace {
/// Objects each inside the one before, as deep as an archive takes them.
template <class Pointer, class LeafType> Pointer makeChain(unsigned depth)
{
    Pointer first(new LeafType), last = first;
    for (unsigned i = 1; i < depth; ++i) {
        last->content.left = last->content.right = Pointer(new LeafType);
        last = last->content.left;
    }
    last->content.left = last->content.right = first;
    return first;
}

template <class Root, class Write> auto writingAll(Root root, Write write)
{
    return [root, write, buffer = Buffer()](bench::Stopwatch& watch) mutable {
        buffer.clear();
        watch.start();
        write(buffer, root);
        watch.stop();
    };
}
template <class Root, class Write, class Read> auto readingAll(Root root, Write write, Read read)
{
    Buffer buffer;
    write(buffer, root);
    dismantle(root);
    return [buffer, read](bench::Stopwatch& watch) mutable { reading(buffer, read)(watch); };
}
} // namespace

TEST_CASE("Archive: growth", "[.growth]")
{
    const auto writeHand = [](Buffer& to, HandItem* root) { writeByHand(to, *root); };
    const bench::Growth graph("A graph of shared objects", "objects");
    // Ten million objects and their data do not fit into a 32-bit program.
    const std::vector<unsigned> sizes = bench::tens(3, sizeof(void*) == 8 ? 7 : 6);
    graph.line("write", sizes, [](unsigned size) { return writingAll(makeItems(size)[0], writeGraph); });
    graph.line("read", sizes, [](unsigned size) { return readingAll(makeItems(size)[0], writeGraph, readGraph); });
    graph.line("write by hand", sizes, [&](unsigned size) { return writingAll(makeHandItems(size)[0], writeHand); });
    graph.line("read by hand", sizes,
               [&](unsigned size) { return readingAll(makeHandItems(size)[0], writeHand, readByHand); });

    const bench::Growth nesting("Objects inside each other", "levels");
    nesting.line("write", bench::tens(0, 3),
                 [](unsigned depth) { return writingAll(makeChain<ItemPointer, Leaf>(depth), writeGraph); });
    nesting.line("write by hand", bench::tens(0, 3),
                 [&](unsigned depth) { return writingAll(makeChain<HandPointer, HandLeaf>(depth), writeHand); });
}
