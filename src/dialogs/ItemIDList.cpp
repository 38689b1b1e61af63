#include <tarn/ItemIDList.h>

#include <tarn/Exception.h>

#include "../foundation/Throw.h"

namespace tarn {
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
    IMalloc* allocator = nullptr;
    if (list_ && owns_ && SUCCEEDED(SHGetMalloc(&allocator))) {
        allocator->Free(list_);
        allocator->Release();
    }
    list_ = nullptr;
    owns_ = false;
}

BasicString<char> ItemIDList::getPathA() const { return getPathW().c_str(); }

BasicString<wchar_t> ItemIDList::getPathW() const
{
    wchar_t path[MAX_PATH];
    return list_ && SHGetPathFromIDListW(list_, path) ? path : L"";
}
} // namespace tarn
