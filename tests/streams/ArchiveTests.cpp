#include "Expect.h"
#include "Graph.h"
#include "ScratchFolder.h"

#include <tarn/LowLevelIOStream.h>
#include <tarn/StdIOStream.h>

#include <cstdint>
#include <cstring>
#include <optional>

#include <fcntl.h>
#include <sys/stat.h>

using namespace tarn;
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

/// Holds an object of its own inside its data.
struct Line final : Serializable {
    void serialize(OutputStream& out) const override
    {
        Archive::behind(out).writeObject(&from);
        out << to;
    }
    void deserialize(InputStream& in) override
    {
        Point* const point = static_cast<Point*>(Archive::behind(in).readObject());
        from = *point;
        delete point;
        in >> to;
    }

    Point from;
    ref_ptr<Serializable> to;
};
const SerializableImpl<Line> lineRegistration("struct test::Line");

std::string word(unsigned value) { return std::string(reinterpret_cast<const char*>(&value), sizeof value); }
template <class T> std::string keyOf(const ref_ptr<T>& ptr)
{
    return word(static_cast<unsigned>(reinterpret_cast<std::uintptr_t>(ptr.getIdentity())));
}
std::string text(const std::string& s) { return word(static_cast<unsigned>(s.size())) + s; }
const std::string zero = word(0);
const std::string pointName = text("struct test::Point");

ref_ptr<Serializable> newPoint(int x, int y) { return ref_ptr<Serializable>(new Point(x, y)); }

/// An archive over memory: what was written, and a reader of given bytes.
struct Memory {
    explicit Memory(const std::string& content = "") : bytes(content) {}

    std::string bytes;
    MemoryInputStream in{bytes.data(), static_cast<unsigned>(bytes.size())};
    MemoryOutputStream out;
    Archive archive{in, out};

    std::string written() { return graph::contentOf(out); }
};

int xOf(const ref_ptr<Serializable>& ptr) { return dynamic_cast<Point&>(*ptr).x; }

void checkGraph(const NodePtr& root)
{
    CHECK(root->name == "root");
    CHECK(root->number == 4);
    const NodePtr branch = root->right, leaf = branch->left;
    CHECK(root->left->name == "twig");
    CHECK(root->left->left == branch);
    CHECK_FALSE(root->left->right);
    CHECK(branch->right == leaf);
    CHECK(leaf->left == root);
    CHECK(leaf->right == leaf);
    CHECK(leaf->style == branch->style);
    CHECK_FALSE(root->style == leaf->style);
    CHECK(root->style->colour == "red");
}
} // namespace

TEST_CASE("Archive: the bytes of each kind of record", "[streams][archive]")
{
    Memory memory;
    const Point single(1, 2);
    const ref_ptr<Serializable> shared = newPoint(3, 4);
    memory.archive.writeObject(&single);
    memory.archive.writeObject(&single);
    memory.archive.writeObject(shared);
    memory.archive.writeObject(shared);
    const std::string singleRecord = zero + zero + pointName + word(1) + word(2);
    CHECK(memory.written() ==
          singleRecord + singleRecord + zero + keyOf(shared) + pointName + word(3) + word(4) + keyOf(shared));
}

TEST_CASE("Archive: objects inside an object's data have records of their own", "[streams][archive]")
{
    Line line;
    line.from = Point(1, 2);
    line.to = newPoint(3, 4);
    Memory memory;
    memory.archive.writeObject(line.to);
    memory.archive.writeObject(&line);
    CHECK(memory.written() == zero + keyOf(line.to) + pointName + word(3) + word(4) + zero + zero +
                                  text("struct test::Line") + zero + zero + pointName + word(1) + word(2) +
                                  keyOf(line.to));

    Memory reader(memory.written());
    ref_ptr<Serializable> end;
    reader.archive.readObject(end);
    Line* const copy = dynamic_cast<Line*>(reader.archive.readObject());
    REQUIRE(copy);
    CHECK(copy->from.y == 2);
    CHECK(copy->to == end);
    delete copy;
}

TEST_CASE("Archive: what was shared is shared again", "[streams][archive]")
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
    const auto one = static_cast<Point*>(reader->archive.readObject());
    const auto other = static_cast<Point*>(reader->archive.readObject());
    CHECK(one != other);
    delete one;
    delete other;
    reader.reset();
    CHECK(first.getCount() == 2);
    CHECK(xOf(first) == 5);
}

