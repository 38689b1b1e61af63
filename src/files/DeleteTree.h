#pragma once

#include <tarn/BasicString.h>

#include <functional>

namespace tarn {
/// What first kept something from being deleted; the code is 0 when nothing did.
struct DeletionFailure {
    BasicString<wchar_t> path;
    unsigned long error = 0;
};

/// Deletes a folder with everything in it, at any depth and without a question. What cannot be deleted stays,
/// and so do the folders above it. A link is deleted, never what it leads to; under Wine, which cannot delete
/// links, it stays. `goOn`, if given, is asked with the path for the platform before each file and folder is deleted;
/// false ends the work, and is the result then. Throws only for want of memory and what `goOn` throws.
bool deleteTree(const wchar_t* folder, DeletionFailure& failure,
                const std::function<bool(const wchar_t* path)>& goOn = {});
} // namespace tarn
