#pragma once

#include <tarn/Lock.h>
#include <tarn/Windows.h>

namespace tarn {
/// One pointer per thread. Holds no index until allocate(); failures throw WindowsError.
class ThreadLocalSlot {
public:
    ThreadLocalSlot() = default;
    ThreadLocalSlot(const ThreadLocalSlot&) = delete;
    ThreadLocalSlot& operator=(const ThreadLocalSlot&) = delete;
    ~ThreadLocalSlot();

    /// Frees the index held before. Throws "Can't free TLS index", "Can't allocate TLS index".
    void allocate();
    void set(void* value); ///< Throws "Can't set TLS value".
    void* get();           ///< Null in a thread that set nothing. Throws "Can't get TLS value".

private:
    DWORD index_ = TLS_OUT_OF_INDEXES;
    CriticalSection section_;
};
} // namespace tarn
