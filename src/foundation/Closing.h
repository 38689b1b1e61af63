#pragma once

#include <exception>

// How owners end. A destructor that throws while another exception is on its way would end the program.

namespace tarn {
/// To be called in a catch block: tells the debugger what was thrown, and drops it.
void dropCurrentException() noexcept;

/// For what must not throw at all, a move assignment, say: of what `close` throws the debugger alone hears. Taken by
/// reference, because a copy could throw, too.
template <class Close> void closeQuietly(Close&& close) noexcept
{
    try {
        close();
    } catch (...) {
        dropCurrentException();
    }
}

/// In a catch block, too: throws on what was thrown, unless another exception is on its way, which goes on then.
void throwOnOrDropCurrentException();

/// For a destructor: throws what `close` throws, unless an exception is on its way already. That one goes
/// on then, and the debugger alone hears of the second.
///
/// Only what was thrown has it ask for the others, which takes longer than most owners need to end.
template <class Close> void closeAtEnd(Close&& close)
{
    try {
        close();
    } catch (...) {
        throwOnOrDropCurrentException();
    }
}
} // namespace tarn
