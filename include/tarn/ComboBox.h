#pragma once

#include <tarn/Export.h>
#include <tarn/StringBox.h>

namespace tarn {
/// A combo box: an edit field or a display with a list that drops down. Its members are those of StringBox; its styles
/// begin with `CBS_`.
///
/// Throws "Unspecified error in adding a string to a combo box", "Unspecified error in adding an owner draw item to a
/// combo box", "Can't get combo box item text", "Error when deleting a combo box item" and "Can't set combo box item
/// data".
class TARN_API ComboBox : public StringBox<detail::ComboBoxMessages> {
public:
    using StringBox::StringBox;
};
} // namespace tarn
