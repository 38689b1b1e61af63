#include "Test.h"

#include "Graph.h"
#include "streams/ArchiveTables.h"

#include <tarn/ObjectGraph.h>

#include <optional>

using namespace std::string_literals;
using graph::Memory;
using graph::Node;
using graph::NodePtr;

namespace {
struct Point final : Serializable {
    Point(int across = 0, int down = 0) : x(across), y(down) {}
    void serialize(OutputStream& out) const override { out << x << y; }
    void deserialize(InputStream& in) override { in >> x >> y; }

    int x, y;
};
const SerializableImpl<Point> pointRegistration("struct test::Point");

std::string word(unsigned value) { return std::string(reinterpret_cast<const char*>(&value), sizeof value); }
std::string text(const std::string& s) { return word(static_cast<unsigned>(s.size())) + s; }
template <class T> std::string keyOf(const ref_ptr<T>& ptr)
{
    return word(static_cast<unsigned>(reinterpret_cast<std::uintptr_t>(ptr.getIdentity())));
}

const std::string zero = word(0);
const std::string pointName = text("struct test::Point");

ref_ptr<Serializable> newPoint(int x, int y) { return ref_ptr<Serializable>(new Point(x, y)); }
int xOf(const ref_ptr<Serializable>& ptr) { return dynamic_cast<Point&>(*ptr).x; }

std::string pointRecord(const std::string& key, unsigned x, unsigned y)
{
    return zero + key + pointName + word(x) + word(y);
}

std::unique_ptr<Point> readPoint(graph::Memory& reader)
{
    return std::unique_ptr<Point>(static_cast<Point*>(reader.archive.readObject()));
}
} // namespace

TEST_CASE("Archive: the bytes of each kind of record")
{
    Memory memory;
    const Point single(1, 2);
    const ref_ptr<Serializable> shared = newPoint(3, 4);
    memory.archive.writeObject(&single);
    memory.archive.writeObject(&single);
    memory.archive << shared << shared;
    const std::string singleRecord = pointRecord(zero, 1, 2);
    CHECK(memory.written() == singleRecord + singleRecord + pointRecord(keyOf(shared), 3, 4) + keyOf(shared));

    SECTION("null cannot be written, and its two zero words are out by then")
    {
        Memory null;
        CHECK_THROWS_AS(null.archive.writeObject(static_cast<const Serializable*>(nullptr)), std::bad_typeid);
        CHECK_THROWS_AS(null.archive.writeObject(ref_ptr<Serializable>()), std::bad_typeid);
        CHECK(null.written() == zero + zero + zero + zero);
    }
}

TEST_CASE("Archive: what was shared is shared again, and what was single is not")
{
    Memory memory;
    const ref_ptr<Serializable> point = newPoint(5, 6);
    memory.archive << point << point;
    memory.archive.writeObject(point.get());
    memory.archive.writeObject(point.get());
    std::optional<Memory> reader(memory.written());
    ref_ptr<Serializable> first = newPoint(0, 0), second;
    reader->archive >> first >> second;
    CHECK(first == second);
    CHECK(first.getCount() == 3);
    CHECK(xOf(first) == 5);
    const auto one = readPoint(*reader), other = readPoint(*reader);
    CHECK(one != other);
    reader.reset();
    CHECK(first.getCount() == 2);
    CHECK(xOf(first) == 5);
}

TEST_CASE("Archive: a graph with circles comes back as it was")
{
    const NodePtr root = graph::makeGraph(), self = graph::makeNode("n");
    self->left = self;
    CHECK(graph::archived(self) ==
          zero + keyOf(self) + text("struct graph::Node") + text("n") + word(1) + "\0\1"s + keyOf(self) + '\0');
    Memory reader(graph::archived(root) + graph::archived(self));
    NodePtr copy, selfCopy;
    reader.archive >> copy >> selfCopy;
    CHECK(selfCopy->left == selfCopy);
    CHECK(ObjectGraph(copy) == ObjectGraph(root));
    for (const NodePtr& node : {root, self, copy, selfCopy})
        graph::dismantle(node);
}

TEST_CASE("Archive: what the first version of the library wrote is read")
{
    // A node with a style, to whose right is one with the same style that leads back.
    Memory reader("\0\0\0\0\x10\x20\x30\0\x12\0\0\0struct graph::Node\4\0\0\0root\4\0\0\0"
                  "\1\0\0\0\0\x20\x20\x30\0\x13\0\0\0struct graph::Style\3\0\0\0red\0\0\0\0\0\0\xF8\x3F"
                  "\0"
                  "\1\0\0\0\0\x30\x20\x30\0\x12\0\0\0struct graph::Node\4\0\0\0twig\7\0\0\0"
                  "\1\x20\x20\x30\0\1\x10\x20\x30\0\0"s);
    const NodePtr root = reader.archive.load<Node>();
    CHECK(root->name == "root");
    CHECK(root->style->width == 1.5);
    CHECK_FALSE(root->left);
    CHECK(root->right->number == 7);
    CHECK(root->right->style == root->style);
    CHECK(root->right->left == root);
    CHECK(reader.in.getFilePointer() == reader.bytes.size());
    graph::dismantle(root);
}

