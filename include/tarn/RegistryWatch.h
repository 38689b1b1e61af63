#pragma once

#include <tarn/Event.h>
#include <tarn/Export.h>
#include <tarn/RegistryKey.h>

namespace tarn {
/// Tells that something has changed in a key, from its construction on: values, subkeys, attributes. What it was, the
/// platform does not say: read anew.
///
///     RegistryWatch watch(RegistryKey(HKEY_CURRENT_USER, L"Software\\Example", KEY_READ));
///     while (watch.waitForChange(INFINITE))
///         readSettings();
///
/// It may say so once too often, when the thread that called it last has ended. One thread at a time uses an object.
/// Throws WindowsError "Can't watch registry key", when the key has been deleted, for instance.
class TARN_API RegistryWatch {
public:
    /// With `recursive` also in the keys below. The key is opened a second time, whatever access it was opened for, and
    /// may be closed then. Throws also as RegistryKey does.
    explicit RegistryWatch(const RegistryKey& key, bool recursive = true);

    /// True when something has changed since the last time, false when the time is up. What changes from now on is told
    /// by the next call, so that reading after a true misses nothing. Throws as wait() does, too.
    bool waitForChange(unsigned timeoutMs);
    /// Signaled when waitForChange(0) would be true, to wait for it with other handles. Lent.
    void* getEvent() const { return changed_.getHandle(); }

private:
    void begin();

    RegistryKey key_;
    Event changed_{false, false};
    bool recursive_;
};
} // namespace tarn
