#pragma once

#include <tarn/Archive.h>

#include "../foundation/Throw.h"

#include <string>

namespace tarn {
/// Counts the objects that are being written or read inside each other, in a counter of the caller's.
class NestingLevel {
public:
    /// Throws Serializable::Exception beyond Archive::maxDepth.
    explicit NestingLevel(unsigned int& depth) : depth_(depth)
    {
        if (depth == Archive::maxDepth)
            throwError(Serializable::Exception("Objects are nested more than " + std::to_string(Archive::maxDepth) +
                                               " levels deep"));
        ++depth;
    }
    NestingLevel(const NestingLevel&) = delete;
    NestingLevel& operator=(const NestingLevel&) = delete;
    ~NestingLevel() { --depth_; }

private:
    unsigned int& depth_;
};
} // namespace tarn
