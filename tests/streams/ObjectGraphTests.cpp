#include "Test.h"

#include <tarn/Fields.h>
#include <tarn/ObjectGraph.h>
#include <tarn/weak_ref.h>

#include <typeinfo>

using Texts = std::vector<std::string>;

namespace {
struct Part final : Serializable {
    Part() = default;
    explicit Part(const char* itsName) : name(itsName) {}
    void serialize(OutputStream& out) const override
    {
        out << name << number;
        writeOptional(out, next);
        out << owner;
    }
    void deserialize(InputStream& in) override
    {
        in >> name >> number;
        readOptional(in, next);
        in >> owner;
    }

    BasicString<char> name;
    int number = 4; // As the length of what follows would be.
    ref_ptr<Part> next;
    weak_ref<Part> owner;
};
const SerializableImpl<Part> partClass("struct GraphPart");

/// All that values can be.
struct Values final : Serializable {
    void serialize(OutputStream& out) const override
    {
        const BasicString<wchar_t> text = L"\x416\"\\\n";
        out << true << static_cast<short>(-2) << (1ll << 53) << -(1ll << 53) << (1ll << 53) + 1 << 0.1 << HUGE_VAL
            << fields(year, text) << "\x1F"
            << "" << *single;
        last(out);
    }
    void deserialize(InputStream&) override {}
    static constexpr char three[] = {1, 2, 3};
    struct Bytes {
        friend OutputStream& operator<<(OutputStream& out, const Bytes&)
        {
            out.writeFully(three, sizeof three);
            return out;
        }
    };
    const std::unique_ptr<Bytes> single = std::make_unique<Bytes>();
    const int year = 1999;
    std::function<void(OutputStream&)> last = [](OutputStream& out) { out << "end"; };
};
const SerializableImpl<Values> valuesClass("struct GraphValues");

/// A ring of three, whose first part is the owner of the others.
ref_ptr<Part> ring()
{
    const ref_ptr<Part> first(new Part("first")), second(new Part("second")), third(new Part("third"));
    first->next = second;
    second->next = third;
    third->next = first;
    second->owner = first;
    return first;
}

void open(const ref_ptr<Part>& part) { part->next.release(); }
} // namespace

TEST_CASE("ObjectGraph: values, texts and references as JSON")
{
    const auto first = ring();
    const std::string json = ObjectGraph(first).getJSON();
    CHECK(json ==
          "{\"objects\": [\n"
          "{\"class\": \"struct GraphPart\", \"data\": [\"first\", 4, 1, {\"object\": 2}, 0]},\n"
          "{\"class\": \"struct GraphPart\", \"data\": [\"second\", 4, 1, {\"object\": 3}, 1, {\"weak\": 1}]},\n"
          "{\"class\": \"struct GraphPart\", \"data\": [\"third\", 4, 1, {\"object\": 1}, 0]}]}\n");
    open(first);
    const ref_ptr<Values> values(new Values);
    CHECK(ObjectGraph(values).getJSON() ==
          "{\"objects\": [\n{\"class\": \"struct GraphValues\", \"data\": [1, -2, 9007199254740992, -9007199254740992, "
          "4.450147717014404e-308, 0.1, {\"bytes\": \"000000000000F07F\"}, 1999, \"\xD0\x96\\\"\\\\\\u000a\", "
          "1, 31, \"\", {\"bytes\": \"010203\"}, \"end\"]}]}\n");
    values->last = [](OutputStream& out) { out << ref_ptr<Values>(); };
    CHECK_THROWS_AS(ObjectGraph(values), std::bad_typeid);
    CHECK_THROWS_AS(ObjectGraph(ref_ptr<Part>()), std::bad_typeid);
}

TEST_CASE("ObjectGraph: equal is what has the same data and references, and differences are sentences")
{
    const auto one = ring(), other = ring();
    const ObjectGraph before(one);
    CHECK((before == ObjectGraph(other) && before.getDifferences(ObjectGraph(other)).empty()));
    other->name = "last";
    other->next->next->number = 7;
    CHECK(ObjectGraph(other).getDifferences(before) ==
          Texts{"Object 1 (struct GraphPart), value 1: \"last\", not \"first\"",
                "Object 3 (struct GraphPart), value 2: 7, not 4"});
    open(other->next);
    CHECK(ObjectGraph(other).getDifferences(before).back() == "Number of objects: 2, not 3");
    const ref_ptr<Values> values(new Values);
    const ObjectGraph narrow(values);
    CHECK(narrow.getDifferences(before) ==
          Texts{"Object 1 (struct GraphValues) is no struct GraphPart", "Number of objects: 1, not 3"});
    values->last = [](OutputStream& out) { out << L"end"; };
    CHECK(ObjectGraph(values).getDifferences(narrow) == Texts{"The data differ in bytes that are shown alike"});
    values->last = [](OutputStream&) {};
    CHECK(ObjectGraph(values).getDifferences(narrow) ==
          Texts{"Object 1 (struct GraphValues), number of values: 13, not 14"});
    open(one);
}

TEST_CASE("ObjectGraph: circles are told, but for those that end by themselves")
{
    const auto first = ring();
    CHECK(ObjectGraph(first).getCircles() ==
          Texts{"Object 1 (struct GraphPart) holds object 2 (struct GraphPart), which holds object 3 (struct "
                "GraphPart), which holds object 1"});
    const ref_ptr<Part> second = first->next;
    second->next = second;
    CHECK(ObjectGraph(first).getCircles() == Texts{"Object 2 (struct GraphPart) holds itself"});
    open(second);
    CHECK(ObjectGraph(first).getCircles().empty()); // The weak way back is none.
}

TEST_CASE("deepCopy: other objects, which share what was shared")
{
    const auto first = ring();
    const ref_ptr<Part> copy = deepCopy(first);
    CHECK((ObjectGraph(copy) == ObjectGraph(first) && copy.get() != first.get()));
    CHECK((copy->next->next->next == copy && copy->next->owner.lock() == copy));
    open(copy);
    open(first);
}

TEST_CASE("UndoHistory: leads back and forth, until something new is noted")
{
    UndoHistory<Part> history(3), forgetful(0);
    forgetful.note(ref_ptr<Part>(new Part));
    CHECK_FALSE(forgetful.canUndo());
    CHECK((!history.canUndo() && !history.canRedo() && !history.undo() && !history.redo()));
    ref_ptr<Part> document(new Part("one"));
    for (const char* const name : {"one", "two", "three", "four"}) {
        document->name = name;
        history.note(document);
    }
    const auto name = [](const ref_ptr<Part>& part) { return part ? std::string(part->name) : "none"; };
    CHECK((name(history.undo()) == "three" && name(history.undo()) == "two" && name(history.undo()) == "none"));
    CHECK(name(history.redo()) == "three");
    document = history.undo();
    document->name = "other";
    history.note(document);
    CHECK((!history.canRedo() && name(history.undo()) == "two" && name(history.redo()) == "other"));
}
