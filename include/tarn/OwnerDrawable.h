#pragma once

#include <tarn/Export.h>
#include <tarn/Windows.h>

namespace tarn {
/// Mixed into a window class whose objects draw their own items: the parent's owner-draw messages for the
/// control arrive here, as long as the parent does not handle them itself (Window::onDrawItem and so on).
class TARN_API OwnerDrawable {
public:
    enum compare_result { less = -1, equal = 0, greater = 1 };

    OwnerDrawable() = default;
    OwnerDrawable(const OwnerDrawable&) = default;
    OwnerDrawable& operator=(const OwnerDrawable&) = default;

    virtual void onDrawItem(const DRAWITEMSTRUCT& item);
    virtual void onMeasureItem(MEASUREITEMSTRUCT& item); ///< Fills in the size.
    virtual void onDeleteItem(const DELETEITEMSTRUCT& item);
    virtual compare_result onCompareItem(const COMPAREITEMSTRUCT& items); ///< `equal` unless overridden.

protected:
    ~OwnerDrawable() = default;
};
} // namespace tarn
