#include <tarn/RegistryWatch.h>

#include "../foundation/Check.h"

namespace tarn {
RegistryWatch::RegistryWatch(const RegistryKey& key, bool recursive) : key_(key, L"", KEY_NOTIFY), recursive_(recursive)
{
    begin();
}

void RegistryWatch::begin()
{
    ensureCode(
        RegNotifyChangeKeyValue(key_.getKey(), recursive_,
                                REG_NOTIFY_CHANGE_NAME | REG_NOTIFY_CHANGE_ATTRIBUTES | REG_NOTIFY_CHANGE_LAST_SET,
                                changed_.getHandle(), TRUE),
        "Can't watch registry key");
}

bool RegistryWatch::waitForChange(unsigned timeoutMs)
{
    if (changed_.wait(timeoutMs) == WindowsHandle::timeout)
        return false;
    begin();
    return true;
}
} // namespace tarn
