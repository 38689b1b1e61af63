#include <tarn/WindowClass.h>

#include <tarn/Window.h>

#include "../foundation/Check.h"
#include "../foundation/Closing.h"

#include <atomic>
#include <locale>
#include <sstream>

namespace tarn {
std::map<BasicString<wchar_t>, std::shared_ptr<WindowClass::Data>> WindowClass::Map;
tarn::CriticalSection WindowClass::CriticalSection;

namespace {
std::atomic<unsigned> abandonedClasses; // Of the entries in the map, those without a user.

HBRUSH brushOf(unsigned int colourIndex) { return reinterpret_cast<HBRUSH>(static_cast<ULONG_PTR>(colourIndex) + 1); }

// Equal attributes give equal names, different ones different names.
BasicString<wchar_t> nameOf(unsigned int style, int menu, HICON icon, HBRUSH brush, HCURSOR cursor, HINSTANCE instance)
{
    const auto number = [](const void* handle) { return reinterpret_cast<ULONG_PTR>(handle); };
    std::wostringstream name;
    name.imbue(std::locale::classic()); // Whatever the program's locale, now and later.
    name << "Tarn++ WindowClass: Style=" << std::hex << style << ", Icon=" << number(icon)
         << ", Brush=" << number(brush) << ", Cursor=" << number(cursor) << ", Menu=" << menu
         << ", Instance=" << number(instance);
    return name.str();
}

ATOM registerClass(const wchar_t* name, unsigned int style, int menu, HICON icon, HBRUSH brush, HCURSOR cursor,
                   HINSTANCE instance)
{
    WNDCLASSW attributes{};
    attributes.style = style;
    attributes.lpfnWndProc = &Window::windowProc;
    attributes.hInstance = instance;
    attributes.hIcon = icon;
    attributes.hCursor = cursor;
    attributes.hbrBackground = brush;
    attributes.lpszMenuName = MAKEINTRESOURCEW(menu);
    attributes.lpszClassName = name;
    return ensure(RegisterClassW(&attributes), "Can't create window class");
}
} // namespace

WindowClass::WindowClass(unsigned int style, int menu, HICON icon, HBRUSH brush, HCURSOR cursor, HINSTANCE instance)
{
    create(style, menu, icon, brush, cursor, instance);
}

WindowClass::WindowClass(unsigned int style, int menu, HICON icon, unsigned int colourIndex, HCURSOR cursor,
                         HINSTANCE instance)
{
    create(style, menu, icon, colourIndex, cursor, instance);
}

WindowClass::WindowClass(const wchar_t* name, unsigned int style, int menu, HICON icon, HBRUSH brush, HCURSOR cursor,
                         HINSTANCE instance)
{
    create(name, style, menu, icon, brush, cursor, instance);
}

WindowClass::WindowClass(const wchar_t* name, unsigned int style, int menu, HICON icon, unsigned int colourIndex,
                         HCURSOR cursor, HINSTANCE instance)
{
    create(name, style, menu, icon, colourIndex, cursor, instance);
}

WindowClass::~WindowClass() noexcept(false)
{
    closeAtEnd([this] { closeOrAbandon(); });
}

WindowClass& WindowClass::operator=(WindowClass&& other) noexcept
{
    WindowClass taken(std::move(other)); // First, because it may be this object.
    closeQuietly([this] { closeOrAbandon(); });
    data_ = std::move(taken.data_);
    return *this;
}

void WindowClass::create(unsigned int style, int menu, HICON icon, HBRUSH brush, HCURSOR cursor, HINSTANCE instance)
{
    create(nullptr, style, menu, icon, brush, cursor, instance);
}

void WindowClass::create(const wchar_t* name, unsigned int style, int menu, HICON icon, HBRUSH brush, HCURSOR cursor,
                         HINSTANCE instance)
{
    close();
    BasicString<wchar_t> key = nameOf(style, menu, icon, brush, cursor, instance);
    if (name)
        key += BasicString<wchar_t>(L", Name=") + name;
    const AutoLock lock(CriticalSection);
    const auto found = Map.find(key);
    if (found != Map.end()) {
        if (found->second->count++ == 0)
            --abandonedClasses;
        data_ = found->second;
        return;
    }
    // The entry first, so that nothing can fail once the class is registered.
    const auto entry = Map.emplace(key, std::make_shared<Data>(Data{instance, 0, 1})).first;
    try {
        entry->second->atom = registerClass(name ? name : key.c_str(), style, menu, icon, brush, cursor, instance);
    } catch (...) {
        Map.erase(entry);
        throw;
    }
    data_ = entry->second;
}

void WindowClass::create(unsigned int style, int menu, HICON icon, unsigned int colourIndex, HCURSOR cursor,
                         HINSTANCE instance)
{
    create(style, menu, icon, brushOf(colourIndex), cursor, instance);
}

void WindowClass::create(const wchar_t* name, unsigned int style, int menu, HICON icon, unsigned int colourIndex,
                         HCURSOR cursor, HINSTANCE instance)
{
    create(name, style, menu, icon, brushOf(colourIndex), cursor, instance);
}

void WindowClass::close()
{
    const AutoLock lock(CriticalSection);
    if (data_ && data_->count > 1) {
        --data_->count;
    } else if (data_ && data_->count == 1) { // Not 0: then a copy has ended the registration before.
        ensure(UnregisterClassW(MAKEINTRESOURCEW(data_->atom), data_->instance), "Can't unregister window class");
        data_->count = 0;
        std::erase_if(Map, [&](const auto& entry) { return entry.second == data_; });
    }
    data_.reset();
}

void WindowClass::closeOrAbandon()
{
    try {
        close();
    } catch (...) {
        abandon();
        throw;
    }
}

// Windows are still open, as they are when a class is a member of its window's object. The registration waits
// for the last of them, or for somebody who wants the same class.
void WindowClass::abandon()
{
    const AutoLock lock(CriticalSection);
    if (!data_ || data_->count != 1)
        return;
    data_->count = 0;
    ++abandonedClasses;
}

void WindowClass::unregisterAbandoned() noexcept
{
    if (!abandonedClasses)
        return;
    try {
        const AutoLock lock(CriticalSection);
        abandonedClasses -= static_cast<unsigned>(std::erase_if(Map, [](const auto& entry) {
            const Data& data = *entry.second;
            return data.count == 0 && UnregisterClassW(MAKEINTRESOURCEW(data.atom), data.instance);
        }));
    } catch (const std::exception&) { // There will be another turn.
    }
}

ATOM WindowClass::getAtom() const
{
    const AutoLock lock(CriticalSection);
    return data_ && data_->count ? data_->atom : ATOM{0};
}
} // namespace tarn
