#include <tarn/AcceleratorTable.h>

#include "../foundation/Check.h"
#include "../foundation/Closing.h"

namespace tarn {
AcceleratorTable::AcceleratorTable(unsigned short resource, HINSTANCE module)
    : OwnedHandle(ensure(LoadAcceleratorsW(module, MAKEINTRESOURCEW(resource)), "Can't load accelerators"), false)
{
}

AcceleratorTable::AcceleratorTable(const std::vector<ACCEL>& keys)
    : OwnedHandle(ensureGDI(
                      [&] {
                          std::vector<ACCEL> copy(keys); // The call takes no constant one.
                          return CreateAcceleratorTableW(copy.data(), static_cast<int>(copy.size()));
                      },
                      "Can't create accelerators"),
                  true)
{
}

AcceleratorTable& AcceleratorTable::operator=(AcceleratorTable&& other) noexcept
{
    AcceleratorTable taken(std::move(other)); // First, because it may be this object.
    closeQuietly([this] { close(); });
    setHandle(taken.getHandle(), taken.isOwner());
    taken.detach();
    return *this;
}

AcceleratorTable::~AcceleratorTable() noexcept(false)
{
    closeAtEnd([this] { close(); });
}

void AcceleratorTable::close()
{
    if (const HACCEL table = takeOwned())
        ensureGDI([=] { return DestroyAcceleratorTable(table); }, "Can't destroy accelerators");
}
} // namespace tarn
