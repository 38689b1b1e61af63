#include "Test.h"

#include "Contents.h"

#include <tarn/Archive.h>
#include <tarn/ClassSource.h>
#include <tarn/Serializable.h>

using namespace std::string_literals;

namespace shapes {
/// Tells which creator made it.
struct Marked : Serializable {
    explicit Marked(int number = 0) : mark(number) {}
    void serialize(OutputStream& out) const override { out << mark; }
    void deserialize(InputStream& in) override { in >> mark; }

    int mark;
};
class Circle final : public Marked {};
struct Square final : Marked {};
struct Unregistered final : Marked {};

const SerializableImpl<Circle> circleRegistration;
const SerializableImpl<Square> squareRegistration(declaredAsStruct);
} // namespace shapes

namespace {
using shapes::Marked;

template <int mark> Serializable* create() { return new Marked(mark); }
int markOf(const char* name) { return std::unique_ptr<Marked>(static_cast<Marked*>(Serializable::create(name)))->mark; }

std::string notFound(const std::string& name)
{
    return "Klassendefinition nicht gefunden - ein Objekt vom Typ SerializableImpl sollte f\xFCr die Klasse \"" + name +
           "\" angelegt werden";
}

std::string failureFor(const char* name)
{
    try {
        Serializable::create(name);
        return "";
    } catch (const Serializable::Exception& e) {
        return e.what();
    }
}
// Asked for before any class of this program is registered.
const std::string failures[] __attribute__((init_priority(101))) = {failureFor(""), failureFor(nullptr)};

template <class T> std::string written(T object)
{
    MemoryOutputStream out;
    out.writeObject(&object);
    return contentOf(out);
}
} // namespace

TEST_CASE("Serializable: an empty registry knows no name, not even the empty one")
{
    CHECK(failures[0] == notFound(""));
    CHECK(failures[1] == notFound(""));
}

TEST_CASE("Serializable: the first registration of a name wins over all that continue or begin it")
{
    Serializable::addCreator("class A", &create<1>);
    Serializable::addCreator("class A", &create<2>);
    Serializable::addCreator("class AB", &create<3>);
    Serializable::addCreator("class ", &create<4>);
    Serializable::addCreator("a first name", &create<5>);
    Serializable::addCreator("\xE4 last name", &create<6>);
    const std::pair<const char*, int> rows[] = {
        {"class A", 1}, {"class AB", 1}, {"class AZ", 1}, {"", 5}, {nullptr, 5}, {"a f", 5}, {"\xE4 last", 6},
    };
    for (const auto& [name, mark] : rows)
        CHECK(markOf(name) == mark);
    CHECK(failureFor("class a") == notFound("class a"));
}

TEST_CASE("OutputStream: an object is its class's readable name and its data")
{
    CHECK(written(shapes::Circle()) == "\x14\0\0\0class shapes::Circle\0\0\0\0"s);
    CHECK(written(shapes::Square()) == "\x15\0\0\0struct shapes::Square\0\0\0\0"s);
    CHECK(written(shapes::Unregistered()) == "\x1A\0\0\0class shapes::Unregistered\0\0\0\0"s);
    MemoryOutputStream out;
    CHECK_THROWS_AS(out.writeObject(nullptr), std::bad_typeid);
    CHECK(out.getSize() == 0);
}

TEST_CASE("SerializableImpl: each name of a class makes it, and the first is written")
{
    SerializableImpl<shapes::Circle>("class geometry::Round"); // The program's own stay.
    CHECK(typeid(*std::unique_ptr<Marked>(static_cast<Marked*>(Serializable::create("class geometry::Round")))) ==
          typeid(shapes::Circle));
    CHECK(written(shapes::Circle()).substr(4, 20) == "class shapes::Circle");
}

TEST_CASE("SerializableImpl: a class that has another's name is not written, since it would come back as that one")
{
    struct First final : Marked {};
    struct Second final : Marked {};
    const SerializableImpl<First> first("class twin");
    const SerializableImpl<Second> second("class twin");
    CHECK(written(First()) == "\x0A\0\0\0class twin\0\0\0\0"s);
    expectError<Serializable::Exception>([] { written(Second()); }, "\"class twin\" is the name of another class, too");
}

