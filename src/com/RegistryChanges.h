#pragma once

#include <tarn/BasicString.h>
#include <tarn/RegistryKey.h>

#include <boost/noncopyable.hpp>

#include <functional>
#include <vector>

namespace tarn {
/// Changes of the registry that are taken back at the end of the object, unless they are kept.
class RegistryChanges : private boost::noncopyable {
public:
    RegistryChanges() = default;
    ~RegistryChanges(); ///< Goes on to the next change where one cannot be taken back.

    /// Opens a key, and makes it and those above it when they are missing. Made keys go again if they are empty then.
    RegistryKey createKey(const RegistryKey& parent, const BasicString<wchar_t>& path);
    void setText(const RegistryKey& key, const wchar_t* name, const BasicString<wchar_t>& text);
    void deleteValue(const RegistryKey& key, const wchar_t* name); ///< One that is missing is no error.

    void keep() noexcept { undo_.clear(); } ///< What was changed so far stays.

private:
    void restoreAtEnd(const RegistryKey& key, const wchar_t* name);

    std::vector<std::function<void()>> undo_;
};
} // namespace tarn
