#pragma once

#include <new>

namespace tarn {
/// A lenient clone of a calendar, for trying values on.
template <class C> class WorkingCopy {
public:
    explicit WorkingCopy(const C& original) : copy_(static_cast<C*>(original.Clone())) { copy_->setLenient(true); }
    WorkingCopy(const WorkingCopy&) = delete;
    WorkingCopy& operator=(const WorkingCopy&) = delete;
    // The clone's own class is not known here and there is no virtual destructor. Calendars own nothing,
    // so that giving back the whole object's memory is all there is to do.
    ~WorkingCopy() { ::operator delete(dynamic_cast<void*>(copy_)); }

    C* operator->() const { return copy_; }

private:
    C* copy_;
};
} // namespace tarn
