#include "Test.h"

#include "Contents.h"
#include "Graph.h"

#include <tarn/Fields.h>

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
} // namespace

TEST_CASE("Fields: values together have the bytes that they have one by one, and come back")
{
    Record record;
    record.node = graph::makeNode("n");
    graph::Memory together, single;
    together.archive << Record::all(record);
    single.archive << record.flag << record.count << record.name << record.wide << record.real << record.half
                   << record.node << record.last;
    const std::string bytes = single.written();
    CHECK(together.written() == bytes);

    graph::Memory reader(bytes);
    Record copy{false, 0, "old", L"old", 0, 0, {}, 'a'};
    reader.archive >> Record::all(copy);
    CHECK((copy.flag && copy.count == -2 && copy.real == 0.5 && copy.half == 7 && copy.last == 'z'));
    CHECK(copy.name == "abc");
    CHECK(copy.wide == L"\x4E2D");
    CHECK(copy.node->name == "n");
    bool flag = false;
    MemoryInputStream two("\2", 1);
    two >> fields(flag);
    CHECK(flag); // As any byte but zero.

    MemoryInputStream cut(bytes.data(), 8); // Within the name's length.
    CHECK_THROWS_AS(cut >> Record::all(copy), EndOfFile);
}
