#pragma once

#include <tarn/DPI.h>
#include <tarn/Export.h>
#include <tarn/GDIHandle.h>
#include <tarn/Windows.h>

namespace tarn {
/// What text is drawn with. Ownership and failures are those of GDIHandle.
class TARN_API Font : public TypedGDIHandle<HFONT> {
public:
    Font() noexcept = default;
    using TypedGDIHandle::TypedGDIHandle;
    /// An owned font, with the parameters of `CreateFont`. The system takes the nearest that it has, so a
    /// missing face is no failure. `height` is in logical units: negative for the height of the characters
    /// (DeviceContext::getFontHeightFromPoints), positive for that of the line. Angles are in tenths of a
    /// degree. Throws "Can't create font".
    ///@{
    Font(int height, int width, int escapement, int orientation, int weight, bool italic, bool underline,
         bool strikeOut, unsigned long charSet, unsigned long outPrecision, unsigned long clipPrecision,
         unsigned long quality, unsigned long pitchAndFamily, const char* face);
    Font(int height, int width, int escapement, int orientation, int weight, bool italic, bool underline,
         bool strikeOut, unsigned long charSet, unsigned long outPrecision, unsigned long clipPrecision,
         unsigned long quality, unsigned long pitchAndFamily, const wchar_t* face);
    ///@}

    /// Releases the held font, as close() does, before it makes the new one.
    ///@{
    void create(int height, int width, int escapement, int orientation, int weight, bool italic, bool underline,
                bool strikeOut, unsigned long charSet, unsigned long outPrecision, unsigned long clipPrecision,
                unsigned long quality, unsigned long pitchAndFamily, const char* face);
    void create(int height, int width, int escapement, int orientation, int weight, bool italic, bool underline,
                bool strikeOut, unsigned long charSet, unsigned long outPrecision, unsigned long clipPrecision,
                unsigned long quality, unsigned long pitchAndFamily, const wchar_t* face);
    ///@}

    /// What the system shows its own messages in, for a screen: an owned font. Throws "Can't create font".
    static Font ofSystem(const DPI& dpi = DPI::ofSystem());
    /// The same font for another screen: an owned one, as much larger as that has more dots. Throws "Can't create
    /// font".
    Font rescaled(const DPI& from, const DPI& to) const;
};
} // namespace tarn
