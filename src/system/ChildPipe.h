#pragma once

#include "AsyncFile.h"

namespace tarn {
/// A pipe from or to a child process, of which the own end is asynchronous.
class ChildPipe : public AsyncFile {
public:
    enum class Direction { fromChild, toChild };

    /// Throws WindowsError "Can't make pipe for child process".
    explicit ChildPipe(Direction direction) : ChildPipe(direction, makeEnds(direction)) {}

    void* childsEnd() const { return childsEnd_.get(); }
    /// To be called when the child has its own.
    void closeChildsEnd() { closeNow(childsEnd_, "Can't close the child's end of a pipe"); }

private:
    struct Ends {
        FreshHandle own, childs;
    };
    static Ends makeEnds(Direction direction);

    ChildPipe(Direction direction, Ends ends)
        : AsyncFile(std::move(ends.own), direction == Direction::fromChild ? "Error while reading from child process"
                                                                           : "Error while writing to child process"),
          childsEnd_(std::move(ends.childs))
    {
    }

    FreshHandle childsEnd_;
};
} // namespace tarn
