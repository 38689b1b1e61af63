#pragma once

#include <tarn/Export.h>
#include <tarn/StringBox.h>

#include <vector>

namespace tarn {
/// A list box. Its members are those of StringBox, and some for a box in which several items can be selected; its
/// styles begin with `LBS_`. For columns and pictures take a ListView.
///
/// Throws "Can't add string to listbox", "Can't add item to listbox", "Can't get listbox item text", "Can't delete
/// listbox item" and "Can't set listbox item data".
class TARN_API ListBox : public StringBox<detail::ListBoxMessages> {
public:
    using StringBox::StringBox;

    /// Also of a box in which one item can be selected.
    bool isSelected(unsigned index) const;
    /// -1 means all items. Throws "Can't select listbox item".
    void setSelected(unsigned index, bool selected) const;
    /// In their order; also of a box in which one item can be selected.
    std::vector<int> getSelectedItems() const;
};
} // namespace tarn
