#include <catch2/catch.hpp>

#include "Growth.h"
#include "Ratios.h"

#include <tarn/BasicString.h>
#include <tarn/Exception.h>
#include <tarn/Lock.h>

#include <stdexcept>
#include <string>

using bench::keep;
using bench::Ratios;
using String = tarn::BasicString<char>;
using WideString = tarn::BasicString<wchar_t>;

TEST_CASE("locks")
{
    Ratios table("Locks");
    constexpr int rounds = 1000000;
    tarn::CriticalSection section;
    CRITICAL_SECTION raw;
    InitializeCriticalSection(&raw);
    table.row(
        "1,000,000 times AutoLock on a CriticalSection", 1.1,
        [&] {
            for (int i = 0; i < rounds; ++i) {
                const tarn::AutoLock lock(section);
                keep(i);
            }
        },
        [&] {
            for (int i = 0; i < rounds; ++i) {
                EnterCriticalSection(&raw);
                keep(i);
                LeaveCriticalSection(&raw);
            }
        });
    DeleteCriticalSection(&raw);
}

namespace {
std::string rawNarrow(const std::wstring& wide)
{
    const int length = static_cast<int>(wide.size());
    const int size = WideCharToMultiByte(CP_ACP, 0, wide.data(), length, nullptr, 0, nullptr, nullptr);
    std::string result(static_cast<std::size_t>(size), '\0');
    WideCharToMultiByte(CP_ACP, 0, wide.data(), length, result.data(), size, nullptr, nullptr);
    return result;
}

std::wstring rawWide(const std::string& narrow)
{
    const std::size_t length = mbstowcs(nullptr, narrow.c_str(), 0);
    std::wstring result(length, L'\0');
    mbstowcs(result.data(), narrow.c_str(), length);
    return result;
}

std::wstring rawUtf8(const std::string& narrow)
{
    const int size = MultiByteToWideChar(CP_UTF8, 0, narrow.c_str(), -1, nullptr, 0);
    std::wstring result(static_cast<std::size_t>(size), L'\0');
    MultiByteToWideChar(CP_UTF8, 0, narrow.c_str(), -1, result.data(), size);
    result.pop_back();
    return result;
}

template <class Work> auto repeated(int count, Work work)
{
    return [=] {
        for (int i = 0; i < count; ++i)
            keep(work());
    };
}
} // namespace

TEST_CASE("conversions")
{
    Ratios table("Conversions, against the two raw calls into a string of the size they tell");
    for (const unsigned length : {20u, 1000u, 1000000u}) {
        const int count = static_cast<int>(4000000 / length) + 1;
        const std::wstring wide(length, L'x');
        const std::string narrow(length, 'x');
        const std::string characters = std::to_string(length) + " characters";
        table.row(characters + ", wide to narrow", 1.2,
                  repeated(count, [&] { return String(wide.data(), wide.size()); }),
                  repeated(count, [&] { return rawNarrow(wide); }));
        table.row(characters + ", narrow to wide", 1.2, repeated(count, [&] { return WideString(narrow.c_str()); }),
                  repeated(count, [&] { return rawWide(narrow); }));
        table.row(characters + ", UTF-8 to wide", 1.2,
                  repeated(count, [&] { return tarn::a2w(narrow.c_str(), CP_UTF8); }),
                  repeated(count, [&] { return rawUtf8(narrow); }));
    }
}

namespace {
// What a user would write by hand with the standard string.
std::string replacedByHand(const std::string& text, const std::string& from, const std::string& to)
{
    std::string result;
    std::size_t position = 0;
    for (std::size_t found; (found = text.find(from, position)) != std::string::npos; position = found + from.size()) {
        result.append(text, position, found - position);
        result += to;
    }
    return result.append(text, position, std::string::npos);
}

std::string pieceByHand(const std::string& text, char delimiter, int index)
{
    std::size_t position = 0;
    for (; index > 0; --index)
        position = text.find(delimiter, position) + 1;
    return text.substr(position, text.find(delimiter, position) - position);
}

std::string trimmedByHand(const std::string& text)
{
    std::size_t first = 0, end = text.size();
    while (first < end && isspace(static_cast<unsigned char>(text[first])))
        ++first;
    while (end > first && isspace(static_cast<unsigned char>(text[end - 1])))
        --end;
    return text.substr(first, end - first);
}

std::string formattedByHand(const std::string& text, const char* const* arguments)
{
    std::string result;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] != '%' || i + 1 == text.size()) {
            result += text[i];
            continue;
        }
        const char code = text[++i];
        if (code >= '1' && code <= '9') {
            if (arguments[code - '1'])
                result += arguments[code - '1'];
        } else {
            result += '%';
            if (code != '%')
                result += code;
        }
    }
    return result;
}

