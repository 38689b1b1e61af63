#include <tarn/BasicString.h>
#include <tarn/Debug.h>
#include <tarn/Exception.h>

#include <string_view>

using Narrow = tarn::BasicString<char>;
using Wide = tarn::BasicString<wchar_t>;

void textsAreNoTruthValues(const Narrow& text)
{
    // forbidden: use of deleted function .*::operator bool\(\) const
    static_cast<void>(text ? 1 : 0);
    // forbidden: use of deleted function .*::operator bool\(\) const
    static_cast<void>(!text);
    // forbidden: use of deleted function .*::operator==\(std::nullptr_t\) const
    static_cast<void>(text == nullptr);
}

void textsOfTheOtherWidthAreConvertedOnlyWhenAsked(const Narrow& narrow, const Wide& wide)
{
    // forbidden: no match for 'operator=='
    static_cast<void>(narrow == wide);
    // forbidden: no match for 'operator<'|invalid operands
    static_cast<void>(narrow < wide);
    // forbidden: no match for 'operator\+'|invalid operands
    static_cast<void>(L"x" + narrow);
    // forbidden: conversion from .* to non-scalar type .* requested
    Narrow copy = wide;
}

void theCountOfCharactersComesFirst()
{
    // forbidden: use of deleted function .*BasicString\(C, Count\)
    Narrow dashes('-', 3);
}

void buffersOfTheDebuggerAreNotCopied(tarn::DebugBuf<char>& buffer)
{
    // forbidden: use of deleted function .*DebugBuf\(const tarn::DebugBuf
    tarn::DebugBuf<char> copy(buffer);
}

void theMixInIsNoErrorOfItsOwn()
{
    // forbidden: 'tarn::HRESULTHolder' because its destructor is|cannot declare variable .* abstract type
    tarn::HRESULTHolder holder;
}
