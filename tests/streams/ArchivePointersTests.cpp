#include "Test.h"

#include "Graph.h"

#include <tarn/weak_ref.h>

using namespace std::string_literals;
using graph::Counted;
using graph::Memory;

namespace {
struct Shape : Serializable, Counted {
    virtual ~Shape() = default;
    void serialize(OutputStream& out) const override { out << name; }
    void deserialize(InputStream& in) override { in >> name; }
    std::string name;
};
struct Square final : Shape {
    Square(const std::string& text = "") { name = text; }
};
struct Drawing final : Serializable, Counted {
    template <class Self> static auto all(Self& self) { return fields(self.first, self.second, self.own, self.parts); }
    void serialize(OutputStream& out) const override { out << all(*this); }
    void deserialize(InputStream& in) override { in >> all(*this); }

    std::shared_ptr<Shape> first, second;
    std::unique_ptr<Shape> own;
    std::vector<std::unique_ptr<Drawing>> parts;
};
const SerializableImpl<Square> squareRegistration("struct test::Square");
const SerializableImpl<Drawing> drawingRegistration("struct test::Drawing");

std::string drawing()
{
    Memory memory;
    Drawing drawing;
    drawing.first = drawing.second = std::make_shared<Square>("shared");
    drawing.own = std::make_unique<Square>("own");
    drawing.parts.push_back(std::make_unique<Drawing>());
    memory.archive.writeObject(&drawing);
    return memory.written();
}
} // namespace

TEST_CASE("Archive: standard pointers come back as they were, and end as what they are")
{
    const int before = Counted::alive;
    std::unique_ptr<Drawing> copy;
    std::shared_ptr<Shape> shared;
    {
        Memory reader(drawing());
        copy = reader.archive.readSingle<Drawing>();
        CHECK(copy->first == copy->second);
        CHECK(copy->first.use_count() == 2);
        CHECK(copy->first->name == "shared");
        CHECK(copy->own->name == "own");
        REQUIRE(copy->parts.size() == 1);
        CHECK_FALSE(copy->parts[0]->first);
        CHECK_FALSE(copy->parts[0]->own);
        if (GENERATE(true, false)) // The archive may be the last to hold the shape.
            copy.reset();
        else
            shared = copy->first;
    }
    copy.reset();
    CHECK((!shared || shared->name == "shared"));
    shared.reset();
    CHECK(Counted::alive == before);
}

TEST_CASE("Archive: pointers that are read as empty ones have nothing of what they had")
{
    Memory reader(std::string(4, '\0'));
    ref_ptr<Square> shared(new Square);
    weak_ref<Square> weak = shared;
    auto own = std::make_unique<Square>();
    auto standard = std::make_shared<Square>();
    reader.archive >> weak >> own >> standard;
    CHECK((weak.expired() && !own && !standard));
    readOptional(reader.archive, shared);
    CHECK_FALSE(shared);
}

TEST_CASE("Archive: an object with one owner leaves nothing behind when it cannot be read")
{
    const int before = Counted::alive;
    const std::string bytes = drawing();
    {
        Memory memory;
        memory.archive << std::make_shared<Drawing>();
        Memory other(memory.written());
        std::shared_ptr<Shape> shape = std::make_shared<Square>("there before");
        expectError<Serializable::Exception>(
            [&] { other.archive >> shape; },
            "An object of struct test::Drawing was read where one of class (anonymous namespace)::Shape is expected");
        CHECK(shape->name == "there before");
    }
    CHECK(Counted::alive == before);
    {
        Memory other(bytes);
        expectError<Serializable::Exception>(
            [&] { other.archive.readSingle<Square>(); },
            "An object of struct test::Drawing was read where one of struct test::Square is expected");
        Memory cut(bytes.substr(0, bytes.size() - 1));
        CHECK_THROWS_AS(cut.archive.readSingle(), EndOfFile);
        CHECK(Counted::alive == before + 2); // The shared ones, which the archives have still.
    }
    CHECK(Counted::alive == before);
}

TEST_CASE("Archive: what load() cannot read whole is taken apart, circles included")
{
    const graph::NodePtr root = graph::makeGraph();
    const std::string whole = graph::archived(root);
    graph::dismantle(root);
    const int before = Counted::alive;
    for (std::size_t length = 0; length < whole.size(); ++length) {
        Memory reader(whole.substr(0, length));
        CHECK_THROWS(reader.archive.load<graph::Node>());
        if (Counted::alive != before)
            FAIL("objects are left after " << length << " bytes");
        CHECK(reader.archive.getSharedObjects().empty());
    }
    Memory reader(whole);
    const graph::NodePtr copy = reader.archive.load<graph::Node>();
    CHECK(copy->right->left->left == copy);
    CHECK_THROWS_AS(reader.archive.load<graph::Node>(), EndOfFile); // What it had read before stays.
    CHECK(copy->right->left->left == copy);
    graph::dismantle(copy);
}

TEST_CASE("Archive: release() destroys the last one as what it is")
{
    const int before = Counted::alive;
    ref_ptr<Serializable> node(graph::makeNode("n")), same = node;
    Archive::release(node);
    CHECK_FALSE(node);
    CHECK(Counted::alive == before + 1);
    Archive::release(same);
    CHECK(Counted::alive == before);
}

namespace {
template <int size> struct Padding {
    virtual ~Padding() = default;
    char bytes[size] = {};
};
struct Numbered {
    virtual ~Numbered() = default;
    int number = 0;
};
/// A class of many, in each of which the number lies elsewhere; every other one has a version.
template <int which> struct OneOf final : Padding<16 * which + 1>, Serializable, Numbered {
    static constexpr unsigned int classVersion = which % 2;
    void serialize(OutputStream& out) const override { out << this->number; }
    void deserialize(InputStream& in) override { in >> this->number; }
};

template <int... which> std::vector<ref_ptr<Numbered>> writeMany(Archive& archive, std::integer_sequence<int, which...>)
{
    const auto name = [](int number) { return std::to_string(1000 + number) + std::string(110u + number, 'n'); };
    static const std::tuple<SerializableImpl<OneOf<which>>...> registrations(name(which).c_str()...);
    std::vector<ref_ptr<Numbered>> written;
    const auto write = [&](const auto& object) {
        object->number = static_cast<int>(written.size());
        archive << object;
        written.push_back(object);
    };
    for (int round = 0; round < 3; ++round)
        (write(ref_ptr(new OneOf<which>)), ...);
    return written;
}
} // namespace

TEST_CASE("Archive: objects of many classes, with names of all lengths, are found as one of their bases")
{
    Memory memory;
    const auto written = writeMany(memory.archive, std::make_integer_sequence<int, 30>());
    Memory reader(memory.written());
    for (const auto& object : written) {
        ref_ptr<Numbered> read;
        reader.archive >> read;
        REQUIRE(read->number == object->number);
    }
}
