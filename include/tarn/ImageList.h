#pragma once

#include <tarn/Export.h>
#include <tarn/Windows.h>

#include <commctrl.h>

namespace tarn {
/// Pictures of one size, for the items of a ListView or TreeView. Owns its list and destroys it at its end.
/// Failures throw WindowsError, also out of the destructor.
class TARN_API ImageList {
public:
    /// What a resource is.
    enum what { bitmap, icon, cursor };

    ImageList() = default;
    /// As load() does.
    ImageList(int resource, what kind, unsigned width, unsigned long mask, unsigned flags, HINSTANCE module);
    ImageList(const ImageList&) = delete;
    /// Takes the list over.
    ImageList(ImageList&& other) noexcept : list_(other.detach()) {}
    /// Copies the handle without destroying the one before, and leaves two owners of one list: detach() one
    /// of them before both die, otherwise the second one's end throws or worse.
    ImageList& operator=(const ImageList&) = default;
    /// Takes the list over, and destroys what was held before. A failure of that is told to the debugger only; call
    /// destroy() first to hear of it.
    ImageList& operator=(ImageList&& other) noexcept;
    ~ImageList() noexcept(false);

    /// Destroys a held list first. A bitmap is cut into pictures of this width; an icon or cursor is one
    /// picture. `mask` is the colour that becomes transparent (`CLR_NONE`: none, `CLR_DEFAULT`: that of the
    /// first pixel), `flags` are those of `LoadImage` (`LR_CREATEDIBSECTION` keeps the colours).
    /// Throws "Failed to load image list".
    void load(int resource, what kind, unsigned width, unsigned long mask, unsigned flags, HINSTANCE module);
    /// Does nothing when empty. Throws "Failed to destroy image list".
    void destroy();
    /// Takes it over, and destroys what was held before.
    void attach(HIMAGELIST list);
    /// The caller destroys it from now on.
    HIMAGELIST detach() noexcept;

    /// Null for none. The handle is lent, not given.
    ///@{
    bool isOpen() const { return list_ != nullptr; }
    HIMAGELIST getHandle() const { return list_; }
    operator HIMAGELIST() const { return list_; }
    ///@}

private:
    HIMAGELIST list_ = nullptr;
};
} // namespace tarn
