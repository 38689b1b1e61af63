// Writes valid archives for the fuzzer to start from: seed_archive corpus/graph

#include "Graph.h"

#include <fstream>

int main(int argc, char** argv)
{
    if (argc != 2)
        return 2;
    const graph::NodePtr root = graph::makeGraph();
    std::ofstream(argv[1], std::ios::binary) << graph::archived(root);
    graph::dismantle(root);
    std::ofstream(argv[1] + std::string(".cards"), std::ios::binary) << graph::archivedCards();
}
