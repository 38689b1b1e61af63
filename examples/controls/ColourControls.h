#pragma once

#include <tarn/Button.h>
#include <tarn/DPI.h>
#include <tarn/ListBox.h>

struct Colour {
    const wchar_t* name;
    unsigned long value;
};

/// A list of colours, each drawn as a patch with its name. An item's value is its Colour.
class ColourList : public tarn::ListBox, public tarn::OwnerDrawable {
public:
    void fill() const;
    void setItemHeight(const tarn::DPI& dpi);
    const Colour& getColour() const; ///< The selected one; the first one when none is selected.

    void onDrawItem(const DRAWITEMSTRUCT& item) override;

private:
    tarn::DPI dpi_;
};

/// A button that shows the list's colour.
class ColourButton : public tarn::Button {
public:
    explicit ColourButton(const ColourList& colours) : colours_(colours) {}

    void onDrawItem(const DRAWITEMSTRUCT& item) override;

private:
    const ColourList& colours_;
};