TEST_CASE("Archive: an object that refers to itself is written with a reference inside its data", "[streams][archive]")
{
    NodePtr node = graph::makeNode("n");
    node->left = node;
    const std::string bytes = graph::archived(node);
    CHECK(bytes == zero + keyOf(node) + text("struct graph::Node") + text("n") + word(1) +
                       std::string(3, '\0').replace(2, 1, "\1") + keyOf(node) + '\0');
    Memory reader(bytes);
    NodePtr copy;
    reader.archive >> copy;
    CHECK(copy->left == copy);
    graph::dismantle(node);
    graph::dismantle(copy);
}

TEST_CASE("Archive: a graph with circles survives memory and both kinds of files", "[streams][archive]")
{
    const support::ScratchFolder folder;
    const std::string file = folder.file("graph");
    const NodePtr root = graph::makeGraph();
    NodePtr copy;
    SECTION("memory")
    {
        Memory reader(graph::archived(root));
        reader.archive >> copy;
    }
    SECTION("a file of the runtime library")
    {
        StdIOStream stream(file.c_str(), "w+b");
        Archive archive(stream, stream);
        archive << root;
        stream.seek(0, Seekable::begin);
        archive >> copy;
    }
    SECTION("a descriptor of the runtime library")
    {
        LowLevelFileStream stream;
        stream.open(file.c_str(), _O_RDWR | _O_BINARY | _O_CREAT, _S_IREAD | _S_IWRITE);
        Archive archive(stream, stream);
        archive << root;
        stream.seek(0, Seekable::begin);
        archive >> copy;
    }
    checkGraph(copy);
    graph::dismantle(root);
    graph::dismantle(copy);
}

TEST_CASE("Archive: a single object can be read as a shared one until the first single read", "[streams][archive]")
{
    Memory memory;
    for (int x = 1; x <= 3; ++x) {
        const Point point(x, 0);
        memory.archive.writeObject(&point);
    }
    Memory reader(memory.written());
    ref_ptr<Serializable> ptr;
    reader.archive >> ptr;
    CHECK(xOf(ptr) == 1);
    CHECK(ptr.getCount() == 1);
    delete static_cast<Point*>(reader.archive.readObject());
    support::expectError<Exception>(
        [&] { reader.archive >> ptr; },
        "Das Objekt wurde zuvor als Single-Objekt gelesen und kann daher nicht als Referenz zur\xFC"
        "ckgegeben werden.\nM\xF6glicherweise liegt ein Fehler im Format des Bin\xE4streams vor!");
    CHECK(xOf(ptr) == 1);
}

TEST_CASE("Archive: a reference cannot be read as a single object", "[streams][archive]")
{
    Memory reader(word(7));
    support::expectError<Exception>([&] { reader.archive.readObject(); },
                                    "In Archive::ReadObject war das eingelesene Cookie != 0.\n"
                                    "Dies deutet auf einen Fehler im Bin\xE4rstream hin!");
}

TEST_CASE("Archive: a reference to what was not read before is an error", "[streams][archive]")
{
    Memory reader(word(7));
    ref_ptr<Serializable> ptr;
    support::expectError<Serializable::Exception>(
        [&] { reader.archive >> ptr; }, "Der Stream enth\xE4lt eine Objektreferenz, nicht jedoch das Objekt selbst!");

    Memory writer;
    const ref_ptr<Serializable> point = newPoint(1, 1);
    writer.archive << point << point;
    MemoryInputStream rest(static_cast<const char*>(writer.out.getData()) + writer.out.getSize() - 4, 4);
    Archive other(rest, writer.out);
    CHECK_THROWS_AS(other >> ptr, Serializable::Exception);
}

TEST_CASE("Archive: null cannot be written, and its two zero words are out by then", "[streams][archive]")
{
    Memory memory;
    CHECK_THROWS_AS(memory.archive.writeObject(static_cast<const Serializable*>(nullptr)), std::bad_typeid);
    CHECK_THROWS_AS(memory.archive.writeObject(ref_ptr<Serializable>()), std::bad_typeid);
    CHECK(memory.written() == zero + zero + zero + zero);
}

TEST_CASE("Archive: an object of another class than the pointer's is an error", "[streams][archive]")
{
    Memory memory;
    memory.archive << newPoint(1, 2);
    Memory reader(memory.written());
    NodePtr node;
    support::expectError<Serializable::Exception>(
        [&] { reader.archive >> node; },
        "An object of struct test::Point was read where one of struct graph::Node is expected");
    CHECK_FALSE(node);
    CHECK(reader.archive.getSharedObjects().size() == 1);
}

