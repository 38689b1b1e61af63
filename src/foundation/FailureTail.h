#pragma once

#include <exception>
#include <optional>
#include <string>
#include <vector>

// What a ReadingFailure is made of stands behind the text of its error: behind the zero that ends it for everybody else
// come a mark, the sentence, the offset and the classes, each ended by a zero, and a zero more.

namespace tarn {
/// The text of an error, and for people the sentence that says the same.
std::string withSentence(const std::string& text, const std::string& sentence);

/// The text of `error`, with a place. Its own sentence counts, then the text, or `sentence` when that is not null.
std::string withPlace(const std::exception& error, const char* sentence, std::optional<unsigned long long> offset,
                      const std::vector<std::string>& path);
} // namespace tarn