TEST_CASE("Archive: a single object can be read as a shared one until the first single read")
{
    Memory reader(pointRecord(zero, 1, 0) + pointRecord(zero, 2, 0) + pointRecord(zero, 3, 0));
    ref_ptr<Serializable> ptr;
    reader.archive >> ptr;
    CHECK(ptr.getCount() == 1);
    CHECK(readPoint(reader)->x == 2);
    expectError<Exception>([&] { reader.archive >> ptr; },
                           "Das Objekt wurde zuvor als Single-Objekt gelesen und kann daher nicht als Referenz zur\xFC"
                           "ckgegeben werden.\nM\xF6glicherweise liegt ein Fehler im Format des Bin\xE4streams vor!");
    CHECK(xOf(ptr) == 1);
}

TEST_CASE("Archive: records that cannot be are errors, and the caller's pointer stays")
{
    ref_ptr<Serializable> ptr = newPoint(8, 8);
    NodePtr node;
    Memory reference(word(7) + word(7));
    expectError<Exception>([&] { reference.archive.readObject(); },
                           "In Archive::ReadObject war das eingelesene Cookie != 0.\n"
                           "Dies deutet auf einen Fehler im Bin\xE4rstream hin!");
    expectError<Serializable::Exception>([&] { reference.archive >> ptr; },
                                         "Der Stream enth\xE4lt eine Objektreferenz, nicht jedoch das Objekt selbst!");

    Memory otherClass(pointRecord(word(9), 1, 2));
    expectError<Serializable::Exception>(
        [&] { otherClass.archive >> node; },
        "An object of struct test::Point was read where one of struct graph::Node is expected");
    CHECK_FALSE(node);
    Memory single(pointRecord(zero, 1, 2)); // The archive keeps it, since nobody else knows how to destroy it.
    CHECK_THROWS_AS(single.archive >> node, Serializable::Exception);
    CHECK(single.archive.getSharedObjects().size() == 1);

    Memory cut(zero + word(9) + pointName + word(1));
    CHECK_THROWS_AS(cut.archive >> ptr, EndOfFile);
    CHECK(xOf(ptr) == 8);
    const auto read = cut.archive.getSharedObjects();
    REQUIRE(read.size() == 1);
    CHECK(xOf(read[0]) == 1);
}

TEST_CASE("Archive: a key that comes up again does not lose the object that had it")
{
    Memory reader(pointRecord(word(9), 1, 0) + pointRecord(word(9), 2, 0));
    ref_ptr<Serializable> ptr;
    reader.archive >> ptr;
    ptr.release();
    reader.archive >> ptr;
    CHECK(xOf(ptr) == 2);
    const auto read = reader.archive.getSharedObjects();
    REQUIRE(read.size() == 2);
    CHECK(xOf(read[0]) == 1);

    // The first refers to itself, and its data end early, behind another one of its key.
    const std::string start = zero + word(9) + text("struct graph::Node") + text("") + zero + '\0';
    const int before = graph::Counted::alive;
    const std::string cut = start + '\1' + word(9) + '\1' + start;
    CHECK(graph::readAndDiscard(cut.data(), static_cast<unsigned>(cut.size())) == "EndOfFile");
    CHECK(graph::Counted::alive == before);
}

TEST_CASE("Archive: references need an archive behind the stream")
{
    const std::string message = "The stream is not an archive, which references between objects need";
    MemoryInputStream in;
    MemoryOutputStream out;
    ref_ptr<Serializable> ptr = newPoint(1, 2);
    expectError<Exception>([&] { out << ptr; }, message);
    expectError<Exception>([&] { in >> ptr; }, message);

    struct Own : Archive {
        using Archive::Archive;
    } own(in, out);
    CHECK(&Archive::behind(static_cast<InputStream&>(own)) == &own);
    CHECK(&Archive::behind(static_cast<OutputStream&>(own)) == &own);
}