TEST_CASE("Archive: references need an archive behind the stream", "[streams][archive]")
{
    const std::string message = "The stream is not an archive, which references between objects need";
    MemoryInputStream in;
    MemoryOutputStream out;
    ref_ptr<Serializable> ptr = newPoint(1, 2);
    support::expectError<Exception>([&] { out << ptr; }, message);
    support::expectError<Exception>([&] { in >> ptr; }, message);

    struct Logging : Archive {
        using Archive::Archive;
        unsigned write(const void* buffer, unsigned size) override { return ++writes, Archive::write(buffer, size); }
        int writes = 0;
    } logging(in, out);
    logging << ptr;
    CHECK(&Archive::behind(static_cast<InputStream&>(logging)) == &logging);
    CHECK(logging.writes == 6); // Cookie, key, length of the name, name, and the data's two numbers.
}

TEST_CASE("Archive: a copy goes on with tables of its own", "[streams][archive]")
{
    Memory memory;
    const ref_ptr<Serializable> before = newPoint(1, 0), after = newPoint(2, 0);
    memory.archive << before;
    Archive copy(memory.archive);
    const unsigned long long end = memory.out.getSize();
    copy << before << after;
    memory.archive << after << before;
    const std::string afterRecord = zero + keyOf(after) + pointName + word(2) + zero;
    CHECK(memory.written().substr(static_cast<unsigned>(end)) ==
          keyOf(before) + afterRecord + afterRecord + keyOf(before));

    Memory other;
    other.archive << before;
    CHECK(other.written() == zero + keyOf(before) + pointName + word(1) + zero);
}

TEST_CASE("Archive: nesting is limited in writing and in reading", "[streams][archive]")
{
    const auto chain = [](unsigned length) {
        NodePtr first;
        for (unsigned i = 0; i < length; ++i)
            first = graph::makeNode("x", first);
        return first;
    };
    const std::string message = "Objects are nested more than 2000 levels deep";
    Memory deep(graph::archived(chain(Archive::maxDepth)));
    NodePtr copy;
    deep.archive >> copy;
    CHECK(copy->left->left->name == "x");
    support::expectError<Serializable::Exception>([&] { graph::archived(chain(Archive::maxDepth + 1)); }, message);

    std::string tooDeep;
    for (unsigned key = 1; key <= Archive::maxDepth + 1; ++key)
        tooDeep += zero + word(key) + text("struct graph::Node") + text("") + zero + std::string("\0\0\1", 3);
    Memory hostile(tooDeep);
    support::expectError<Serializable::Exception>([&] { hostile.archive >> copy; }, message);
    Memory again(graph::archived(chain(Archive::maxDepth)));
    CHECK_NOTHROW(again.archive >> copy);
}

TEST_CASE("Archive: a failed read leaves the caller's pointer alone", "[streams][archive]")
{
    const std::string bytes = zero + word(9) + pointName + word(1);
    Memory reader(bytes);
    ref_ptr<Serializable> ptr = newPoint(8, 8);
    CHECK_THROWS_AS(reader.archive >> ptr, EndOfFile);
    CHECK(xOf(ptr) == 8);
    const auto read = reader.archive.getSharedObjects();
    REQUIRE(read.size() == 1);
    CHECK(xOf(read[0]) == 1);
}

TEST_CASE("AssignedKeys: counters whose addresses agree in their low half get keys of their own", "[streams][archive]")
{
    detail::AssignedKeys keys;
    detail::KeySet taken;
    for (const std::uint64_t counter : {0x100001000ull, 0x200001000ull, 0x300000000ull, 0x4FFFFFFFFull, 0x5FFFFFFFFull})
        CHECK(taken.insert(keys.of(counter, taken)).second);
    CHECK(taken == detail::KeySet{1, 2, 0x1000, 0x1001, 0xFFFFFFFF});
    CHECK(keys.of(0x200001000, taken) == 0x1001);
    CHECK(keys.of(0, taken) == 0);
}

TEST_CASE("ref_ptr: the last pointer destroys the object as its T", "[streams][ref_ptr]")
{
    using graph::Counted;
    const int before = Counted::alive;
    NodePtr node = graph::makeNode("n");
    NodePtr same = node;
    CHECK(node.getCount() == 2);
    same = *&same;
    CHECK(same.getCount() == 2);
    ref_ptr<Serializable> general = same;
    CHECK(general == node);
    CHECK(ref_ptr_cast<Node>(general).getCount() == 4);
    CHECK_FALSE(ref_ptr_cast<graph::Style>(general));
    same.release();
    node.release();
    node.release();
    CHECK(general.getCount() == 1);
    CHECK(Counted::alive == before + 1);
    node = ref_ptr_cast<Node>(general);
    general.release();
    node.release();
    CHECK(Counted::alive == before);

    // Only its memory is freed: the destructor cannot be known.
    ref_ptr<Serializable>(graph::makeNode("n")).release();
    const int afterTyped = Counted::alive;
    ref_ptr<Serializable>(new graph::Style).release();
    CHECK(Counted::alive == afterTyped + 1);
    --Counted::alive;
}
