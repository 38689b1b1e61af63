#pragma once

#include "FreshHandle.h"

#include <vector>

namespace tarn {
/// The handles that one child inherits, and no other.
class InheritedHandles {
public:
    InheritedHandles() = default;
    InheritedHandles(const InheritedHandles&) = delete;
    InheritedHandles& operator=(const InheritedHandles&) = delete;
    ~InheritedHandles();

    /// Lists a handle that is inheritable itself.
    void add(void* handle);
    /// Lists an inheritable copy and gives it; null for no handle. Throws "Can't pass a handle on to a child process".
    void* addCopy(void* handle);
    /// To be called when the child has its own. Throws "Can't close the copy of a child's handle".
    void closeCopies();
    /// For the extended start-up record; null when nothing is listed. Valid as long as this object. Throws "Can't list
    /// the handles for a child process".
    LPPROC_THREAD_ATTRIBUTE_LIST getAttributes();

private:
    std::vector<FreshHandle> copies_;
    std::vector<void*> listed_;
    std::vector<void*> memory_; // Of the attributes: aligned for pointers.
    LPPROC_THREAD_ATTRIBUTE_LIST attributes_ = nullptr;
};
} // namespace tarn