TEST_CASE("Archive: a copy goes on with tables of its own")
{
    Memory memory;
    const ref_ptr<Serializable> before = newPoint(1, 0), after = newPoint(2, 0);
    memory.archive << before;
    Archive copy(memory.archive);
    copy << before << after;
    memory.archive << after << before;
    const std::string afterRecord = pointRecord(keyOf(after), 2, 0);
    CHECK(memory.written() ==
          pointRecord(keyOf(before), 1, 0) + keyOf(before) + afterRecord + afterRecord + keyOf(before));

    Memory reader(pointRecord(word(9), 1, 0) + pointRecord(zero, 2, 0) + word(9) + pointRecord(zero, 3, 0));
    ref_ptr<Serializable> first, second;
    reader.archive >> first;
    readPoint(reader);
    Archive other(reader.archive);
    other >> second;
    CHECK(second == first);
    CHECK_THROWS_AS(other >> second, Exception); // A single object was read before.
}

namespace {
/// Needs much of the stack to be read and written, and may lie in itself through archives of its own.
struct Deep final : Serializable {
    void serialize(OutputStream& out) const override { out.writeObject(const_cast<Deep*>(this)); }
    void deserialize(InputStream& in) override
    {
        char locals[1000];
        in.readFully(locals, 1);
        if (locals[0] == 'c')
            in.readObject();
        ref_ptr<Serializable> inner;
        MemoryOutputStream nowhere;
        Archive own(in, nowhere);
        (locals[0] == 'a' ? own : Archive::behind(in)) >> inner;
    }
};
const SerializableImpl<Deep> deepRegistration("struct test::Deep");
} // namespace

TEST_CASE("Archive: nesting is limited in writing and in reading")
{
    const std::string message = "Objects are nested more than 2000 levels deep";
    NodePtr first;
    for (unsigned i = 0; i < Archive::maxDepth; ++i)
        first = graph::makeNode("x", first);
    Memory deep(graph::archived(first));
    NodePtr copy;
    deep.archive >> copy;
    CHECK(copy->left->left->name == "x");
    expectError<Serializable::Exception>([&] { graph::archived(graph::makeNode("x", first)); }, message);

    std::string tooDeep;
    for (unsigned key = 1; key <= Archive::maxDepth + 1; ++key)
        tooDeep += zero + word(key) + text("struct graph::Node") + text("") + zero + "\0\1"s;
    Memory hostile(tooDeep);
    expectError<Serializable::Exception>([&] { hostile.archive >> copy; }, message);

    SECTION("by the stack that is left, whatever the objects need of it and however many archives there are")
    {
        const char kind = GENERATE('a', 'b');
        std::string data;
        for (unsigned key = 1; key <= 10000; ++key)
            data += zero + word(key) + text("struct test::Deep") + kind;
        Memory reader(data);
        ref_ptr<Serializable> ptr;
        expectError<Serializable::Exception>([&] { reader.archive >> ptr; }, message);
        CHECK(reader.archive.getSharedObjects().size() > (kind == 'a' ? 0 : 500));
    }
    SECTION("on streams that are no archives, too")
    {
        std::string data;
        for (unsigned i = 0; i < 10000; ++i)
            data += text("struct test::Deep") + 'c';
        MemoryInputStream in = readerOf(data);
        expectError<Serializable::Exception>([&] { static_cast<InputStream&>(in).readObject(); }, message);
        MemoryOutputStream out;
        Deep circle;
        expectError<Serializable::Exception>([&] { out.writeObject(&circle); }, message);
    }
}

TEST_CASE("KeysOfAddresses: counters whose addresses agree in their low half get keys of their own")
{
    KeysOfAddresses<false> keys;
    const std::pair<std::uint64_t, unsigned> rows[] = {
        {0x100001000, 0x1000}, {0x200001000, 0x1001}, {0x300000000, 1}, {0x4FFFFFFFF, 0xFFFFFFFF}, {0x5FFFFFFFF, 2}};
    for (const auto& [counter, key] : rows) {
        auto place = keys.placeFor(counter);
        CHECK((!place && place.key() == key));
        place.put();
    }
    for (const auto& [counter, key] : rows)
        CHECK((keys.placeFor(counter) && keys.placeFor(counter).key() == key));
}

TEST_CASE("AddressTable: keys of any distances are found again, and no others")
{
    const unsigned distance = GENERATE(1, 8, 100, 5000);
    AddressTable<unsigned> table;
    for (unsigned i = 1; i <= 10000; ++i)
        for (const unsigned base : {0u, 0x80000000u}) // Side by side, in tables that grow.
            table.placeFor(base + i * distance).put(base + i);
    table.placeFor(distance).put(7); // In place of the former.
    CHECK(*table.find(distance) == 7);
    bool found = true;
    for (unsigned i = 2; i <= 10000; ++i) {
        const unsigned key = i * distance;
        found = found && *table.find(key) == i && *table.find(0x80000000 + key) == 0x80000000 + i &&
                table.contains(key + 1) == (distance == 1 && i < 10000);
    }
    CHECK(found);
}
