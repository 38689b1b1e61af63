#pragma once

#include <catch2/catch.hpp>

#include <tarn/Exception.h>

#include <string>
#include <typeinfo>

namespace support {
/// The system's own text for an error code, without its line break; empty when it has none.
std::string systemText(unsigned long code);

/// What `call` throws, which must be exactly an E.
template <class E, class Call> E thrownBy(Call call)
{
    try {
        call();
    } catch (const E& e) {
        CHECK(std::string(typeid(e).name()) == typeid(E).name());
        return e;
    }
    FAIL("nothing was thrown");
    throw 0; // Not reached.
}

/// Asserts that `call` throws an E (exactly) with this text.
template <class E, class Call> void expectError(Call call, const std::string& text)
{
    CHECK(std::string(thrownBy<E>(call).what()) == text);
}

/// Asserts that `call` throws a WindowsError with this code and description, and the text that they give.
template <class Call> void expectWindowsError(Call call, unsigned long code, const std::string& description)
{
    const auto error = thrownBy<tarn::WindowsError>(call);
    CHECK(error.getError() == code);
    CHECK(std::string(error.getDescription()) == description);
    const std::string separator = description.empty() ? "" : ": ";
    CHECK(std::string(error.what()) == description + separator + systemText(code));
}

/// The same without the code, where that is the platform's own affair.
template <class Call> void expectWindowsError(Call call, const std::string& description)
{
    CHECK(std::string(thrownBy<tarn::WindowsError>(call).getDescription()) == description);
}
} // namespace support
