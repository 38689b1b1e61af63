// What streams ask of the platform, answered by the host.

#include <tarn/ErrorTrace.h>

#include "foundation/Description.h"
#include "streams/Platform.h"

#include <sys/resource.h>

#include <algorithm>
#include <cstdint>

namespace tarn {
bool stackHasRoom() noexcept
{
    // The main thread's stack grows from here to its limit.
    static const auto start = reinterpret_cast<std::uintptr_t>(__builtin_frame_address(0));
    static const std::uintptr_t size = [] {
        rlimit limit{};
        getrlimit(RLIMIT_STACK, &limit);
        return std::min<std::uintptr_t>(limit.rlim_cur, 8 << 20);
    }();
    return start - reinterpret_cast<std::uintptr_t>(__builtin_frame_address(0)) + (256 << 10) < size;
}

// Every name fits the host's texts.
std::string tailOf(const std::string&) { return {}; }
BasicString<wchar_t> wholeOf(const char* narrow, const std::string&) { return a2w(narrow, CP_ACP); }
std::string textWithReason(const std::string& description, const char* reason) { return description + ": " + reason; }
BasicString<wchar_t> wholeOfKept(const char* text) { return a2w(text, CP_ACP); }

bool growsInPlace(void*, std::size_t) noexcept { return true; } // Where it can; nobody measures it.

bool liesInLibrary(const void*) noexcept { return false; }

// Nobody asks for traces.
bool ErrorTrace::isEnabled() noexcept { return false; }
ErrorTrace::ErrorTrace(const void*) noexcept {}
ErrorTrace::~ErrorTrace() = default;
} // namespace tarn
