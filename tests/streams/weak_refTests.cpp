#include "Test.h"

#include "Graph.h"

#include <tarn/weak_ref.h>

#include <optional>

using graph::Counted;

namespace {
struct Part final : Serializable, Counted {
    void serialize(OutputStream& out) const override
    {
        out << parent;
        writeOptional(out, child);
    }
    void deserialize(InputStream& in) override
    {
        in >> parent;
        readOptional(in, child);
    }
    weak_ref<Part> parent;
    ref_ptr<Part> child;
};
const SerializableImpl<Part> registration("struct test::Part");

ref_ptr<Part> makePair()
{
    ref_ptr<Part> parent(new Part);
    parent->child = ref_ptr<Part>(new Part);
    parent->child->parent = parent;
    return parent;
}
} // namespace

TEST_CASE("weak_ref: ends with the last pointer, and does not keep the object")
{
    const int before = Counted::alive;
    ref_ptr<Part> part(new Part);
    weak_ref<Part> first = part, second = first, third;
    CHECK(part.getCount() == 1);
    CHECK(second.lock() == part);
    CHECK(third.expired());
    third = std::move(first);
    CHECK(first.expired());
    weak_ref<Serializable> general = part;
    CHECK(general.lock().get() == part.get());
    part.release();
    CHECK(Counted::alive == before);
    for (const auto* const reference : {&second, &third}) {
        CHECK(reference->expired());
        CHECK_FALSE(reference->lock());
    }
    weak_ref<Part> early = ref_ptr<Part>(new Part);
    CHECK(early.expired());
    part = ref_ptr<Part>(new Part); // Its count may lie where the last one's did.
    CHECK(second.expired());
    for (int i = 0; i < 2; ++i) { // The last one that goes is forgotten.
        second = part;
        CHECK(second.lock() == part);
        second.release();
    }
    CHECK((second.expired() && third.expired()));
    third = part;
    second = third;
    third.release();
    part.release();
    CHECK(second.expired());
}

TEST_CASE("weak_ref: objects that know each other end by themselves, also when they were read")
{
    const int before = Counted::alive;
    {
        const ref_ptr<Part> copy = graph::Memory(graph::archived(makePair())).archive.load<Part>();
        CHECK(copy->child->parent.lock() == copy);
        CHECK(copy->parent.expired());
        CHECK(copy.getCount() == 1);
    }
    CHECK(Counted::alive == before);
}
