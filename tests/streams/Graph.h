#pragma once

#include "Contents.h"

#include <tarn/Archive.h>
#include <tarn/Fields.h>
#include <tarn/Serializable.h>

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

inline std::string archived(const NodePtr& root)
{
    tarn::MemoryInputStream nothing;
    tarn::MemoryOutputStream out;
    tarn::Archive archive(nothing, out);
    archive << root;
    return contentOf(out);
}

/// Reads a graph from data that may be damaged, and gives up all of it again: what is alive afterwards has
/// leaked. Says which of the promised exceptions ended it, or "" for none.
inline std::string readAndDiscard(const void* data, unsigned int size)
{
    std::string outcome;
    std::vector<NodePtr> nodes;
    std::vector<tarn::ref_ptr<Style>> styles;
    {
        tarn::MemoryInputStream in(data, size);
        tarn::MemoryOutputStream nowhere;
        tarn::Archive archive(in, nowhere);
        NodePtr root;
        try {
            archive >> root;
        } catch (const tarn::EndOfFile&) {
            outcome = "EndOfFile";
        } catch (const tarn::Serializable::Exception&) {
            outcome = "Serializable::Exception";
        } catch (const tarn::Exception&) {
            outcome = "Exception";
        }
        nodes.push_back(root);
        for (const auto& object : archive.getSharedObjects()) {
            nodes.push_back(tarn::ref_ptr_cast<Node>(object));
            styles.push_back(tarn::ref_ptr_cast<Style>(object));
        }
    }
    std::ranges::for_each(nodes, dismantle);
    return outcome;
}
} // namespace graph
