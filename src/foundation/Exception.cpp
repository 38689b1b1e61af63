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

CRTError::CRTError(int error, const std::string& description)
    : std::runtime_error(textWithReason(description, std::strerror(error))), error_(error)
{
}
CRTError::CRTError(const std::string& description, int error) : CRTError(error, description) {}
CRTError::CRTError(const CRTError&) noexcept = default;
CRTError& CRTError::operator=(const CRTError&) noexcept = default;
CRTError::~CRTError() = default;
BasicString<wchar_t> CRTError::whatW() const
{
    // A derived class may have a text of its own, with nothing behind its zero.
    return what() == std::runtime_error::what() ? wholeOfKept(what()) : a2w(what(), CP_ACP);
}
} // namespace tarn
