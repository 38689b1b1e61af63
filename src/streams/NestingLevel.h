#pragma once

#include <tarn/Archive.h>

#include "../foundation/Throw.h"
#include "Platform.h"

#include <string>

namespace tarn {
/// Counts the objects that are being written or read inside each other, in a counter of the caller's.
class NestingLevel {
public:
    /// Throws Serializable::Exception beyond Archive::maxDepth, and when the stack comes to its end.
    explicit NestingLevel(unsigned int& depth) : depth_(depth)
    {
        if (depth == Archive::maxDepth || !stackHasRoom())
            throwTooDeep();
        ++depth;
    }
    NestingLevel(const NestingLevel&) = delete;
    NestingLevel& operator=(const NestingLevel&) = delete;
    ~NestingLevel() { --depth_; }

private:
    [[noreturn, gnu::noinline, gnu::cold]] static void throwTooDeep()
    {
        throwError(Serializable::Exception("Objects are nested more than " + std::to_string(Archive::maxDepth) +
                                           " levels deep"));
    }

    unsigned int& depth_;
};
} // namespace tarn
