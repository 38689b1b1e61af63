#pragma once

#include "Closing.h"

#include <boost/noncopyable.hpp>

#include <functional>
#include <utility>
#include <vector>

namespace tarn {
/// Ways back from what is being done, which are gone at the end of the object, the last one first, unless all is kept.
///
/// Each is noted before what it leads back from: without the memory for it nothing is changed. So it may find nothing
/// to do.
class UndoList : private boost::noncopyable {
public:
    UndoList() = default;
    ~UndoList() ///< Goes on to the next way where one leads nowhere; the debugger hears of that.
    {
        goBack([] { dropCurrentException(); });
    }

    void note(std::function<void()> wayBack) { waysBack_.push_back(std::move(wayBack)); }
    void keep() noexcept { waysBack_.clear(); } ///< What was done so far stays.

    /// Now. `onFailure` is called in the catch block for each way that leads nowhere.
    template <class OnFailure> void goBack(OnFailure onFailure)
    {
        for (; !waysBack_.empty(); waysBack_.pop_back()) {
            try {
                waysBack_.back()();
            } catch (...) {
                onFailure();
            }
        }
    }

private:
    std::vector<std::function<void()>> waysBack_;
};
} // namespace tarn
