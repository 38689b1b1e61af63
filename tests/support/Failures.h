#pragma once

#include <functional>
#include <initializer_list>
#include <string>

namespace support {
/// Where Wine does less than the platform is documented to: it lets the call pass without a word, or sets
/// no error code.
enum WineDifference { sameOnWine, silentOnWine, codelessOnWine };

struct Failure {
    std::string description;
    std::function<void()> call;
    WineDifference difference = sameOnWine;
};

/// Asserts that each call throws a WindowsError with this description, and with a code of its own: not with
/// one that was left over from before.
void expectFailures(std::initializer_list<Failure> failures);
} // namespace support
