#pragma once

#include <tarn/BasicString.h>
#include <tarn/Export.h>
#include <tarn/Layout.h>
#include <tarn/Stream.h>
#include <tarn/Windows.h>
#include <tarn/WindowsHandle.h>

#include <utility>

namespace tarn {
/// A file of the platform as a stream to read, write and seek in; also the ends of a Pipe and devices.
///
/// Nothing is buffered here: each call is one call of the platform. Owns its handle and closes it on
/// destruction; attach() takes one opened elsewhere, which must be open for synchronous use. The static
/// members ask about a path without opening it. Failures throw WindowsError, also out of the destructor.
class TARN_API WindowsFile : public BufferedOutputStream, public WindowsHandle, public SeekableInputStream {
public:
    WindowsFile() = default;
    /// Take the file over, as WindowsHandle does.
    ///@{
    WindowsFile(WindowsFile&& other) noexcept : WindowsHandle(std::move(other)) {}
    WindowsFile& operator=(WindowsFile&& other) noexcept
    {
        WindowsHandle::operator=(std::move(other));
        return *this;
    }
    ///@}
    /// Opens as open() does.
    ///@{
    WindowsFile(const char* name, unsigned long access, unsigned long share, SECURITY_ATTRIBUTES* security,
                unsigned long creation, unsigned long flags, HANDLE templateFile);
    WindowsFile(const wchar_t* name, unsigned long access, unsigned long share, SECURITY_ATTRIBUTES* security,
                unsigned long creation, unsigned long flags, HANDLE templateFile);
    ///@}

    /// With the arguments of the platform's `CreateFile`. A file open so far is closed when the new one is
    /// open, and stays when that fails: close() it first to open the same file in another way. Throws
    /// "Can't open "NAME"".
    ///@{
    void open(const char* name, unsigned long access, unsigned long share, SECURITY_ATTRIBUTES* security,
              unsigned long creation, unsigned long flags, HANDLE templateFile);
    void open(const wchar_t* name, unsigned long access, unsigned long share, SECURITY_ATTRIBUTES* security,
              unsigned long creation, unsigned long flags, HANDLE templateFile);
    ///@}

    /// Opens in one of the ways that programs need most. Wide names may be of any length. Throw as open() does.
    ///
    /// openToRead() lets others read at the same time; openToChange(), for reading and writing, lets nobody.
    /// overwrite() makes the file or empties it, createNew() fails when it is there; both for writing, and for nobody
    /// else. openToAppend() makes the file if need be, and writes each piece behind what all others have written.
    ///@{
    static WindowsFile openToRead(const char* name);
    static WindowsFile openToRead(const wchar_t* name);
    static WindowsFile openToChange(const char* name);
    static WindowsFile openToChange(const wchar_t* name);
    static WindowsFile overwrite(const char* name);
    static WindowsFile overwrite(const wchar_t* name);
    static WindowsFile createNew(const char* name);
    static WindowsFile createNew(const wchar_t* name);
    static WindowsFile openToAppend(const char* name);
    static WindowsFile openToAppend(const wchar_t* name);
    ///@}

    /// Throws "Error while writing SIZE bytes".
    unsigned int write(const void* buffer, unsigned int size) override;
    /// On to the disk. Throws "Can't flush file buffers".
    void flush() override;
    /// Throws "Error while closing handle".
    void close() override;
    ~WindowsFile() noexcept(false) override;

    /// 0 at the end of the file, and of a pipe when all its writers are gone. Throws "Error while reading
    /// SIZE bytes to ADDRESS".
    unsigned int read(void* buffer, unsigned int size) override;

    /// The new position, which may lie behind the end of the file. Throws "WindowsFile::seek: Can't seek
    /// to OFFSET relative to ORIGIN", ORIGIN being "tarn::Seekable::begin" for instance.
    unsigned long long seek(long long offset, whence origin) const;
    /// Throw as seek().
    ///@{
    void setFilePointer(long long offset, whence origin) override;
    unsigned long long getFilePointer() override;
    ///@}
    /// Leaves the position alone. Throws "Can't retrieve the file size for a windows file".
    unsigned long long getSize() override;

    /// Sends a control code to the device and returns the number of bytes that it put into `out`. Throws
    /// "Error in DeviceIoControl".
    unsigned int ioControl(unsigned long code, const void* in, unsigned int inSize, void* out, unsigned int outSize);

    /// The platform's `FILE_ATTRIBUTE_` bits. Throws "Can't get file attributes for "NAME"".
    ///@{
    static unsigned long getAttributes(const char* name);
    static unsigned long getAttributes(const wchar_t* name);
    ///@}
    /// With the times and the size. Throws "Error in GetFileAttributesExA", "Error in GetFileAttributesExW".
    ///@{
    static void getAttributes(const char* name, WIN32_FILE_ATTRIBUTE_DATA& data);
    static void getAttributes(const wchar_t* name, WIN32_FILE_ATTRIBUTE_DATA& data);
    ///@}
    /// Throws as getAttributes(name, data) does.
    ///@{
    static unsigned long long getSize(const char* name);
    static unsigned long long getSize(const wchar_t* name);
    ///@}
    /// Throws for a path that does not exist, as getAttributes(name) does.
    ///@{
    static bool isDirectory(const char* name);
    static bool isDirectory(const wchar_t* name);
    ///@}

    /// The path in 8.3 names where the file system has them. Throws "Can't determine the short path name
    /// length of "NAME"", "Can't determine the short path name of "NAME"".
    ///
    /// A wide name longer than 260 characters may be given without the prefix "\\?\" that the platform
    /// asks for; the result then has it when it is too long to be used without.
    ///@{
    static BasicString<char> getShortPath(const char* name);
    static BasicString<wchar_t> getShortPath(const wchar_t* name);
    ///@}
    /// The absolute path, whether it exists or not; long names as for getShortPath(). Throws the texts of
    /// getShortPath() (sic: "short").
    ///@{
    static BasicString<char> getFullPath(const char* name);
    static BasicString<wchar_t> getFullPath(const wchar_t* name);
    ///@}
};
TARN_LAYOUT(WindowsFile, 20, 40); // Three bases, the handle and a shared virtual base.
} // namespace tarn
