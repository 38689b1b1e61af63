#include "Expect.h"
#include "Graph.h"

#include <map>
#include <random>

// Archives damaged in all simple ways and, from a fixed seed, in many random ones.

namespace {
std::string graphBytes()
{
    const graph::NodePtr root = graph::makeGraph();
    const std::string bytes = graph::archived(root);
    graph::dismantle(root);
    return bytes;
}

/// The outcomes, counted; each read must leave nothing behind.
class Outcomes {
public:
    void add(const std::string& damaged)
    {
        const std::string outcome = graph::readAndDiscard(damaged.data(), static_cast<unsigned>(damaged.size()));
        ++counts[outcome];
        ++total;
        if (graph::Counted::alive != before_) {
            FAIL("objects leaked after " << outcome << ", damage number " << total);
        }
    }

    std::map<std::string, int> counts;
    int total = 0;

private:
    const int before_ = graph::Counted::alive;
};

void damage(std::string& bytes, std::mt19937& random)
{
    const auto below = [&](std::size_t limit) { return static_cast<std::size_t>(random()) % limit; };
    const std::size_t at = below(bytes.size());
    switch (below(6)) {
    case 0:
        bytes[at] = static_cast<char>(random());
        break;
    case 1:
        bytes[at] = static_cast<char>(bytes[at] ^ (1 << below(8)));
        break;
    case 2:
        bytes.erase(at, 1 + below(8));
        break;
    case 3:
        bytes.insert(at, 1 + below(8), static_cast<char>(random()));
        break;
    case 4: // A word of one place at another: keys and names change owners.
        bytes.replace(at, 4, bytes.substr(below(bytes.size()), 4));
        break;
    case 5: // A whole stretch twice: keys come up again, records lie inside each other.
        bytes.insert(at, bytes.substr(below(bytes.size()), below(200)));
        break;
    }
}
} // namespace

TEST_CASE("Archive: any truncation and any changed byte ends in success or a promised exception", "[streams][mutation]")
{
    const std::string whole = graphBytes();
    Outcomes outcomes;
    for (std::size_t length = 0; length < whole.size(); ++length)
        outcomes.add(whole.substr(0, length));
    CHECK(outcomes.counts["EndOfFile"] + outcomes.counts["Serializable::Exception"] == outcomes.total);

    for (std::size_t i = 0; i < whole.size(); ++i)
        for (const int flip : {1, 2, 4, 8, 16, 32, 64, 128, 255}) {
            std::string damaged = whole;
            damaged[i] = static_cast<char>(damaged[i] ^ flip);
            outcomes.add(damaged);
        }
    CHECK(outcomes.counts[""] > 0);
    CHECK(outcomes.counts["EndOfFile"] > 0);
    CHECK(outcomes.counts["Serializable::Exception"] > 0);
}

TEST_CASE("Archive: random damage ends in success or a promised exception", "[streams][mutation]")
{
    const std::string whole = graphBytes();
    std::mt19937 random(20240229);
    Outcomes outcomes;
    for (int i = 0; i < 100000; ++i) {
        std::string damaged = whole;
        for (std::size_t steps = 1 + random() % 4; steps > 0; --steps)
            damage(damaged, random);
        outcomes.add(damaged);
    }
    CHECK(outcomes.counts.size() >= 3);
}

TEST_CASE("Archive: a name of four billion characters takes neither memory nor time", "[streams][mutation]")
{
    for (const char* length : {"\xFF\xFF\xFF\xFF", "\xFF\xFF\xFF\x7F", "\x80\x96\x98\x00"}) {
        std::string bytes(8, '\0');
        bytes.append(length, 4).append(200000, '\1');
        CHECK(graph::readAndDiscard(bytes.data(), static_cast<unsigned>(bytes.size())) == "Serializable::Exception");
    }
}
