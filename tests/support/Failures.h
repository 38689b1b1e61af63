#pragma once

#include <functional>
#include <initializer_list>
#include <string>

namespace support {
/// In a row of failures: Wine lets the call pass without a word.
constexpr bool silentOnWine = true;

struct Failure {
    std::string description;
    std::function<void()> call;
    bool isSilentOnWine = false;
};

/// Asserts that each call throws a WindowsError with this description, and with a code of its own: not with
/// one that was left over from before.
void expectFailures(std::initializer_list<Failure> failures);
} // namespace support
