#pragma once

#include <tarn/Export.h>
#include <tarn/Stream.h>

#include <cstdio>

namespace tarn {
/// A `FILE` of the runtime library as a stream to read and write.
///
/// Failures throw CRTError. As with any `FILE`, flush or seek between writing and reading, and open with
/// a "b" in the mode for bytes that shall stay as they are. Positions are 32-bit: above 2 GB use
/// LowLevelFileStream. While no file is open, reads and writes answer 0.
class TARN_API StdIOStream : public BufferedOutputStream, public SeekableInputStream {
public:
    StdIOStream() = default;
    /// As open().
    ///@{
    StdIOStream(const char* name, const char* mode);
    StdIOStream(const wchar_t* name, const wchar_t* mode);
    ///@}
    /// Takes the file over and closes it at the end.
    explicit StdIOStream(FILE* file);
    /// A copy uses the same file, and both would close it: detach() all but one of them.
    StdIOStream(const StdIOStream&) = default;
    /// The same; the file held before is not closed.
    StdIOStream& operator=(const StdIOStream&) = default;
    /// A move takes the file over, and leaves the other stream without one; an assignment closes the file held
    /// before.
    ///@{
    StdIOStream(StdIOStream&& other) noexcept;
    StdIOStream& operator=(StdIOStream&& other) noexcept;
    ///@}

    /// Fewer bytes than given only after a failure; see flush().
    unsigned int write(const void* buffer, unsigned int size) override;
    /// Throws "Can't flush stdio file". Does nothing while no file is open.
    void flush() override;
    /// Reports no failure: flush() first to hear of data that could not be written.
    void close() override;
    /// As close().
    virtual ~StdIOStream();
    /// Closes the file open so far, then opens another; the mode is that of `fopen`. Throws
    /// `Can't open stdio file "..." with ops "..."` and is closed then.
    ///@{
    virtual void open(const wchar_t* name, const wchar_t* mode);
    virtual void open(const char* name, const char* mode);
    ///@}

    /// 0 at the end of the file, and after a failure.
    unsigned int read(void* buffer, unsigned int size) override;
    /// Only the low 32 bits of the offset count. Throws "fseek(...) failed".
    void setFilePointer(long long offset, whence origin) override;
    /// Throws "Can't tell the current file pointer position in StdIOStream::tell".
    unsigned long long getFilePointer() override;

    /// Closes the file open so far and takes this one over.
    void attach(FILE* file);
    /// Leaves closing the file to the caller; the stream goes on using it.
    FILE* detach();
    /// Null, and not open, before open() and after close(); after detach() still the file.
    ///@{
    FILE* getHandle() const { return file_; }
    bool isOpen() const { return file_ != nullptr; }
    explicit operator bool() const { return isOpen(); }
    bool operator!() const { return !isOpen(); }
    ///@}

private:
    FILE* file_ = nullptr;
    bool owned_ = false;
};
} // namespace tarn
