#include "Test.h"

#include <tarn/Atom.h>

TEMPLATE_TEST_CASE("Atom: an entry is counted in its own table and goes with its last owner", "", char, wchar_t)
{
    const auto scope = GENERATE(Atom::local, Atom::global);
    const BasicString<TestType> text(("tarn test atom " + std::to_string(GetCurrentProcessId())).c_str());
    {
        const Atom atom(text.c_str(), scope);
        CHECK(ATOM(Atom(text.toUpper().c_str(), scope)) == ATOM(atom));
        CHECK(Atom::find(text.c_str(), scope) == atom);
        CHECK(Atom::find(text.c_str(), scope == Atom::local ? Atom::global : Atom::local) == 0);
        CHECK(atom.getNameW() == BasicString<wchar_t>(text.c_str()));
        CHECK(atom.getNameA() == BasicString<char>(text.c_str()));
    }
    CHECK(Atom::find(text.c_str(), scope) == 0);
    const BasicString<TestType> longest(std::basic_string<TestType>(255, 'x'));
    CHECK(Atom(longest.c_str(), scope).getNameA().size() == 255);
}

TEST_CASE("Atom: moves hand over, free forgets, and failures are told")
{
    Atom atom("tarn test local atom"), moved(std::move(atom));
    CHECK((ATOM(atom) == 0 && Atom("#1234") == 1234));
    moved.free();
    CHECK(ATOM(moved) == 0);
    CHECK_NOTHROW(moved.free());
    const std::string tooLong(256, 'x');
    expectWindowsError([&] { Atom a(tooLong.c_str()); }, ERROR_INVALID_PARAMETER, "Can't add atom \"" + tooLong + "\"");
    expectWindowsError([] { Atom(0xC123, Atom::local).getNameW(); }, ERROR_INVALID_HANDLE, "Can't get name of atom");
    expectWindowsError([] { Atom(0xC123, Atom::local).free(); }, ERROR_INVALID_HANDLE, "Can't delete atom");
}
