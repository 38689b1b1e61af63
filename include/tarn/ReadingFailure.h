#pragma once

#include <tarn/Export.h>

#include <exception>
#include <optional>
#include <string>
#include <vector>

namespace tarn {
/// Where an archive's data could not be read, for a message that a person understands. Errors that Archive throws while
/// it reads an object carry it, beside the text that they always had:
///
///     try {
///         archive >> document;
///     } catch (const std::exception& error) {
///         if (const auto failure = tarn::ReadingFailure::of(error))
///             std::cerr << failure->getText() << '\n';
///     }
struct TARN_API ReadingFailure {
    /// What an error carries: EndOfFile, Exception, Serializable::Exception, or a class derived from these that
    /// deserialize() threw. Nothing for other errors, and for those from outside of objects.
    static std::optional<ReadingFailure> of(const std::exception& error);

    /// What is wrong, and where: "The data end too early, at byte 120, in class Style in class Page in class Document".
    std::string getText() const;

    /// What is wrong, "The data end too early".
    std::string sentence;
    /// Where in the stream it showed, counted from the stream's beginning; nothing for streams that have no position.
    std::optional<unsigned long long> offset;
    /// The classes of the objects that were being read, from the outermost on.
    std::vector<std::string> path;
};
} // namespace tarn
