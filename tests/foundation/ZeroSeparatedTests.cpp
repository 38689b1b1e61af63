#include "Test.h"

#include <foundation/ZeroSeparated.h>

using namespace std::string_view_literals;
using Views = std::vector<std::string_view>;

TEST_CASE("ZeroSeparated: a list ends with an empty text, unless that counts, or with its bytes")
{
    CHECK(textsIn("a\0bc\0\0d\0"sv) == Views{"a", "bc"});
    CHECK(textsIn("a\0bc\0\0d\0"sv, true) == Views{"a", "bc", "", "d"});
    CHECK(textsIn("a\0bc"sv) == Views{"a", "bc"});
    CHECK(textsIn(""sv, true).empty());
    CHECK(textsAt("a\0bc\0\0d") == Views{"a", "bc"});
    CHECK((textsAt("").empty() && textsAt<char>(nullptr).empty()));
}
