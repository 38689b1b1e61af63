#include <tarn/ErrorReport.h>

#include <tarn/ErrorTrace.h>
#include <tarn/Exception.h>
#include <tarn/ReadingFailure.h>
#include <tarn/Windows.h>

#include "Hex.h"
#include "TypeName.h"

#include <iterator>
#include <string>

namespace tarn {
namespace {
BasicString<wchar_t> codeOf(const std::exception& error)
{
    const auto inHex = [](unsigned long code) { return BasicString<wchar_t>(" (0x" + toHex(code) + ")"); };
    if (const auto* fault = dynamic_cast<const SEHError*>(&error))
        return inHex(fault->getCode());
    if (const auto* holder = dynamic_cast<const HRESULTHolder*>(&error))
        return inHex(static_cast<unsigned long>(holder->getHRESULT()));
    return {};
}

// Another text goes on behind a colon, where the one before ended as a sentence.
void appendSentence(BasicString<wchar_t>& sentence, const BasicString<wchar_t>& text)
{
    if (!sentence.empty()) {
        if (sentence.endsWith(L"."))
            sentence.pop_back();
        sentence += L": ";
    }
    sentence += text;
}

// Without the wrapper that std::throw_with_nested and the trace make.
BasicString<wchar_t> classOf(const std::exception& error, const ErrorTrace* trace)
{
    static constexpr wchar_t wrapper[] = L"std::_Nested_exception<";
    BasicString<wchar_t> name(typeName(trace ? trace->getErrorType() : typeid(error)));
    if (!name.startsWith(wrapper))
        return name;
    return name.substr(std::size(wrapper) - 1, name.size() - std::size(wrapper));
}

// What a failure of reading says to people, which the text of its error may not.
BasicString<wchar_t> sentenceOf(const ReadingFailure& failure, const std::exception& error)
{
    BasicString<wchar_t> said = a2w(failure.getText(), CP_ACP);
    if (failure.sentence != error.what())
        return said;
    return whatW(error) + said.substr(a2w(failure.sentence, CP_ACP).size()); // With names that are whole.
}

void append(ErrorReport& report, const std::exception_ptr& thrown);

void append(ErrorReport& report, const std::exception& error)
{
    const ErrorTrace* const trace = ErrorTrace::of(error);
    const BasicString<wchar_t> text = whatW(error);
    report.paragraph += classOf(error, trace) + codeOf(error) + L": " + text;
    if (const auto failure = ReadingFailure::of(error)) {
        const BasicString<wchar_t> place = sentenceOf(*failure, error);
        appendSentence(report.sentence, place);
        report.paragraph += L"\n    " + place;
    } else {
        appendSentence(report.sentence, text);
    }
    if (trace) {
        report.paragraph += L"\n    thrown in thread " + std::to_wstring(trace->getThreadID());
        for (const BasicString<wchar_t>& line : trace->describeFrames())
            report.paragraph += L"\n    " + line;
    }
    const auto* const nested = dynamic_cast<const std::nested_exception*>(&error);
    if (nested && nested->nested_ptr()) {
        report.paragraph += L"\nbecause of ";
        append(report, nested->nested_ptr());
    }
}

void append(ErrorReport& report, const std::exception_ptr& thrown)
{
    try {
        std::rethrow_exception(thrown);
    } catch (const std::exception& error) {
        append(report, error);
    } catch (...) {
        constexpr const wchar_t* unknown = L"An exception that is no std::exception";
        appendSentence(report.sentence, unknown);
        report.paragraph += unknown;
    }
}
} // namespace

ErrorReport reportOf(const std::exception& error)
{
    ErrorReport report;
    append(report, error);
    return report;
}

ErrorReport reportOf(const std::exception_ptr& error)
{
    ErrorReport report;
    if (error)
        append(report, error);
    return report;
}
} // namespace tarn
