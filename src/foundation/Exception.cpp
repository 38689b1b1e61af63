#include <tarn/Exception.h>

#include "Description.h"

#include <cstring>

namespace tarn {
// Behind each text stands a zero of its own, so that who has the text alone can look whether more follows.
Exception::Exception() : Exception("Unknown Exception") {}
Exception::Exception(const std::string& description) : description_(description + '\0') {}
Exception::Exception(const Exception&) = default;
Exception& Exception::operator=(const Exception&) = default;
Exception::~Exception() = default;
const char* Exception::what() const noexcept { return description_.c_str(); }
BasicString<wchar_t> Exception::whatW() const { return wholeOf(what(), tailOf(description_)); }
void Exception::setDescription(const char* text) { description_ = std::string(text) + '\0'; }

EndOfFile::EndOfFile(const std::string& message) : std::runtime_error(message + '\0') {}
EndOfFile::EndOfFile(const EndOfFile&) noexcept = default;
EndOfFile& EndOfFile::operator=(const EndOfFile&) noexcept = default;
EndOfFile::~EndOfFile() = default;

BadAllocation::BadAllocation() noexcept = default;
BadAllocation::BadAllocation(const BadAllocation&) noexcept = default;
BadAllocation& BadAllocation::operator=(const BadAllocation&) noexcept = default;
BadAllocation::~BadAllocation() = default;
const char* BadAllocation::what() const noexcept { return "bad allocation"; }

namespace {
// Behind the text stands a zero in any case, so that a tail can be looked for.
std::string textOf(const char* description, int error, const std::string& tail)
{
    return description + (": " + (std::strerror(error) + tail)) + '\0';
}
} // namespace

CRTError::CRTError(int error, const std::string& description)
    : std::runtime_error(textOf(description.c_str(), error, tailOf(description))), error_(error)
{
}
CRTError::CRTError(const std::string& description, int error) : CRTError(error, description) {}
CRTError::CRTError(const CRTError&) noexcept = default;
CRTError& CRTError::operator=(const CRTError&) noexcept = default;
CRTError::~CRTError() = default;
BasicString<wchar_t> CRTError::whatW() const
{
    const char* const own = std::runtime_error::what();
    const std::string text = what(); // Of a derived class, perhaps, with nothing behind its zero.
    const std::string tail = what() == own ? tailOf(text + '\0' + (own + text.size() + 1)) : std::string();
    if (tail.empty())
        return a2w(text, CP_ACP);
    const std::string reason = std::string(": ") + std::strerror(error_);
    return wholeOf("", tail) + a2w(reason, CP_ACP);
}
} // namespace tarn
