#pragma once

#include <tarn/BasicString.h>
#include <tarn/Export.h>
#include <tarn/Windows.h>

#include <boost/noncopyable.hpp>

/// As <shlobj.h> has it, which takes long to compile.
typedef struct _ITEMIDLIST ITEMIDLIST; // NOLINT(bugprone-reserved-identifier): the platform's name

namespace tarn {
/// The shell's name of a folder or file, owned (freed through the shell's allocator) or borrowed.
class TARN_API ItemIDList : private boost::noncopyable {
public:
    ItemIDList() noexcept = default;
    /// With `owns` as attach(), otherwise `list` has to live as long as the object uses it.
    ItemIDList(ITEMIDLIST* list, bool owns) noexcept : list_(list), owns_(owns) {}
    /// Takes over what the other one has, and leaves that null.
    ItemIDList(ItemIDList&& other) noexcept;
    /// The same; what was held is freed if it was owned.
    ItemIDList& operator=(ItemIDList&& other) noexcept;
    ~ItemIDList() { close(); }

    /// Takes over a list that the shell handed out, and frees the one held before.
    void attach(ITEMIDLIST* list) noexcept;
    /// Throws BadAllocation. A null list clears.
    void copy(const ITEMIDLIST* list);
    /// Frees what is owned and becomes null.
    void close() noexcept;
    /// Becomes null; what was owned is the caller's from now on.
    ITEMIDLIST* detach() noexcept;

    /// Null for none. Lent, not given.
    ///@{
    ITEMIDLIST* get() const noexcept { return list_; }
    operator const ITEMIDLIST*() const noexcept { return list_; }
    explicit operator bool() const noexcept { return list_ != nullptr; }
    bool operator!() const noexcept { return !list_; }
    ///@}

    /// Its place in the file system; empty when it has none.
    ///@{
    BasicString<char> getPathA() const;
    BasicString<wchar_t> getPathW() const;
    ///@}

private:
    ITEMIDLIST* list_ = nullptr;
    bool owns_ = false;
};
} // namespace tarn