std::string linesOf(std::size_t size)
{
    std::string text;
    while (text.size() < size)
        text += "key=value %1 and more of it;";
    return text;
}
} // namespace

TEST_CASE("text")
{
    constexpr std::size_t small = 64 * 1024, large = 16 * 1024 * 1024;
    const String text = linesOf(large), piece = linesOf(small);
    const String blank = std::string(large / 2, ' ') + std::string(large / 2, 'x') + " ";
    const String smallBlank = std::string(small / 2, ' ') + std::string(small / 2, 'x') + " ";
    const char* const arguments[9] = {"argument"};
    const int last = static_cast<int>(text.size() / 28) - 1, smallLast = static_cast<int>(piece.size() / 28) - 1;
    {
        Ratios table("16 MB of text, against a loop over the standard string");
        table.row(
            "replaceAll", 1.0, [&] { keep(text.replaceAll("value", "x")); },
            [&] { keep(replacedByHand(text, "value", "x")); });
        table.row(
            "substring, the last piece", 1.0, [&] { keep(text.substring(";", last)); },
            [&] { keep(pieceByHand(text, ';', last)); });
        table.row(
            "trim", 1.0, [&] { keep(blank.trim()); }, [&] { keep(trimmedByHand(blank)); });
        table.row(
            "format", 1.0, [&] { keep(text.format("argument")); }, [&] { keep(formattedByHand(text, arguments)); });
    }
    Ratios table("Linearity: 16 MB at once, against 256 times 64 KB");
    const int times = static_cast<int>(large / small);
    table.row(
        "replaceAll", 1.5, [&] { keep(text.replaceAll("value", "x")); },
        repeated(times, [&] { return piece.replaceAll("value", "x"); }));
    table.row(
        "substring, the last piece", 1.5, [&] { keep(text.substring(";", last)); },
        repeated(times, [&] { return piece.substring(";", smallLast); }));
    table.row(
        "trim", 1.5, [&] { keep(blank.trim()); }, repeated(times, [&] { return smallBlank.trim(); }));
    table.row(
        "format", 1.5, [&] { keep(text.format("argument")); },
        repeated(times, [&] { return piece.format("argument"); }));
    table.row(
        "for comparison: a copy of the standard string", 1.5, [&] { keep(std::string(text)); },
        repeated(times, [&] { return std::string(piece); }));
}

namespace {
template <class Error, class... Arguments> int thrownAndCaught(Arguments... arguments)
{
    try {
        throw Error(arguments...);
    } catch (const std::exception&) {
        return 1;
    }
}

// What one throws by hand, out of a function, as the library does.
[[gnu::noinline]] void throwBadAlloc() { throw std::bad_alloc(); }
[[gnu::noinline]] void throwRuntimeError() { throw std::runtime_error("Can't get it: E_NOINTERFACE"); }

template <class Throw> auto throwing(Throw doThrow)
{
    return [=] {
        for (int i = 0; i < 20000; ++i)
            try {
                doThrow();
            } catch (const std::exception& error) {
                keep(error);
            }
    };
}
} // namespace

TEST_CASE("errors")
{
    Ratios table("Errors");
    table.row("20,000 times WindowsError, text not asked for", 1.2,
              repeated(20000, [] { return thrownAndCaught<tarn::WindowsError>(5ul, "Can't open the file"); }),
              repeated(20000, [] { return thrownAndCaught<std::runtime_error>("Can't open the file"); }));
    table.row("20,000 times HRESULTHolder::throwOnError, no memory", 1.3,
              throwing([] { tarn::HRESULTHolder::throwOnError(E_OUTOFMEMORY, "Can't get it"); }),
              throwing(&throwBadAlloc));
    table.row("20,000 times HRESULTHolder::throwOnError, COM's", 1.6,
              throwing([] { tarn::HRESULTHolder::throwOnError(E_NOINTERFACE, "Can't get it"); }),
              throwing(&throwRuntimeError));
}

TEST_CASE("text: growth", "[.growth]")
{
    const bench::Growth growth("Replacing words in a text", "characters");
    growth.line("replaceAll", bench::tens(2, 7),
                [](unsigned size) { return [text = String(linesOf(size))] { keep(text.replaceAll("value", "x")); }; });
    growth.line("loop over the standard string", bench::tens(2, 7),
                [](unsigned size) { return [text = linesOf(size)] { keep(replacedByHand(text, "value", "x")); }; });
}
