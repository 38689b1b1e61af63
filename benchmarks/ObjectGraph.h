#pragma once

#include "Clocks.h"

#include <tarn/Archive.h>
#include <tarn/Fields.h>

#include <algorithm>
#include <cstring>
#include <string>
#include <vector>

// Unnamed, since a type that no other file knows is told from others faster, and cereal asks for it often.
namespace {
/// The growing buffer that every archive here writes to and reads from.
struct Buffer {
    void clear()
    {
        bytes.clear();
        position = 0;
    }
    unsigned put(const void* data, std::size_t size)
    {
        const char* const from = static_cast<const char*>(data);
        bytes.insert(bytes.end(), from, from + size);
        return static_cast<unsigned>(size);
    }
    unsigned get(void* data, std::size_t size)
    {
        size = std::min(size, bytes.size() - position);
        std::memcpy(data, bytes.data() + position, size);
        position += size;
        return static_cast<unsigned>(size);
    }

    std::vector<char> bytes;
    std::size_t position = 0;
};

class BufferStream : public tarn::InputStream, public tarn::OutputStream {
public:
    explicit BufferStream(Buffer& buffer) : buffer_(buffer) {}
    unsigned read(void* data, unsigned size) override { return buffer_.get(data, size); }
    unsigned write(const void* data, unsigned size) override { return buffer_.put(data, size); }

private:
    Buffer& buffer_;
};

/// What an object of the graph holds, with the library's pointers or the standard ones.
template <class Pointer> struct Content {
    Pointer left, right;
    int a = 1, b = 2, c = 3;
    double d = 0.5;
    std::string text = "twelve chars";
};

struct Item : tarn::Serializable {
    virtual ~Item() = default;
    template <class Data> static auto fieldsOf(Data& all)
    {
        return tarn::fields(all.left, all.right, all.a, all.b, all.c, all.d, all.text);
    }
    void serialize(tarn::OutputStream& out) const override { out << fieldsOf(content); }
    void deserialize(tarn::InputStream& in) override { in >> fieldsOf(content); }

    Content<tarn::ref_ptr<Item>> content;
};
struct Leaf final : Item {};
struct Branch final : Item {};
const tarn::SerializableImpl<Leaf> leafRegistration("struct Leaf");
const tarn::SerializableImpl<Branch> branchRegistration("struct Branch");

/// A tree whose leaves refer back to their parents and grandparents.
template <class Pointer, class LeafType, class BranchType> std::vector<Pointer> makeGraph(unsigned count)
{
    std::vector<Pointer> all;
    for (unsigned i = 0; i < count; ++i)
        all.push_back(2 * i + 2 < count ? Pointer(new BranchType) : Pointer(new LeafType));
    for (unsigned i = 0; i < count; ++i) {
        const bool isBranch = 2 * i + 2 < count;
        const unsigned parent = (i - 1) / 2;
        all[i]->content.left = all[isBranch ? 2 * i + 1 : parent];
        all[i]->content.right = all[isBranch ? 2 * i + 2 : (parent - 1) / 2];
    }
    return all;
}

template <class Pointer> void dismantle(const Pointer& item)
{
    Pointer left, right;
    std::swap(left, item->content.left);
    std::swap(right, item->content.right);
    if (left)
        dismantle(left);
    if (right)
        dismantle(right);
}

using ItemPointer = tarn::ref_ptr<Item>;

std::vector<ItemPointer> makeItems(unsigned count) { return makeGraph<ItemPointer, Leaf, Branch>(count); }

void writeGraph(Buffer& buffer, const ItemPointer& root)
{
    BufferStream stream(buffer);
    tarn::Archive archive(stream, stream);
    archive << root;
}

ItemPointer readGraph(Buffer& buffer)
{
    BufferStream stream(buffer);
    tarn::Archive archive(stream, stream);
    ItemPointer root;
    archive >> root;
    return root;
}

/// Measures reading the buffer from its beginning, and gives up what was read.
template <class Read> auto reading(Buffer& buffer, Read read)
{
    return [&buffer, read](bench::Stopwatch& watch) {
        buffer.position = 0;
        watch.start();
        const auto root = read(buffer);
        watch.stop();
        dismantle(root);
    };
}
} // namespace
