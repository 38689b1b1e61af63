#include "Contents.h"
#include "Expect.h"
#include "Graph.h"

#include <tarn/BasicString.h>
#include <tarn/Fields.h>

using namespace tarn;

namespace {
struct Record {
    template <class Self> static auto all(Self& self)
    {
        return fields(self.flag, self.count, self.name, self.wide, self.real, self.half, self.node, self.last);
    }

    bool flag = true;
    int count = -2;
    std::string name = "abc";
    BasicString<wchar_t> wide = L"\x4E2D";
    double real = 0.5;
    short half = 7;
    graph::NodePtr node;
    char last = 'z';
};

/// Counts the calls that reach it.
struct Counting : OutputStream {
    unsigned write(const void* data, unsigned size) override
    {
        ++calls;
        return memory.write(data, size);
    }
    MemoryOutputStream memory;
    int calls = 0;
};
} // namespace

TEST_CASE("Fields: values together have the bytes that they have one by one, and come back", "[streams][fields]")
{
    Record record;
    record.node = graph::makeNode("n");
    MemoryInputStream nothing;
    MemoryOutputStream together, single;
    Archive first(nothing, together), second(nothing, single);
    first << Record::all(record);
    second << record.flag << record.count << record.name << record.wide << record.real << record.half << record.node
           << record.last;
    CHECK(contentOf(together) == contentOf(single));

    const std::string bytes = contentOf(single);
    MemoryInputStream in = readerOf(bytes);
    Record copy{false, 0, "old", L"old", 0, 0, {}, 'a'};
    Archive archive(in, together);
    archive >> Record::all(copy);
    CHECK((copy.flag && copy.count == -2 && copy.real == 0.5 && copy.half == 7 && copy.last == 'z'));
    CHECK(copy.name == "abc");
    CHECK(copy.wide == L"\x4E2D");
    CHECK(copy.node->name == "n");

    MemoryInputStream cut(bytes.data(), 8); // Within the name's length.
    CHECK_THROWS_AS(cut >> Record::all(copy), EndOfFile);
}

TEST_CASE("Fields: numbers side by side, and the length of the text behind them, are one piece", "[streams][fields]")
{
    Counting out;
    const int a = 1, b = 2;
    const std::string text = "twelve chars";
    out << fields(a, b, text, a, b);
    CHECK(out.calls == 3);
    CHECK(out.memory.getSize() == 32);
}
