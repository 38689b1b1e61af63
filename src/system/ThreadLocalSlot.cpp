#include "ThreadLocalSlot.h"

#include "../foundation/Check.h"

namespace tarn {
ThreadLocalSlot::~ThreadLocalSlot()
{
    if (index_ != TLS_OUT_OF_INDEXES)
        TlsFree(index_);
}

void ThreadLocalSlot::allocate()
{
    const AutoLock lock(section_);
    if (index_ != TLS_OUT_OF_INDEXES) {
        ensure(TlsFree(index_), "Can't free TLS index");
        index_ = TLS_OUT_OF_INDEXES;
    }
    index_ = ensureNot(TLS_OUT_OF_INDEXES, TlsAlloc(), "Can't allocate TLS index");
}

void ThreadLocalSlot::set(void* value)
{
    const AutoLock lock(section_);
    ensure(TlsSetValue(index_, value), "Can't set TLS value");
}

void* ThreadLocalSlot::get()
{
    const AutoLock lock(section_);
    return ensureCleared([&] { return TlsGetValue(index_); }, "Can't get TLS value");
}
} // namespace tarn
