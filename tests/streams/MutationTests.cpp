#include "Test.h"

#include "Graph.h"

#include <map>
#include <random>

TEST_CASE("Archive: damaged data end in success or a promised exception, and leave nothing behind")
{
    const bool hasVersions = GENERATE(false, true);
    const std::string whole = hasVersions ? graph::archivedCards() : [] {
        const graph::NodePtr root = graph::makeGraph();
        const std::string bytes = graph::archived(root);
        graph::dismantle(root);
        return bytes;
    }();
    const int before = graph::Counted::alive;
    std::map<std::string, int> outcomes;
    const auto read = [&](const std::string& damaged) {
        const auto size = static_cast<unsigned>(damaged.size());
        const std::string outcome =
            hasVersions ? graph::loadAndDiscard(damaged.data(), size) : graph::readAndDiscard(damaged.data(), size);
        ++outcomes[outcome];
        if (graph::Counted::alive != before) {
            FAIL("objects leaked after " << outcome);
        }
    };
    read(whole);
    CHECK(outcomes[""] == 1);
    outcomes.clear();

    SECTION("any truncation")
    {
        for (std::size_t length = 0; length < whole.size(); ++length)
            read(whole.substr(0, length));
        CHECK(outcomes[""] + outcomes["Exception"] == 0);
    }
    SECTION("any changed byte")
    {
        for (std::size_t i = 0; i < whole.size(); ++i)
            for (const int flip : {1, 2, 4, 8, 16, 32, 64, 128, 255}) {
                std::string damaged = whole;
                damaged[i] = static_cast<char>(damaged[i] ^ flip);
                read(damaged);
            }
        CHECK(outcomes.size() >= 3);
    }
    SECTION("stretches copied over others, from a fixed seed")
    {
        // Keys and names change owners or come up again, records lie inside each other or lose a part.
        std::mt19937 random(20240229);
        const auto below = [&](std::size_t limit) { return static_cast<std::size_t>(random()) % limit; };
        for (int i = 0; i < 50000; ++i) {
            std::string damaged = whole;
            for (std::size_t steps = 1 + below(4); steps > 0; --steps) {
                const std::string stretch = damaged.substr(below(damaged.size()), below(2) ? 4 : below(200));
                damaged.replace(below(damaged.size()), below(2) ? stretch.size() : below(8), stretch);
            }
            read(damaged);
        }
        CHECK(outcomes.size() >= 3);
    }
}
