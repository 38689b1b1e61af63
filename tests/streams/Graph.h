#pragma once

#include "Contents.h"

#include <tarn/Archive.h>
#include <tarn/Fields.h>
#include <tarn/NewerData.h>
#include <tarn/Serializable.h>
#include <tarn/StreamValues.h>

#include <algorithm>
#include <string>
#include <typeinfo>
#include <vector>

// Classes of objects for the tests of archives. Everything is inline, and what is registered is a variable
// of each test program that includes this.

namespace graph {
/// Counts the objects whose constructor ran and whose destructor did not.
class Counted {
public:
    Counted() { ++alive; }
    Counted(const Counted&) { ++alive; }
    Counted& operator=(const Counted&) = default;
    ~Counted() { --alive; }

    inline static int alive = 0;
};

/// A colour that nodes share.
struct Style : tarn::Serializable, Counted {
    template <class Self> static auto all(Self& self) { return tarn::fields(self.colour, self.width); }
    void serialize(tarn::OutputStream& out) const override { out << all(*this); }
    void deserialize(tarn::InputStream& in) override { in >> all(*this); }

    std::string colour = "red";
    double width = 1;
};

/// A node of a graph, with references that may form circles.
struct Node : tarn::Serializable, Counted {
    void serialize(tarn::OutputStream& out) const override
    {
        out << name << number;
        tarn::writeOptional(out, style);
        tarn::writeOptional(out, left);
        tarn::writeOptional(out, right);
    }
    void deserialize(tarn::InputStream& in) override
    {
        in >> name >> number;
        tarn::readOptional(in, style);
        tarn::readOptional(in, left);
        tarn::readOptional(in, right);
    }

    std::string name;
    int number = 0;
    tarn::ref_ptr<Style> style;
    tarn::ref_ptr<Node> left, right;
};

using NodePtr = tarn::ref_ptr<Node>;

inline const tarn::SerializableImpl<Node> nodeRegistration(tarn::declaredAsStruct);
inline const tarn::SerializableImpl<Style> styleRegistration(tarn::declaredAsStruct);

inline NodePtr makeNode(const std::string& name, NodePtr left = {}, NodePtr right = {})
{
    NodePtr node(new Node);
    node->name = name;
    node->number = static_cast<int>(name.size());
    node->left = left;
    node->right = right;
    return node;
}

/// Five nodes and two styles: shared from several places, and with a circle back to the root.
inline NodePtr makeGraph()
{
    NodePtr leaf = makeNode("leaf"), branch = makeNode("branch", leaf, leaf);
    NodePtr root = makeNode("root", makeNode("twig", branch), branch);
    leaf->left = root;
    leaf->right = leaf;
    leaf->style = branch->style = tarn::ref_ptr<Style>(new Style);
    root->style = tarn::ref_ptr<Style>(new Style);
    return root;
}

/// Opens the circles, so that the nodes' destructors run.
inline void dismantle(const NodePtr& node)
{
    if (!node)
        return;
    node->style.release();
    const NodePtr left = node->left, right = node->right;
    node->left.release();
    node->right.release();
    dismantle(left);
    dismantle(right);
}

/// An archive over memory, for one direction at a time: what was written, and a reader of given bytes.
struct Memory {
    explicit Memory(const std::string& content = "") : bytes(content) {}
    std::string written() { return contentOf(out); }

    std::string bytes;
    tarn::MemoryInputStream in = readerOf(bytes);
    tarn::MemoryOutputStream out;
    tarn::Archive archive{in, out};
};

/// The bytes of one object.
template <class T> std::string archived(const tarn::ref_ptr<T>& root)
{
    Memory memory;
    memory.archive << root;
    return memory.written();
}

/// A card with a version, that knows others and a node.
struct Card : tarn::Serializable, tarn::NewerData, Counted {
    static constexpr unsigned int classVersion = 1;
    void serialize(tarn::OutputStream& out) const override
    {
        out << title << numbers;
        tarn::writeOptional(out, node);
        out << others;
    }
    void deserialize(tarn::InputStream& in) override
    {
        in >> title >> numbers;
        tarn::readOptional(in, node);
        in >> others;
    }

