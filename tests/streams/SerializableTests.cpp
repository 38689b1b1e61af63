#include "Expect.h"

#include <tarn/ClassSource.h>
#include <tarn/MemoryStream.h>
#include <tarn/Serializable.h>

#include <memory>
#include <string>

using namespace tarn;

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
template <class T> struct Of final : Marked {
};

const SerializableImpl<Circle> circleRegistration;
const SerializableImpl<Square> squareRegistration(declaredAsStruct);
const SerializableImpl<Of<int>> ofRegistration("struct shapes::Of<int>");
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

// Constructed before any class of this program is registered.
struct EmptyRegistry {
    EmptyRegistry() : message(textOf("")), secondMessage(textOf(nullptr)) {}
    static std::string textOf(const char* name)
    {
        try {
            Serializable::create(name);
            return "";
        } catch (const Serializable::Exception& e) {
            return e.what();
        }
    }

    std::string message, secondMessage;
};
EmptyRegistry emptyRegistry __attribute__((init_priority(101)));

template <class T> std::string written(T object)
{
    MemoryOutputStream out;
    out.writeObject(&object);
    return std::string(static_cast<const char*>(out.getData()), static_cast<unsigned>(out.getSize()));
}

template <std::size_t n> std::string bytes(const char (&text)[n]) { return std::string(text, n - 1); }
} // namespace

TEST_CASE("Serializable: an empty registry knows no name, not even the empty one", "[streams][registry]")
{
    CHECK(emptyRegistry.message == notFound(""));
    CHECK(emptyRegistry.secondMessage == notFound(""));
}

TEST_CASE("Serializable: the first registration of a name wins over all that continue or begin it",
          "[streams][registry]")
{
    Serializable::addCreator("class A", &create<1>);
    Serializable::addCreator("class A", &create<2>);
    Serializable::addCreator("class AB", &create<3>);
    Serializable::addCreator("class ", &create<4>);
    CHECK(markOf("class A") == 1);
    CHECK(markOf("class AB") == 1);
    CHECK(markOf("class AZ") == 1);

    Serializable::addCreator("a first name", &create<5>);
    CHECK(markOf("") == 5);
    CHECK(markOf(nullptr) == 5);
    CHECK(markOf("a f") == 5);
    Serializable::addCreator("\xE4 last name", &create<6>);
    CHECK(markOf("\xE4 last") == 6);
    CHECK(markOf("a first name") == 5);
}

TEST_CASE("Serializable: names are found case by case, and unknown ones are named", "[streams][registry]")
{
    Serializable::addCreator("class A", &create<1>);
    support::expectError<Serializable::Exception>([] { Serializable::create("class a"); }, notFound("class a"));
    support::expectError<Serializable::Exception>([] { Serializable::create("xyz"); }, notFound("xyz"));
}

TEST_CASE("OutputStream: an object is its class's readable name and its data", "[streams][registry]")
{
    CHECK(written(shapes::Circle()) == bytes("\x14\0\0\0class shapes::Circle\0\0\0\0"));
    CHECK(written(shapes::Square()) == bytes("\x15\0\0\0struct shapes::Square\0\0\0\0"));
    CHECK(written(shapes::Of<int>()) == bytes("\x16\0\0\0struct shapes::Of<int>\0\0\0\0"));
    CHECK(written(shapes::Unregistered()) == bytes("\x1A\0\0\0class shapes::Unregistered\0\0\0\0"));
    MemoryOutputStream out;
    CHECK_THROWS_AS(out.writeObject(nullptr), std::bad_typeid);
    CHECK(out.getSize() == 0);
}

TEST_CASE("InputStream: an object is made by its class's name and reads its data", "[streams][registry]")
{
    shapes::Square square;
    square.mark = 7;
    const std::string data = written(square);
    const auto read = [](const std::string& content) {
        MemoryInputStream in(content.data(), static_cast<unsigned>(content.size()));
        return std::unique_ptr<Marked>(static_cast<Marked*>(in.readObject()));
    };
    const auto copy = read(data);
    CHECK(typeid(*copy) == typeid(shapes::Square));
    CHECK(copy->mark == 7);

    CHECK_THROWS_AS(read(data.substr(0, data.size() - 1)), EndOfFile);
    // The name is fetched with a plain read: cut short, it is as much as came.
    support::expectError<Serializable::Exception>([&] { read(bytes("\5\0\0\0xyz")); }, notFound("xyz"));
    support::expectError<Serializable::Exception>([&] { read(bytes("\xFF\xFF\xFF\xFFxyz")); }, notFound("xyz"));
    CHECK_THROWS_AS(read("abc"), EndOfFile);
    const std::string longName(100000, 'y');
    MemoryOutputStream out;
    out << longName;
    const std::string longBytes(static_cast<const char*>(out.getData()), static_cast<unsigned>(out.getSize()));
    support::expectError<Serializable::Exception>([&] { read(longBytes); }, notFound(longName));
}

TEST_CASE("SimpleClassSource: gives out the descriptors of its table", "[streams][com]")
{
    int first = 0, second = 0;
    Class* const circle = reinterpret_cast<Class*>(&first);
    Class* const square = reinterpret_cast<Class*>(&second);
    SimpleClassSource source;
    source.insert(typeid(shapes::Circle), circle);
    source.insert(typeid(shapes::Square), square);
    CHECK(source.getClass(typeid(shapes::Circle)) == circle);
    CHECK(source.getClass(typeid(shapes::Square)) == square);
    CHECK(source.getClass(typeid(Marked)) == nullptr);
}

TEST_CASE("SimpleClassSource: answers for its two interfaces and is not counted", "[streams][com]")
{
    SimpleClassSource source;
    ClassSource* const self = &source;
    void* found = nullptr;
    CHECK(source.QueryInterface(IID_IUnknown, &found) == S_OK);
    CHECK(found == self);
    found = nullptr;
    const IID id = {0x7BB892C4, 0xBBBF, 0x45B2, {0x89, 0xCE, 0x88, 0x80, 0x23, 0x0D, 0x58, 0x46}};
    CHECK(source.QueryInterface(id, &found) == S_OK);
    CHECK(found == self);
    CHECK(source.QueryInterface(IID_IClassFactory, &found) == E_NOINTERFACE);
    CHECK(found == self);
    CHECK(source.QueryInterface(IID_IUnknown, nullptr) == E_POINTER);
    const IID* nothing = nullptr;
    asm("" : "+r"(nothing)); // COM's callers can pass null where C++ sees a reference.
    CHECK(source.QueryInterface(*nothing, &found) == E_POINTER);
    CHECK(source.AddRef() == 1);
    CHECK(source.Release() == 1);
}
