#include <tarn/ItemIDList.h>

#include <tarn/Exception.h>

#include "../foundation/Throw.h"

#include <shlobj.h>

#include <utility>

namespace tarn {
ItemIDList::ItemIDList(ItemIDList&& other) noexcept : list_(other.list_), owns_(other.owns_) { other.detach(); }

ItemIDList& ItemIDList::operator=(ItemIDList&& other) noexcept
{
    const bool owns = other.owns_;
    ITEMIDLIST* const taken = other.detach(); // First, because it may be this object.
    close();
    list_ = taken;
    owns_ = owns;
    return *this;
}

void ItemIDList::attach(ITEMIDLIST* list) noexcept
{
    if (list != list_)
        close();
    list_ = list;
    owns_ = list != nullptr;
}

void ItemIDList::copy(const ITEMIDLIST* list)
{
    ITEMIDLIST* const clone = list ? ILClone(list) : nullptr;
    if (list && !clone)
        throwError(BadAllocation());
    attach(clone);
}

void ItemIDList::close() noexcept
{
    if (owns_)
        CoTaskMemFree(list_); // The shell's allocator is COM's, which need not be asked for.
    list_ = nullptr;
    owns_ = false;
}

ITEMIDLIST* ItemIDList::detach() noexcept
{
    owns_ = false;
    return std::exchange(list_, nullptr);
}

BasicString<char> ItemIDList::getPathA() const { return getPathW().c_str(); }

BasicString<wchar_t> ItemIDList::getPathW() const
{
    wchar_t path[MAX_PATH];
    return list_ && SHGetPathFromIDListW(list_, path) ? path : L"";
}
} // namespace tarn