TEST_CASE("SerializableImpl: the classes of a DLL are registered as long as it is loaded")
{
    // The DLL's comes first under this name, and this program's stands back as long as it is there.
    struct Standby final : Marked {};
    std::unique_ptr<SerializableImpl<Standby>> own;
    MemoryInputStream in;
    MemoryOutputStream out;
    Archive archive(in, out); // Remembers what it knows of the classes, as long as that holds.
    const Standby standby;
    const auto isWritten = [&] {
        archive.writeObject(&standby);
        return contentOf(out).ends_with("\x12\0\0\0class plugin::Part\0\0\0\0"s);
    };
    const auto read = [&] {
        in.setBuffer("\0\0\0\0\0\0\0\0\x14\0\0\0struct plugin::Other\0\0\0", 36);
        return archive.readSingle() != nullptr;
    };
    CHECK_FALSE(isWritten());
    for (int i = 0; i < 3; ++i) {
        const HMODULE plugin = LoadLibraryW(L"streams_plugin.dll");
        REQUIRE(plugin);
        if (!own) {
            own = std::make_unique<SerializableImpl<Standby>>("class plugin::Part");
            CHECK_THROWS_AS(isWritten(), Serializable::Exception);
        }
        CHECK(read());
        CHECK(FreeLibrary(plugin));
        CHECK_THROWS_AS(read(), Serializable::Exception);
        CHECK(markOf("class plugin::Part") == 0);
        CHECK(isWritten());
    }
}

TEST_CASE("InputStream: an object is made by its class's name and reads its data")
{
    shapes::Square square;
    square.mark = 7;
    const std::string data = written(square);
    const auto read = [](const std::string& content) {
        MemoryInputStream in = readerOf(content);
        return std::unique_ptr<Marked>(static_cast<Marked*>(in.readObject()));
    };
    const auto copy = read(data);
    CHECK(typeid(*copy) == typeid(shapes::Square));
    CHECK(copy->mark == 7);

    const std::string zeros(1000, '\0');
    MemoryInputStream in = readerOf(zeros);
    const OwnedObject nameless(static_cast<InputStream&>(in).readObject()), first(Serializable::create(""));
    CHECK(typeid(*nameless) == typeid(*first));
    CHECK_THROWS_AS(read(data.substr(0, data.size() - 1)), EndOfFile);
    CHECK_THROWS_AS(read("abc"), EndOfFile);
    // The name is fetched with a plain read: cut short, it is as much as came.
    const std::string longName(100000, 'y');
    for (const auto& [content, name] : {std::pair("\5\0\0\0xyz"s, "xyz"s), std::pair("\xFF\xFF\xFF\xFFxyz"s, "xyz"s),
                                        std::pair("\xA0\x86\1\0"s + longName, longName)})
        expectError<Serializable::Exception>([&, &c = content] { read(c); }, notFound(name));
}

TEST_CASE("SimpleClassSource: gives out its table, answers for its two interfaces, is not counted")
{
    int first = 0;
    Class* const circle = reinterpret_cast<Class*>(&first);
    SimpleClassSource source;
    source.insert(typeid(shapes::Circle), circle);
    CHECK(source.getClass(typeid(shapes::Circle)) == circle);
    CHECK(source.getClass(typeid(Marked)) == nullptr);

    ClassSource* const self = &source;
    const IID own = {0x7BB892C4, 0xBBBF, 0x45B2, {0x89, 0xCE, 0x88, 0x80, 0x23, 0x0D, 0x58, 0x46}};
    void *known = nullptr, *found = nullptr;
    CHECK(source.QueryInterface(IID_IUnknown, &known) == S_OK);
    CHECK(source.QueryInterface(own, &found) == S_OK);
    CHECK((known == self && found == self));
    CHECK(source.QueryInterface(IID_IClassFactory, &found) == E_NOINTERFACE);
    CHECK(source.QueryInterface(own, nullptr) == E_POINTER);
    const IID* nothing = nullptr;
    asm("" : "+r"(nothing)); // COM's callers can pass null where C++ sees a reference.
    CHECK(source.QueryInterface(*nothing, &found) == E_POINTER);
    CHECK(source.AddRef() == 1);
    CHECK(source.Release() == 1);
}