    std::string title;
    std::vector<short> numbers{1, 2};
    NodePtr node;
    std::vector<tarn::ref_ptr<Card>> others;
};
/// What a newer program writes: the name is changed into that of a card afterwards.
struct NewCard final : Card {
    static constexpr unsigned int classVersion = 2;
    void serialize(tarn::OutputStream& out) const override
    {
        Card::serialize(out);
        out << added << std::string("new");
    }

    std::vector<tarn::ref_ptr<tarn::Serializable>> added;
};
/// Not known to the older program.
struct Novelty final : tarn::Serializable, Counted {
    static constexpr unsigned int classVersion = 1;
    void serialize(tarn::OutputStream& out) const override { tarn::writeOptional(out, card); }
    void deserialize(tarn::InputStream& in) override { tarn::readOptional(in, card); }

    tarn::ref_ptr<Card> card;
};
inline const tarn::SerializableImpl<Card> cardRegistration("struct graph::Card");
inline const tarn::SerializableImpl<NewCard> newCardRegistration("struct graph::Cord");
inline const tarn::SerializableImpl<Novelty> noveltyRegistration("struct graph::Novelty");

/// Three cards of a newer program that know each other, with a graph, and with an object that knows the first.
inline std::string archivedCards()
{
    const NodePtr root = makeGraph();
    const tarn::ref_ptr<NewCard> first(new NewCard), second(new NewCard);
    const tarn::ref_ptr<Novelty> novelty(new Novelty);
    novelty->card = first;
    first->others = {second, tarn::ref_ptr<Card>(new Card)};
    second->others = {first};
    second->node = root;
    second->added = {novelty, first, root->left};
    std::string bytes = archived(first);
    for (std::size_t at; (at = bytes.find("graph::Cord")) != std::string::npos;)
        bytes.replace(at, 11, "graph::Card");
    bytes.replace(bytes.find("graph::Novelty"), 14, "graph::Unheard");
    first->others.clear();
    second->added.clear();
    dismantle(root);
    return bytes;
}

/// Holds what an archive has read, and takes it apart when the archive is gone.
class Held {
public:
    void take(const tarn::Archive& archive) { objects_ = archive.getSharedObjects(); }
    ~Held()
    {
        for (const auto& object : objects_) {
            if (const NodePtr node = tarn::ref_ptr_cast<Node>(object))
                dismantle(node);
            if (const auto card = tarn::ref_ptr_cast<Card>(object)) {
                card->others.clear();
                card->dropNewerData();
            }
        }
        std::ranges::for_each(objects_, tarn::Archive::release);
    }

private:
    std::vector<tarn::ref_ptr<tarn::Serializable>> objects_;
};

/// Which of the promised exceptions ended the call, or "" for none.
template <class Call> std::string outcomeOf(Call call)
{
    try {
        call();
    } catch (const tarn::EndOfFile&) {
        return "EndOfFile";
    } catch (const tarn::Serializable::Exception&) {
        return "Serializable::Exception";
    } catch (const tarn::Exception&) {
        return "Exception";
    }
    return "";
}

/// Reads a graph from data that may be damaged, and gives up all of it again: what is alive afterwards has
/// leaked. Says how it ended, as outcomeOf().
inline std::string readAndDiscard(const void* data, unsigned int size)
{
    Held held;
    NodePtr root;
    Memory memory({static_cast<const char*>(data), size});
    const std::string outcome = outcomeOf([&] { memory.archive >> root; });
    held.take(memory.archive);
    return outcome;
}

/// As readAndDiscard(), for cards. What a failed reading leaves behind is not taken apart here.
inline std::string loadAndDiscard(const void* data, unsigned int size)
{
    Held held;
    tarn::ref_ptr<Card> root;
    Memory memory({static_cast<const char*>(data), size});
    const std::string outcome = outcomeOf([&] { root = memory.archive.load<Card>(); });
    if (outcome.empty())
        held.take(memory.archive);
    return outcome;
}
} // namespace graph
