#include <tarn/ReadingFailure.h>

#include <tarn/Exception.h>

#include "FailureTail.h"

#include <cstdlib>
#include <cstring>

namespace tarn {
namespace {
constexpr char failureMark = '\2';

const char* behind(const char* text) { return text + std::strlen(text) + 1; }

/// What stands behind the text of an error, and behind a text in UTF-8 that may come first; null for errors of others.
const char* tailBehind(const std::exception& error)
{
    if (!dynamic_cast<const Exception*>(&error) && !dynamic_cast<const EndOfFile*>(&error))
        return nullptr;
    const char* const tail = behind(error.what());
    return *tail == '\xEF' ? behind(tail) : tail;
}
} // namespace

std::string withSentence(const std::string& text, const std::string& sentence)
{
    return text + '\0' + failureMark + sentence + '\0';
}

std::string withPlace(const std::exception& error, const char* sentence, std::optional<unsigned long long> offset,
                      const std::vector<std::string>& path)
{
    const char* const tail = tailBehind(error);
    const std::string own = tail && *tail == failureMark ? tail + 1 : sentence ? sentence : error.what();
    const std::string before = tail ? std::string(error.what(), tail - 1) : error.what();
    std::string text = withSentence(before, own) + (offset ? std::to_string(*offset) : "?") + '\0';
    for (const std::string& name : path)
        text += name + '\0';
    return text;
}

std::optional<ReadingFailure> ReadingFailure::of(const std::exception& error)
{
    const char* at = tailBehind(error);
    if (!at || *at != failureMark)
        return {};
    ReadingFailure failure{at + 1, {}, {}};
    at = behind(at);
    if (*at == '\0')
        return {}; // The sentence alone: it was not thrown while objects were read.
    if (*at != '?')
        failure.offset = std::strtoull(at, nullptr, 10);
    for (at = behind(at); *at != '\0'; at = behind(at))
        failure.path.push_back(at);
    return failure;
}

std::string ReadingFailure::getText() const
{
    std::string text = sentence;
    if (offset)
        text += ", at byte " + std::to_string(*offset);
    for (auto name = path.rbegin(); name != path.rend(); ++name)
        text += (name == path.rbegin() ? ", in " : " in ") + *name;
    return text;
}
} // namespace tarn
