#pragma once

#include "../streams/Graph.h"

#include <tarn/FramedStream.h>
#include <tarn/StreamValues.h>
#include <tarn/WindowsFile.h>

#include <chrono>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <tuple>
#include <type_traits>

// What one edition writes and the other reads.

namespace support {
inline const auto sampleValues =
    std::tuple(std::int8_t{-1}, std::uint16_t{2}, -3, 4u, -5L, 6uL, -7LL, 8uLL, 'x', L'\x20AC', true, 0.5f, 0.25,
               std::string("narrow"), std::wstring(L"wide"), std::string(), std::vector<double>{1, 2},
               std::map<std::string, std::chrono::sys_seconds>{{"k", {}}}, std::optional(3.5f));

inline void writeSample(const char* file)
{
    tarn::WindowsFile out(file, GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, 0, nullptr);
    std::apply([&](const auto&... values) { (out << ... << values); }, sampleValues);
    tarn::MemoryInputStream nothing;
    tarn::FramedOutputStream frame(out);
    tarn::Archive archive(nothing, frame);
    const graph::NodePtr root = graph::makeGraph();
    const tarn::ref_ptr<graph::Card> card(new graph::Card);
    card->title = "with a version";
    card->node = root;
    archive << root << card;
    frame.close();
    graph::dismantle(root);
}

/// Whether the file holds what writeSample writes.
inline bool isSample(const char* file)
{
    tarn::WindowsFile in(file, GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr);
    std::remove_const_t<decltype(sampleValues)> read;
    std::apply([&](auto&... values) { (in >> ... >> values); }, read);
    tarn::MemoryOutputStream nowhere;
    tarn::FramedInputStream frame(in);
    graph::NodePtr root;
    tarn::ref_ptr<graph::Card> card;
    {
        tarn::Archive archive(frame, nowhere);
        root = archive.load<graph::Node>();
        card = archive.load<graph::Card>();
    }
    frame.finish();
    const graph::NodePtr branch = root->right, leaf = branch->left;
    const bool same = read == sampleValues && root->name == "root" && root->left->left == branch &&
                      branch->right == leaf && leaf->left == root && leaf->style == branch->style &&
                      root->style != branch->style && root->style->colour == "red" && card->title == "with a version" &&
                      card->node == root;
    graph::dismantle(root);
    return same;
}
} // namespace support
