#include <tarn/Exception.h>

#include <tarn/Windows.h>

#include "Description.h"
#include "Hex.h"
#include "LastErrorKept.h"

#include <memory>
#include <optional>
#include <type_traits>

namespace tarn {
WindowsError::WindowsError(unsigned long error, const std::string& description)
    : std::runtime_error(description), error_(error), message_(tailOf(description))
{
}
WindowsError::WindowsError(const std::string& description) : WindowsError(GetLastError(), description) {}
WindowsError::WindowsError(const WindowsError&) = default;
WindowsError& WindowsError::operator=(const WindowsError&) = default;
WindowsError::~WindowsError() = default;

const char* WindowsError::what() const noexcept
{
    try {
        if (!hasMessage_) {
            const std::string message = getMessage();
            // The tail of the description stays behind the text.
            message_.insert(0, *getDescription() ? getDescription() + (": " + message) : message);
            hasMessage_ = true;
        }
    } catch (...) { // No memory for the text: the description is there already.
        return getDescription();
    }
    return *message_.c_str() ? message_.c_str() : getDescription();
}

namespace {
struct FreeText {
    void operator()(void* text) const { LocalFree(text); }
};

struct UnloadModule {
    void operator()(HMODULE module) const { FreeLibrary(module); }
};

void formatMessage(DWORD flags, HMODULE module, DWORD error, DWORD language, char** text)
{
    FormatMessageA(flags, module, error, language, reinterpret_cast<char*>(text), 0, nullptr);
}
void formatMessage(DWORD flags, HMODULE module, DWORD error, DWORD language, wchar_t** text)
{
    FormatMessageW(flags, module, error, language, reinterpret_cast<wchar_t*>(text), 0, nullptr);
}

template <class Ch> std::optional<BasicString<Ch>> formatted(DWORD flags, HMODULE module, DWORD error, DWORD language)
{
    Ch* text = nullptr;
    formatMessage(FORMAT_MESSAGE_ALLOCATE_BUFFER | flags, module, error, language, &text);
    const std::unique_ptr<Ch, FreeText> owner(text);
    return text ? std::optional<BasicString<Ch>>(text) : std::nullopt;
}

constexpr unsigned long firstNetworkError = 2100;
constexpr unsigned long endOfNetworkErrors = 3000;

// The text as its source has it, or none.
template <class Ch> std::optional<BasicString<Ch>> messageOf(DWORD error)
{
    if (error < firstNetworkError || error >= endOfNetworkErrors) {
        const auto text =
            formatted<Ch>(FORMAT_MESSAGE_FROM_SYSTEM, nullptr, error, MAKELANGID(LANG_NEUTRAL, SUBLANG_DEFAULT));
        return text ? std::optional(text->trimRight()) : std::nullopt;
    }
    const std::unique_ptr<std::remove_pointer_t<HMODULE>, UnloadModule> module(LoadLibraryA("netmsg.dll"));
    if (!module)
        return std::nullopt;
    return formatted<Ch>(FORMAT_MESSAGE_IGNORE_INSERTS | FORMAT_MESSAGE_FROM_HMODULE, module.get(), error, 0);
}
} // namespace

std::string WindowsError::getMessage() const
{
    const LastErrorKept kept;
    try {
        if (const auto message = messageOf<char>(error_))
            return *message;
    } catch (...) { // No memory for the text, which is no reason for another error.
    }
    return "Windows error 0x" + toHex(error_);
}

BasicString<wchar_t> WindowsError::whatW() const
{
    const LastErrorKept kept;
    const BasicString<wchar_t> description = wholeOf(getDescription(), tailOf(message_));
    const std::string narrow = getMessage();
    // A derived class may have a message of its own, which is narrow.
    auto message = messageOf<wchar_t>(error_);
    if (!message || BasicString<char>(*message) != narrow)
        message = a2w(narrow, CP_ACP);
    return description.empty() ? *message : description + L": " + *message;
}

long WindowsError::getHRESULT() const
{
    const auto code = static_cast<long>(error_);
    return code < 1 ? code : static_cast<long>((error_ & 0xFFFF) | 0x80070000);
}

namespace {
// The text of an error that keeps it as CRTError does; none when this is not one.
template <class E> std::optional<BasicString<wchar_t>> wholeFrom(const std::exception& error)
{
    const auto* const own = dynamic_cast<const E*>(&error);
    if (!own || own->what() != own->std::runtime_error::what())
        return std::nullopt;
    return wholeOfKept(own->what());
}
} // namespace

BasicString<wchar_t> whatW(const std::exception& error)
{
    if (const auto* own = dynamic_cast<const WindowsError*>(&error))
        return own->whatW();
    if (const auto* own = dynamic_cast<const SEHError*>(&error))
        return own->whatW();
    if (const auto* own = dynamic_cast<const Exception*>(&error))
        return own->whatW();
    if (const auto text = wholeFrom<CRTError>(error))
        return *text;
    if (const auto text = wholeFrom<COMError>(error))
        return *text;
    if (const auto text = wholeFrom<EndOfFile>(error))
        return *text;
    if (const auto text = wholeFrom<CommonDialogError>(error))
        return *text;
    return a2w(error.what(), CP_ACP);
}

BasicString<char> whatUTF8(const std::exception& error) { return w2a(whatW(error), CP_UTF8); }
} // namespace tarn
