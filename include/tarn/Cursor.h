#pragma once

#include <tarn/Export.h>
#include <tarn/OwnedHandle.h>
#include <tarn/Windows.h>

namespace tarn {
/// A mouse pointer, loaded from a module and owned, or a handle that is owned only when told so. Follows the
/// rule of OwnedHandle: copy construction moves, assignment of a variable makes a second owner.
///
/// The pointer that is being shown must not be destroyed: set another one first. Failures throw
/// WindowsError, also out of the destructor.
class TARN_API Cursor : public OwnedHandle<HCURSOR> {
public:
    Cursor() noexcept = default;
    /// Borrows the handle, or with `owns` takes it over.
    Cursor(HCURSOR handle, bool owns) noexcept : OwnedHandle(handle, owns) {}
    /// Load as load() does; a null module has the system's pointers (`IDC_ARROW` is a wide name).
    ///@{
    Cursor(int id, HINSTANCE module) { load(id, module); }
    Cursor(const char* name, HINSTANCE module) { load(name, module); }
    Cursor(const wchar_t* name, HINSTANCE module) { load(name, module); }
    ///@}
    /// As those of OwnedHandle.
    ///@{
    Cursor(Cursor& other) noexcept = default;
    Cursor(Cursor&& other) noexcept = default;
    Cursor& operator=(const Cursor&) noexcept = default;
    Cursor& operator=(Cursor&& other) noexcept;
    ///@}
    ~Cursor() noexcept(false);

    /// Null for none. Lent, not given.
    operator HCURSOR() const noexcept { return getHandle(); }

    /// Releases the held pointer first, as close() does. Of `id` the low 16 bits count.
    /// Throws "Can't load cursor".
    ///@{
    void load(int id, HINSTANCE module);
    void load(const char* name, HINSTANCE module);
    void load(const wchar_t* name, HINSTANCE module);
    ///@}

    /// Destroys an owned pointer. Becomes null in any case. Throws "Can't destroy cursor".
    void close();
};
} // namespace tarn
