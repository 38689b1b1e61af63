#include "NestingLevel.h"

#include <tarn/Archive.h>

#include <string>

namespace tarn {
namespace {
thread_local unsigned int currentDepth = 0;
}

NestingLevel::NestingLevel() : depth_(currentDepth)
{
    if (depth_ == Archive::maxDepth)
        throw Serializable::Exception("Objects are nested more than " + std::to_string(Archive::maxDepth) +
                                      " levels deep");
    ++depth_;
}

NestingLevel::~NestingLevel() { --depth_; }
} // namespace tarn
