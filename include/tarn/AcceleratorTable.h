#pragma once

#include <tarn/Export.h>
#include <tarn/OwnedHandle.h>
#include <tarn/Windows.h>

#include <vector>

namespace tarn {
/// Keys that stand for commands, from a module's resources or made here: give it to MessageLoop::addAccelerators() or
/// handleAccelerator(). A table that was made is destroyed at the end, one that was loaded goes with its module. Can be
/// moved and not copied.
///
/// Failures throw WindowsError, also out of the destructor.
class TARN_API AcceleratorTable : public OwnedHandle<HACCEL> {
public:
    AcceleratorTable() noexcept = default;
    /// Throws "Can't load accelerators".
    AcceleratorTable(unsigned short resource, HINSTANCE module);
    /// `AcceleratorTable({{FVIRTKEY | FCONTROL, 'S', ID_SAVE}})`. Throws "Can't create accelerators".
    explicit AcceleratorTable(const std::vector<ACCEL>& keys);
    /// The source then has none.
    AcceleratorTable(AcceleratorTable&& other) noexcept = default;
    /// Destroys what was held; of a failure of that the debugger alone hears.
    AcceleratorTable& operator=(AcceleratorTable&& other) noexcept;
    ~AcceleratorTable() noexcept(false);

    /// Null for none. Lent, not given.
    operator HACCEL() const noexcept { return getHandle(); }

    /// Becomes null in any case. Throws "Can't destroy accelerators".
    void close();
};
} // namespace tarn
