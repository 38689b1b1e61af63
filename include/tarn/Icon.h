#pragma once

#include <tarn/Export.h>
#include <tarn/OwnedHandle.h>
#include <tarn/Size.h>
#include <tarn/Windows.h>

namespace tarn {
/// An icon, loaded from a module and owned, or a handle that is owned only when told so. Follows the rule
/// of OwnedHandle: copy construction moves, assignment of a variable makes a second owner.
///
/// Failures throw WindowsError, also out of the destructor.
class TARN_API Icon : public OwnedHandle<HICON> {
public:
    Icon() noexcept = default;
    /// Borrows the handle, or with `owns` takes it over.
    Icon(HICON handle, bool owns) noexcept : OwnedHandle(handle, owns) {}
    /// Load as load() does; a null module has the system's icons (`IDI_APPLICATION` is a wide name).
    ///@{
    Icon(unsigned id, HINSTANCE module) { load(id, module); }
    Icon(const char* name, HINSTANCE module) { load(name, module); }
    Icon(const wchar_t* name, HINSTANCE module) { load(name, module); }
    ///@}
    /// As those of OwnedHandle.
    ///@{
    Icon(Icon& other) noexcept = default;
    Icon(Icon&& other) noexcept = default;
    Icon& operator=(const Icon&) noexcept = default;
    Icon& operator=(Icon&& other) noexcept;
    ///@}
    ~Icon() noexcept(false);

    /// Null for none. Lent, not given.
    operator HICON() const noexcept { return getHandle(); }

    /// Releases the held icon first, as close() does. Of `id` the low 16 bits count.
    /// Throws "Can't load icon".
    ///@{
    void load(unsigned id, HINSTANCE module);
    void load(const char* name, HINSTANCE module);
    void load(const wchar_t* name, HINSTANCE module);
    ///@}

    /// The picture of an icon whose width and height are nearest to `size` in pixels, in that size; releases the held
    /// icon first. Throws "Can't load icon".
    ///@{
    void load(unsigned id, HINSTANCE module, int size);
    void load(const char* name, HINSTANCE module, int size);
    void load(const wchar_t* name, HINSTANCE module, int size);
    ///@}
    /// The same from a file, "program.ico".
    ///@{
    void loadFile(const char* file, int size);
    void loadFile(const wchar_t* file, int size);
    ///@}
    /// In pixels. Throws "Can't get size of icon".
    Size getSize() const;

    /// Destroys an owned icon. Becomes null in any case. Throws "Can't destroy icon".
    void close();

private:
    template <class Ch> void loadSized(const Ch* name, HINSTANCE module, int size, UINT flags);
};
} // namespace tarn
