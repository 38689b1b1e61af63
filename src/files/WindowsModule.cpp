#include <tarn/WindowsModule.h>

#include <tarn/LocalMemory.h>

#include "../foundation/Check.h"
#include "../foundation/Closing.h"
#include "../foundation/Hex.h"
#include "../foundation/Quoted.h"
#include "ModuleApi.h"

#include <utility>

namespace tarn {
namespace {
template <class Ch> HMODULE loadModule(const Ch* name)
{
    return ensure(loadLibrary(name), [&] { return "Can't load library " + quoted(name); });
}

template <class Ch> HMODULE loadModule(const Ch* name, unsigned long flags)
{
    return ensure(loadLibraryEx(name, flags),
                  [&] { return "Can't load library " + quoted(name) + " with flags 0x" + toHex(flags); });
}

template <class Ch> HMODULE queryModule(const Ch* name)
{
    return ensure(getModuleHandle(name), [&] { return "Can't get module handle for " + quoted(name); });
}

// A copy of a name that may lie in the module that is closed before the name is used. Null stays null.
template <class Ch> class KeptName {
public:
    explicit KeptName(const Ch* name) : text_(name), isNull_(!name) {}
    const Ch* get() const { return isNull_ ? nullptr : text_.c_str(); }

private:
    BasicString<Ch> text_;
    bool isNull_;
};

// What was held is closed first.
template <class Ch> void replace(WindowsModule& module, const Ch* name, WindowsModule::Access access)
{
    const KeptName kept(name);
    module.close();
    module = WindowsModule(kept.get(), access);
}

// The system tells that a buffer was too small only by filling it.
template <class Ch> BasicString<Ch> fileNameOf(HMODULE module)
{
    BasicString<Ch> name;
    for (DWORD capacity = MAX_PATH;; capacity *= 2) {
        name.resize(capacity);
        const DWORD length =
            ensure(getModuleFileName(module, name.data(), capacity), "Error in retrieving module file name");
        if (length < capacity) {
            name.resize(length);
            return name;
        }
    }
}

// Resources and procedures may be named by a number in place of the pointer.
std::string nameOrNumber(const char* name)
{
    return IS_INTRESOURCE(name) ? std::to_string(reinterpret_cast<ULONG_PTR>(name)) : std::string(name);
}

template <class Ch> BasicString<Ch> messageOf(HMODULE module, unsigned long id, unsigned long language)
{
    constexpr DWORD flags =
        FORMAT_MESSAGE_ALLOCATE_BUFFER | FORMAT_MESSAGE_IGNORE_INSERTS | FORMAT_MESSAGE_FROM_HMODULE;
    Ch* text = nullptr;
    const DWORD length = ensure(formatMessage(flags, module, id, language, &text), [&] {
        return "Can't format message id " + toHex(id) + " with languag " + toHex(language);
    });
    const LocalMemory owner(text, false);
    return BasicString<Ch>(text, length);
}
} // namespace

WindowsModule::WindowsModule(const char* name, Access access) : owns_(access.load_)
{
    module_ = access.withFlags_ ? loadModule(name, access.flags_) : access.load_ ? loadModule(name) : queryModule(name);
}
WindowsModule::WindowsModule(const wchar_t* name, Access access) : owns_(access.load_)
{
    module_ = access.withFlags_ ? loadModule(name, access.flags_) : access.load_ ? loadModule(name) : queryModule(name);
}
WindowsModule::WindowsModule(WindowsModule&& other) noexcept : owns_(other.owns_) { module_ = other.detach(); }
WindowsModule& WindowsModule::operator=(WindowsModule&& other) noexcept
{
    if (this != &other) {
        closeQuietly([this] { close(); });
        owns_ = other.owns_;
        module_ = other.detach();
    }
    return *this;
}
WindowsModule::~WindowsModule() noexcept(false)
{
    closeAtEnd([this] { close(); });
}

void WindowsModule::load(const char* name) { replace(*this, name, true); }
void WindowsModule::load(const wchar_t* name) { replace(*this, name, true); }
void WindowsModule::load(const char* name, unsigned long flags) { replace(*this, name, flags); }
void WindowsModule::load(const wchar_t* name, unsigned long flags) { replace(*this, name, flags); }
void WindowsModule::query(const char* name) { replace(*this, name, false); }
void WindowsModule::query(const wchar_t* name) { replace(*this, name, false); }

void WindowsModule::close()
{
    if (module_ && owns_) {
        ensure(FreeLibrary(module_), "Can't free library");
        owns_ = false;
    }
    module_ = nullptr;
}

HINSTANCE WindowsModule::detach() noexcept
{
    owns_ = false;
    return std::exchange(module_, nullptr);
}

void WindowsModule::disableThreadCalls()
{
    ensure(DisableThreadLibraryCalls(module_), "Can't disable thread calls for library");
}

FARPROC WindowsModule::getProcAddress(const char* name, bool mayBeMissing) const
{
    const FARPROC address = GetProcAddress(module_, name);
    if (!address && mayBeMissing && GetLastError() == ERROR_PROC_NOT_FOUND)
        return nullptr;
    return ensure(address, [&] { return "Can't get proc address for \"" + nameOrNumber(name) + '"'; });
}

BasicString<char> WindowsModule::getFilenameA() const { return fileNameOf<char>(module_); }
BasicString<wchar_t> WindowsModule::getFilenameW() const { return fileNameOf<wchar_t>(module_); }

HRSRC WindowsModule::findResource(const char* type, int id) const
{
    const auto failure = [&] {
        return "Unable to find resource with type " + nameOrNumber(type) + " and id " + std::to_string(id);
    };
    if (id < 0 || id > 0xFFFF) // The platform would look for the lower 16 bits.
        throwWindowsError(ERROR_INVALID_PARAMETER, failure().c_str());
    return ensure(FindResourceA(module_, MAKEINTRESOURCEA(id), "BINARY"), failure);
}

void* WindowsModule::getResourcePointer(HRSRC resource) const
{
    return ensure(LockResource(ensure(LoadResource(module_, resource), "Can't load resource")), "Can't lock resource");
}

unsigned int WindowsModule::getResourceSize(HRSRC resource) const
{
    return ensure(SizeofResource(module_, resource), "Can't retrieve resource size");
}

BasicString<char> WindowsModule::getMessageA(unsigned long id, unsigned long language) const
{
    return messageOf<char>(module_, id, language);
}
BasicString<wchar_t> WindowsModule::getMessageW(unsigned long id, unsigned long language) const
{
    return messageOf<wchar_t>(module_, id, language);
}
} // namespace tarn
