#pragma once

#include "ObjectGraph.h"

#include <cstring>
#include <utility>
#include <vector>

namespace {
/// The same objects for a program of its own that has no use for an archive: they know their own numbers, plain
/// functions write the very bytes, and nobody counts references.
struct HandItem {
    virtual ~HandItem() = default;
    virtual const char* name() const = 0;

    Content<HandItem*> content;
    unsigned number = 0;
};
struct HandLeaf final : HandItem {
    const char* name() const override { return "struct Leaf"; }
};
struct HandBranch final : HandItem {
    const char* name() const override { return "struct Branch"; }
};
using HandPointer = HandItem*;

class HandWriter {
public:
    explicit HandWriter(Buffer& buffer) : buffer_(buffer) {}
    void write(HandItem& item)
    {
        if (item.number != 0) {
            put(item.number);
            return;
        }
        item.number = ++last_;
        const unsigned length = static_cast<unsigned>(std::strlen(item.name()));
        const unsigned head[] = {0, item.number, length};
        put(head);
        buffer_.put(item.name(), length);
        write(*item.content.left);
        write(*item.content.right);
        put(item.content.a);
        put(item.content.b);
        put(item.content.c);
        put(item.content.d);
        put(static_cast<unsigned>(item.content.text.size()));
        buffer_.put(item.content.text.data(), item.content.text.size());
        all_.push_back(&item);
    }
    ~HandWriter()
    {
        for (HandItem* const item : all_)
            item->number = 0;
    }

private:
    template <class T> void put(const T& value) { buffer_.put(&value, sizeof value); }

    Buffer& buffer_;
    unsigned last_ = 0;
    std::vector<HandItem*> all_;
};

class HandReader {
public:
    explicit HandReader(Buffer& buffer) : buffer_(buffer) {}
    HandItem* read()
    {
        if (const auto number = get<unsigned>(); number != 0)
            return all_[number - 1];
        get<unsigned>();
        const auto nameLength = get<unsigned>();
        char name[64];
        buffer_.get(name, nameLength);
        HandItem* const item = name[7] == 'L' ? static_cast<HandItem*>(new HandLeaf) : new HandBranch;
        all_.push_back(item);
        item->content.left = read();
        item->content.right = read();
        item->content.a = get<int>();
        item->content.b = get<int>();
        item->content.c = get<int>();
        item->content.d = get<double>();
        item->content.text.resize(get<unsigned>());
        buffer_.get(item->content.text.data(), item->content.text.size());
        return item;
    }

private:
    template <class T> T get()
    {
        T value{};
        buffer_.get(&value, sizeof value);
        return value;
    }

    Buffer& buffer_;
    std::vector<HandItem*> all_;
};

/// Nobody else frees these.
void dismantle(HandItem* root)
{
    root->number = 1;
    std::vector<HandItem*> all{root};
    for (std::size_t i = 0; i < all.size(); ++i)
        for (HandItem* const next : {all[i]->content.left, all[i]->content.right})
            if (std::exchange(next->number, 1) == 0)
                all.push_back(next);
    for (HandItem* const item : all)
        delete item;
}

std::vector<HandPointer> makeHandItems(unsigned count) { return makeGraph<HandPointer, HandLeaf, HandBranch>(count); }

void writeByHand(Buffer& buffer, HandItem& root) { HandWriter(buffer).write(root); }
HandPointer readByHand(Buffer& buffer) { return HandReader(buffer).read(); }
} // namespace
