#include "Test.h"

#include "Graph.h"

#include <new>

using graph::Node;
using graph::NodePtr;

namespace {
struct Failing {
    ~Failing() noexcept(false) { throw 1; }
    NodePtr node = graph::makeNode("n");
};
struct alignas(64) Aligned : Serializable {
    void serialize(OutputStream&) const override {}
    void deserialize(InputStream&) override {}
};
struct Pooled final : Aligned {
    static void* operator new(std::size_t size, std::align_val_t) { return ++pooled, std::malloc(size); }
    static void operator delete(void* storage, std::align_val_t) { --pooled, std::free(storage); }
    inline static int pooled = 0;
};
} // namespace

TEST_CASE("ref_ptr: the last pointer destroys the object as its T")
{
    using graph::Counted;
    const int before = Counted::alive;
    NodePtr node = graph::makeNode("n"), same = node;
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
    ref_ptr<Serializable>(new graph::Style).release();
    CHECK(Counted::alive == before + 1);
    --Counted::alive;
}

TEST_CASE("ref_ptr: the longest chain is let go without the stack's end")
{
    const int before = graph::Counted::alive;
    NodePtr first;
    for (int i = 0; i < 300000; ++i) {
        NodePtr node(new Node);
        node->left.swap(first);
        node->right = node->left; // In the middle of a pair, too.
        first.swap(node);
    }
    first.release();
    graph::makeNode("after");
    CHECK(graph::Counted::alive == before);
}

TEMPLATE_TEST_CASE("ref_ptr: memory goes back the way it came, also when the destructor throws", "", Failing, Aligned,
                   Pooled)
{
    const int before = graph::Counted::alive;
    const std::size_t bytes = usedBytes();
    for (int i = 0; i < 1000; ++i)
        ref_ptr<TestType>(new TestType).release();
    CHECK(graph::Counted::alive == before);
    CHECK(Pooled::pooled == 0);
    CHECK(usedBytes() < bytes + 8000); // Less than eight bytes for each.
}

TEST_CASE("ref_ptr: the counts of many objects that were read go with the last of them")
{
    NodePtr chain;
    for (int i = 0; i < 200; ++i)
        chain = graph::makeNode("x", chain);
    const std::string data = graph::archived(chain);
    const auto read = [&] { return graph::Memory(data).archive.load<Node>(); };
    read();
    const std::size_t bytes = usedBytes();
    for (int i = 0; i < 100; ++i)
        read();
    CHECK(usedBytes() < bytes + 10000);
}
