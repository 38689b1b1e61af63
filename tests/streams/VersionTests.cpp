#include "Test.h"

#include "Graph.h"

#include <tarn/ObjectGraph.h>

using namespace std::string_literals;

// One program writes with version 2 of its classes, one with version 1, and one is from before there were versions.
// They are one program here, a namespace for each, so that their classes have different names: those in the data are
// changed on the way.

namespace {
using graph::Memory;

struct Titled : Serializable, graph::Counted {
    void serialize(OutputStream& out) const override { out << title; }
    void deserialize(InputStream& in) override { in >> title; }
    std::string title;
};

namespace plain {
struct Sheet final : Titled {};
} // namespace plain

namespace first {
struct Sheet final : Titled, NewerData {
    static constexpr unsigned int classVersion = 1;
};
/// Does not want to know.
struct Careless final : Titled {
    static constexpr unsigned int classVersion = 1;
};
} // namespace first

namespace second {
struct Star final : Serializable, graph::Counted {
    static constexpr unsigned int classVersion = 1;
    void serialize(OutputStream& out) const override
    {
        out << rays;
        writeOptional(out, twin);
    }
    void deserialize(InputStream& in) override
    {
        in >> rays;
        readOptional(in, twin);
    }
    int rays = 5;
    ref_ptr<Star> twin; // A circle of objects that the first program does not know.
};
struct Sheet final : Serializable, graph::Counted {
    static constexpr unsigned int classVersion = 2;
    template <class Self> static auto added(Self& self)
    {
        return fields(self.note, self.star, self.next, self.same, self.own, self.filler);
    }
    void serialize(OutputStream& out) const override { out << title << added(*this); }
    void deserialize(InputStream& in) override
    {
        in >> title;
        version = versionOf(in);
        if (version >= 2)
            in >> added(*this);
    }
    std::string title, note = "note", filler = std::string(300, 'x');
    ref_ptr<Star> star, same;
    graph::NodePtr next; // Without a version, and known to all.
    std::unique_ptr<Star> own;
    unsigned int version = 0;
};
} // namespace second

template <class T> std::string written(const ref_ptr<T>& sheet)
{
    Memory memory;
    memory.archive << sheet << sheet;
    return memory.written();
}
template <class T> ref_ptr<T> readFrom(const std::string& bytes)
{
    Memory reader(bytes);
    ref_ptr<T> sheet, same;
    reader.archive >> sheet >> same;
    CHECK(sheet == same);
    CHECK(reader.in.getFilePointer() == bytes.size());
    return sheet;
}
template <class T> ref_ptr<T> titled(const std::string& title)
{
    ref_ptr<T> sheet(new T);
    sheet->title = title;
    return sheet;
}
ref_ptr<second::Sheet> makeSecond()
{
    ref_ptr<second::Sheet> sheet = titled<second::Sheet>("title");
    sheet->star = ref_ptr<second::Star>(new second::Star);
    sheet->star->rays = 7;
    sheet->star->twin = ref_ptr<second::Star>(new second::Star);
    sheet->star->twin->twin = sheet->same = sheet->star;
    sheet->next = graph::makeNode("node");
    sheet->own = std::make_unique<second::Star>();
    sheet->own->rays = 9;
    return sheet;
}
void open(const ref_ptr<second::Sheet>& sheet)
{
    if (sheet && sheet->star)
        sheet->star->twin.release();
}

std::string renamed(std::string bytes, const std::string& from, const std::string& to)
{
    for (std::size_t at = bytes.find(from); at != std::string::npos; at = bytes.find(from, at + to.size()))
        bytes.replace(at, from.size(), to);
    return bytes;
}
const SerializableImpl<plain::Sheet> plainSheet("class test0::Sheet");
const SerializableImpl<first::Sheet> firstSheet("class test1::Sheet");
const SerializableImpl<first::Careless> carelessSheet("class test3::Sheet");
const SerializableImpl<second::Sheet> secondSheet("class test2::Sheet");
const SerializableImpl<second::Star> secondStar("class test2::Star");

template <class T> ref_ptr<T> readAs(const std::string& bytes, char from, char to)
{
    return readFrom<T>(renamed(renamed(bytes, "test"s + from + "::Sheet", "test"s + to + "::Sheet"),
                               "test"s + from + "::Star", "test"s + to + "::Star"));
}
} // namespace

