#include "InheritedHandles.h"

#include "../foundation/Check.h"

#include <algorithm>

namespace tarn {
namespace {
constexpr const char* failedList = "Can't list the handles for a child process";

// Until Windows 8 the handles of a console are numbers of its own. A child that shares the console has them anyway,
// and a list with one is refused.
bool isOfOldConsole(void* handle) { return (reinterpret_cast<ULONG_PTR>(handle) & 3) == 3; }
} // namespace

InheritedHandles::~InheritedHandles()
{
    if (attributes_)
        DeleteProcThreadAttributeList(attributes_);
}

void InheritedHandles::add(void* handle)
{
    // The platform refuses a list that names a handle twice.
    if (!isOfOldConsole(handle) && std::find(listed_.begin(), listed_.end(), handle) == listed_.end())
        listed_.push_back(handle);
}

void* InheritedHandles::addCopy(void* handle)
{
    if (!handle || handle == INVALID_HANDLE_VALUE)
        return nullptr;
    const HANDLE self = GetCurrentProcess();
    HANDLE copy = nullptr;
    ensure(DuplicateHandle(self, handle, self, &copy, 0, TRUE, DUPLICATE_SAME_ACCESS),
           "Can't pass a handle on to a child process");
    copies_.push_back(FreshHandle(copy));
    add(copy);
    return copy;
}

void InheritedHandles::closeCopies()
{
    for (FreshHandle& copy : copies_)
        closeNow(copy, "Can't close the copy of a child's handle");
}

LPPROC_THREAD_ATTRIBUTE_LIST InheritedHandles::getAttributes()
{
    if (listed_.empty() || attributes_)
        return attributes_;
    SIZE_T size = 0;
    InitializeProcThreadAttributeList(nullptr, 1, 0, &size); // Fails, and tells the size.
    memory_.resize(size / sizeof(void*) + 1);
    const auto list = reinterpret_cast<LPPROC_THREAD_ATTRIBUTE_LIST>(memory_.data());
    ensure(InitializeProcThreadAttributeList(list, 1, 0, &size), failedList);
    attributes_ = list;
    ensure(UpdateProcThreadAttribute(list, 0, PROC_THREAD_ATTRIBUTE_HANDLE_LIST, listed_.data(),
                                     listed_.size() * sizeof(void*), nullptr, nullptr),
           failedList);
    return attributes_;
}
} // namespace tarn
