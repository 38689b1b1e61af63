#pragma once

#include <tarn/Export.h>

namespace tarn {
/// COM on the calling thread, for as long as the object lives: the first local variable of `main` or of a thread, so
/// that all pointers to COM objects are gone before it.
///
/// May be used inside of another of the same model. It ends on the thread where it was made.
class TARN_API COMApartment {
public:
    /// How other threads reach the objects that this one makes.
    enum model {
        /// By messages that this thread has to dispatch: for threads with windows.
        singleThreaded,
        /// Directly: their classes have to know how to share.
        multiThreaded
    };
    /// Throws COMError "Can't initialize COM", with `RPC_E_CHANGED_MODE` where the thread has the other model already.
    explicit COMApartment(model threads = singleThreaded);
    COMApartment(const COMApartment&) = delete;
    COMApartment& operator=(const COMApartment&) = delete;
    ~COMApartment();
};
} // namespace tarn