TEST_CASE("Versions: what version 2 writes goes through version 1, and nothing is lost")
{
    const int before = graph::Counted::alive;
    {
        const ref_ptr<second::Sheet> original = makeSecond();
        const ref_ptr<first::Sheet> middle = readAs<first::Sheet>(written(original), '2', '1');
        CHECK(middle->title == "title");
        CHECK(middle->getNewerVersion() == 2);
        middle->title = "changed";
        const ref_ptr<first::Sheet> copy(new first::Sheet(*middle)), assigned(new first::Sheet);
        *assigned = *copy;
        *assigned = *&*assigned;
        copy->dropNewerData(); // The others have theirs still.
        CHECK((ObjectGraph(copy) != ObjectGraph(middle) && copy->getNewerVersion() == 0));
        CHECK(ObjectGraph(deepCopy(assigned)) == ObjectGraph(middle));
        const ref_ptr<second::Sheet> last = readAs<second::Sheet>(written(assigned), '1', '2');
        CHECK(last->version == 2);
        original->title = "changed";
        CHECK(ObjectGraph(last) == ObjectGraph(original));
        open(original);
        open(last);
    }
    CHECK(graph::Counted::alive == before);
}

TEST_CASE("Versions: a class reads what it wrote before, with an older version and without")
{
    CHECK(readAs<second::Sheet>(written(titled<plain::Sheet>("a")), '0', '2')->version == 0);
    const ref_ptr<second::Sheet> sheet = readAs<second::Sheet>(written(titled<first::Sheet>("b")), '1', '2');
    CHECK(sheet->version == 1);
    struct {
        MemoryInputStream in;
        char behind[400] = {};
    } plain;
    CHECK(versionOf(plain.in) == 0);
    CHECK(sheet->title == "b");
    CHECK(sheet->note == "note");
}

TEST_CASE("Versions: a class that keeps nothing reads what it knows of newer data")
{
    const int before = graph::Counted::alive;
    {
        const ref_ptr<second::Sheet> original = makeSecond();
        CHECK(readAs<first::Careless>(written(original), '2', '3')->title == "title");
        CHECK(readAs<plain::Sheet>(written(original), '2', '0')->title == "title");
        open(original);
    }
    CHECK(graph::Counted::alive == before);
}

TEST_CASE("Versions: the bytes of an object with a version")
{
    const ref_ptr<first::Sheet> sheet = titled<first::Sheet>("ab");
    const auto key = static_cast<unsigned int>(reinterpret_cast<std::uintptr_t>(sheet.getIdentity()));
    const std::string keyBytes(reinterpret_cast<const char*>(&key), sizeof key);
    const std::string body = "\x12\0\xA5\xC7"
                             "class test1::Sheet\1\0\0\0\6\0\0\0\2\0\0\0ab\0\0\0\0"s;
    CHECK(written(sheet) == "\0\0\0\0"s + keyBytes + body + keyBytes);

    SECTION("and on a stream that is no archive")
    {
        MemoryOutputStream out;
        out.writeObject(sheet.get());
        CHECK(contentOf(out) == body);
        MemoryInputStream in = readerOf(body);
        const OwnedObject copy(static_cast<InputStream&>(in).readObject());
        CHECK(dynamic_cast<first::Sheet&>(*copy).title == "ab");
        CHECK(in.getFilePointer() == body.size());
    }
}

TEST_CASE("Versions: reading beyond an object's data is the end, not what follows it")
{
    const std::string bytes = written(titled<first::Sheet>("")) + "more";
    CHECK_THROWS_AS(readFrom<graph::Card>(renamed(bytes, "class test1::Sheet", "struct graph::Card")), EndOfFile);
}

