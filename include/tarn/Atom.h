#pragma once

#include <tarn/BasicString.h>
#include <tarn/Export.h>
#include <tarn/Windows.h>

#include <boost/noncopyable.hpp>

#include <utility>

namespace tarn {
/// An entry in one of the system's atom tables: a number that stands for a text of up to 255 characters,
/// upper and lower case alike. Usable wherever an ATOM is expected.
///
/// Counted by the system: each object adds the text once and takes it away once. A local atom is the
/// process's own, a global one is shared by the programs of the desktop. Failures throw WindowsError.
class TARN_API Atom : private boost::noncopyable {
public:
    /// The process's own table, or that of all programs of the desktop.
    enum Scope { local, global };

    Atom() noexcept = default;
    /// Throws "Can't add atom "TEXT"". "#1234" gives the integer atom 1234, which is no entry.
    ///@{
    explicit Atom(const char* text, Scope scope = local);
    explicit Atom(const wchar_t* text, Scope scope = local);
    ///@}
    /// Takes over one count of an atom that was added elsewhere.
    Atom(ATOM atom, Scope scope) noexcept : atom_(atom), scope_(scope) {}
    /// Takes the count over; the source is left without an atom.
    Atom(Atom&& other) noexcept : atom_(other.detach()), scope_(other.scope_) {}
    /// Takes the count over and takes away the one held before, whose failure is not reported.
    Atom& operator=(Atom&& other) noexcept
    {
        Atom moved(std::move(other));
        std::swap(atom_, moved.atom_);
        std::swap(scope_, moved.scope_);
        return *this;
    }
    /// Does not report a failure: call free() to hear of it.
    ~Atom();

    /// The atom of a text that is in the table, or 0. Adds nothing.
    ///@{
    static ATOM find(const char* text, Scope scope = local);
    static ATOM find(const wchar_t* text, Scope scope = local);
    ///@}

    /// 0 when there is none.
    operator ATOM() const noexcept { return atom_; }
    /// `local` when there is none.
    Scope getScope() const noexcept { return scope_; }
    /// Throws "Can't get name of atom".
    ///@{
    BasicString<char> getNameA() const;
    BasicString<wchar_t> getNameW() const;
    ///@}

    /// Takes the text away once. Throws "Can't delete atom".
    void free();
    /// Leaves the atom in its table, for a receiver of a message that deletes it, for instance.
    ATOM detach() noexcept { return std::exchange(atom_, ATOM(0)); }

private:
    ATOM atom_ = 0;
    Scope scope_ = local;
};
} // namespace tarn
