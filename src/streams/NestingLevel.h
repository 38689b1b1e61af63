#pragma once

namespace tarn {
/// Counts, on each thread, the objects that are being written or read inside each other, and throws
/// Serializable::Exception when they are more than Archive::maxDepth.
class NestingLevel {
public:
    NestingLevel();
    NestingLevel(const NestingLevel&) = delete;
    NestingLevel& operator=(const NestingLevel&) = delete;
    ~NestingLevel();

private:
    unsigned int& depth_;
};
} // namespace tarn
