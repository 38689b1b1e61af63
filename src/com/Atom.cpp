#include <tarn/Atom.h>

#include "../foundation/Check.h"
#include "../foundation/Closing.h"
#include "../foundation/Quoted.h"

namespace tarn {
namespace {
// One name for each pair of entry points, and for the two tables.
ATOM addAtom(const char* text, Atom::Scope scope)
{
    return scope == Atom::global ? GlobalAddAtomA(text) : AddAtomA(text);
}
ATOM addAtom(const wchar_t* text, Atom::Scope scope)
{
    return scope == Atom::global ? GlobalAddAtomW(text) : AddAtomW(text);
}

UINT getAtomName(ATOM atom, char* name, int size, Atom::Scope scope)
{
    return scope == Atom::global ? GlobalGetAtomNameA(atom, name, size) : GetAtomNameA(atom, name, size);
}
UINT getAtomName(ATOM atom, wchar_t* name, int size, Atom::Scope scope)
{
    return scope == Atom::global ? GlobalGetAtomNameW(atom, name, size) : GetAtomNameW(atom, name, size);
}

template <class Ch> ATOM add(const Ch* text, Atom::Scope scope)
{
    return ensure(addAtom(text, scope), [&] { return "Can't add atom " + quoted(text); });
}

template <class Ch> BasicString<Ch> nameOf(ATOM atom, Atom::Scope scope)
{
    Ch name[2 * 255 + 1]; // Two bytes a character in some code pages.
    const UINT length =
        ensure(getAtomName(atom, name, static_cast<int>(std::size(name)), scope), "Can't get name of atom");
    return BasicString<Ch>(name, length);
}
} // namespace

Atom::Atom(const char* text, Scope scope) : atom_(add(text, scope)), scope_(scope) {}
Atom::Atom(const wchar_t* text, Scope scope) : atom_(add(text, scope)), scope_(scope) {}

Atom::~Atom()
{
    closeQuietly([this] { free(); });
}

ATOM Atom::find(const char* text, Scope scope) { return scope == global ? GlobalFindAtomA(text) : FindAtomA(text); }
ATOM Atom::find(const wchar_t* text, Scope scope) { return scope == global ? GlobalFindAtomW(text) : FindAtomW(text); }

BasicString<char> Atom::getNameA() const { return nameOf<char>(atom_, scope_); }
BasicString<wchar_t> Atom::getNameW() const { return nameOf<wchar_t>(atom_, scope_); }

void Atom::free()
{
    // The result is zero in any case for one of the two: only the last error tells.
    if (const ATOM atom = detach())
        ensureClearing([&] { return scope_ == global ? GlobalDeleteAtom(atom) : DeleteAtom(atom); },
                       [](ATOM) { return GetLastError() != ERROR_SUCCESS; }, "Can't delete atom");
}
} // namespace tarn