TEST_CASE("Versions: data of any length come back, and so does what follows them")
{
    const ref_ptr<graph::Card> card(new graph::Card);
    card->node = graph::makeNode("inside");
    for (const unsigned length : {0, 243, 244, 247, 0xFFF8, 0xFFFC, 0x10000, 0x10001, 200000}) {
        card->title = std::string(length, 'x');
        Memory reader(graph::archived(card) + graph::archived(graph::makeNode("behind")));
        const auto copy = reader.archive.load<graph::Card>();
        CHECK((copy->title == card->title && copy->numbers == card->numbers && copy->node->name == "inside"));
        CHECK(reader.archive.load<graph::Node>()->name == "behind");
    }
}

TEST_CASE("Versions: an object that cannot be written leaves nothing to the next one")
{
    const ref_ptr<graph::Card> outer(new graph::Card), inner(new graph::Card), good(new graph::Card);
    outer->others = {inner};
    inner->others = {nullptr};
    Memory memory;
    CHECK_THROWS_AS(memory.archive << outer, std::bad_typeid);
    const std::size_t before = memory.written().size();
    const graph::NodePtr node = graph::makeNode("plain");
    memory.archive << node << good;
    CHECK(memory.written().substr(before) == graph::archived(node) + graph::archived(good));
}

TEST_CASE("NewerData: what has one owner is kept beside owners that are known")
{
    Memory memory;
    const ref_ptr<second::Sheet> original = makeSecond();
    memory.archive.writeObject(titled<first::Sheet>("single").get());
    memory.archive << original;
    open(original);
    Memory reader(renamed(renamed(memory.written(), "test2::Sheet", "test1::Sheet"), "test2::Star", "test1::Star"));
    CHECK(reader.archive.readSingle<first::Sheet>()->title == "single");
    const ref_ptr<first::Sheet> sheet = reader.archive.load<first::Sheet>();
    CHECK(sheet->hasNewerData());
}

TEST_CASE("NewerData: unknown objects in a circle go with the last one that keeps them, or with the archive")
{
    const ref_ptr<second::Sheet> original = makeSecond();
    const std::string bytes = written(original), cut = renamed(bytes.substr(0, bytes.size() - 20), "test2", "test9");
    open(original);
    const auto readAndDrop = [&] { readAs<first::Sheet>(bytes, '2', '1'); };
    const auto fail = [&] {
        Memory reader(cut);
        reader.archive.keepUnknownClasses();
        ref_ptr<Serializable> kept;
        CHECK_THROWS_AS(reader.archive >> kept, EndOfFile);
    };
    const auto keepsNothing = [](const auto& call) {
        call();
        const std::size_t before = usedBytes();
        for (int i = 0; i < 100; ++i)
            call();
        CHECK(usedBytes() < before + 2000);
    };
    keepsNothing(readAndDrop);
    keepsNothing(fail);
}

TEST_CASE("Archive: objects of unknown classes are kept and written back, where that is asked for")
{
    const int before = graph::Counted::alive;
    {
        const ref_ptr<second::Star> star(new second::Star), twin(new second::Star);
        star->rays = 6;
        star->twin = twin;
        const std::string bytes = renamed(written(star), "test2::Star", "test9::Star");
        Memory reader(bytes);
        ref_ptr<Serializable> kept;
        CHECK_THROWS_AS(reader.archive >> kept, Serializable::Exception);
        reader.in = readerOf(bytes);
        reader.archive.keepUnknownClasses();
        Archive(reader.archive).readObject(kept); // So does a copy.
        const auto sealed = ref_ptr_cast<SealedObject>(kept);
        REQUIRE(sealed);
        CHECK(sealed->getClassName() == "class test9::Star");
        const ref_ptr<second::Star> back = readAs<second::Star>(written(kept), '9', '2');
        CHECK(back->rays == 6);
        CHECK(back->twin->rays == 5);
    }
    CHECK(graph::Counted::alive == before);
}
