#pragma once

#include <tarn/Export.h>
#include <tarn/Windows.h>

namespace tarn {
/// Mixed into a window class whose objects draw their own items: the parent's owner-draw messages for the
/// control arrive here, as long as the parent does not handle them itself (Window::onDrawItem and so on).
class TARN_API OwnerDrawable {
public:
    /// Where the first of two items belongs: before the second, beside or behind it.
    enum compare_result { less = -1, equal = 0, greater = 1 };

    OwnerDrawable() = default;
    /// The class has no state of its own.
    ///@{
    OwnerDrawable(const OwnerDrawable&) = default;
    OwnerDrawable& operator=(const OwnerDrawable&) = default;
    ///@}

    /// Draws one item into the context that the structure has. Does nothing unless overridden.
    virtual void onDrawItem(const DRAWITEMSTRUCT& item);
    /// Fills in the size.
    virtual void onMeasureItem(MEASUREITEMSTRUCT& item);
    /// An item is gone: its data can be given back. Does nothing unless overridden.
    virtual void onDeleteItem(const DELETEITEMSTRUCT& item);
    /// `equal` unless overridden.
    virtual compare_result onCompareItem(const COMPAREITEMSTRUCT& items);

protected:
    ~OwnerDrawable() = default;
};
} // namespace tarn
