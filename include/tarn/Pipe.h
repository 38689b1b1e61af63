#pragma once

#include <tarn/Export.h>
#include <tarn/Layout.h>
#include <tarn/WindowsFile.h>

namespace tarn {
/// An anonymous pipe: what is written to one end is read from the other, as from a file.
///
/// read() waits for the first bytes and returns those that are there, so records that a writer sends in
/// pieces need a loop; it returns 0 when all copies of the write end are closed, those of child processes
/// included. runProcess() captures all that a program prints in one call; to read it as a stream:
///
///     Pipe output(0, nullptr);
///     Process child(L"prog.exe", ProcessOptions{.stdOut = output.getWriteEnd(), .stdErr = output.getWriteEnd()});
///     output.getWriteEnd().close();
///     log << output.getReadEnd(); // any OutputStream
///
/// Failures throw WindowsError, also out of the destructor.
class TARN_API Pipe {
public:
    Pipe() = default;
    /// Creates as create() does.
    Pipe(unsigned long bufferSize, SECURITY_ATTRIBUTES* attributes) { create(bufferSize, attributes); }

    /// Closes both ends and makes a new pipe. A `bufferSize` of 0 stands for the platform's own; with
    /// `attributes` that say so, child processes inherit both ends. Throws "Can't create pipe".
    void create(unsigned long bufferSize, SECURITY_ATTRIBUTES* attributes);

    /// The two ends, which belong to the pipe. Close one as WindowsFile::close() does.
    ///@{
    WindowsFile& getReadEnd() { return readEnd_; }
    WindowsFile& getWriteEnd() { return writeEnd_; }
    ///@}

    /// Child processes started from now on do not inherit this end. Call it for the end that stays here:
    /// a child that holds the write end of its own input never sees the end of it. Throws "Can't keep the
    /// pipe end from child processes".
    ///@{
    void keepReadEnd();
    void keepWriteEnd();
    ///@}

    /// Waits until reading would return at once, because there are data or all writers are gone; false after the
    /// time-out. The platform has no wait for this, so it looks again every few milliseconds. Throws "Can't look into
    /// the pipe".
    bool waitForData(unsigned timeoutMs) const;

    /// Both ends, as far as they are open.
    void close();

private:
    WindowsFile readEnd_;
    WindowsFile writeEnd_;
};
TARN_LAYOUT(Pipe, 40, 80);
} // namespace tarn
