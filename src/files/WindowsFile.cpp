#include <tarn/WindowsFile.h>

#include "../foundation/Check.h"
#include "../foundation/Quoted.h"
#include "../system/FreshHandle.h"
#include "FileApi.h"
#include "LongPath.h"

namespace tarn {
static_assert(Seekable::begin == FILE_BEGIN && Seekable::current == FILE_CURRENT && Seekable::end == FILE_END);

namespace {
template <class Ch>
FreshHandle openFile(const Ch* name, unsigned long access, unsigned long share, SECURITY_ATTRIBUTES* security,
                     unsigned long creation, unsigned long flags, HANDLE templateFile)
{
    return FreshHandle(ensureNot(INVALID_HANDLE_VALUE,
                                 createFile(name, access, share, security, creation, flags, templateFile),
                                 [&] { return "Can't open " + quoted(name); }));
}

unsigned long long joined(DWORD high, DWORD low) { return static_cast<unsigned long long>(high) << 32 | low; }

std::string nameOf(Seekable::whence origin)
{
    switch (origin) {
    case Seekable::begin:
        return "tarn::Seekable::begin";
    case Seekable::current:
        return "tarn::Seekable::current";
    case Seekable::end:
        return "tarn::Seekable::end";
    }
    return std::to_string(origin);
}
} // namespace

WindowsFile::WindowsFile(const char* name, unsigned long access, unsigned long share, SECURITY_ATTRIBUTES* security,
                         unsigned long creation, unsigned long flags, HANDLE templateFile)
{
    open(name, access, share, security, creation, flags, templateFile);
}
WindowsFile::WindowsFile(const wchar_t* name, unsigned long access, unsigned long share, SECURITY_ATTRIBUTES* security,
                         unsigned long creation, unsigned long flags, HANDLE templateFile)
{
    open(name, access, share, security, creation, flags, templateFile);
}

void WindowsFile::open(const char* name, unsigned long access, unsigned long share, SECURITY_ATTRIBUTES* security,
                       unsigned long creation, unsigned long flags, HANDLE templateFile)
{
    giveTo(*this, openFile(name, access, share, security, creation, flags, templateFile));
}
void WindowsFile::open(const wchar_t* name, unsigned long access, unsigned long share, SECURITY_ATTRIBUTES* security,
                       unsigned long creation, unsigned long flags, HANDLE templateFile)
{
    giveTo(*this, openFile(name, access, share, security, creation, flags, templateFile));
}

namespace {
const char* usable(const char* name) { return name; }
// Only where it is needed, because the prefix takes a name literally.
BasicString<wchar_t> usable(const wchar_t* name)
{
    return ConstString<wchar_t>(name).length() < MAX_PATH ? BasicString<wchar_t>(name) : longPath(name);
}

template <class Ch>
WindowsFile opened(const Ch* name, unsigned long access, unsigned long share, unsigned long creation)
{
    WindowsFile file;
    giveTo(file, FreshHandle(ensureNot(
                     INVALID_HANDLE_VALUE,
                     createFile(usable(name), access, share, nullptr, creation, FILE_ATTRIBUTE_NORMAL, nullptr),
                     [&] { return "Can't open " + quoted(name); })));
    return file;
}

template <class Ch> WindowsFile openedToRead(const Ch* name)
{
    return opened(name, GENERIC_READ, FILE_SHARE_READ, OPEN_EXISTING);
}
template <class Ch> WindowsFile openedToChange(const Ch* name)
{
    return opened(name, GENERIC_READ | GENERIC_WRITE, 0, OPEN_EXISTING);
}
template <class Ch> WindowsFile openedToAppend(const Ch* name)
{
    return opened(name, FILE_APPEND_DATA | SYNCHRONIZE, FILE_SHARE_READ | FILE_SHARE_WRITE, OPEN_ALWAYS);
}
} // namespace

WindowsFile WindowsFile::openToRead(const char* name) { return openedToRead(name); }
WindowsFile WindowsFile::openToRead(const wchar_t* name) { return openedToRead(name); }
WindowsFile WindowsFile::openToChange(const char* name) { return openedToChange(name); }
WindowsFile WindowsFile::openToChange(const wchar_t* name) { return openedToChange(name); }
WindowsFile WindowsFile::overwrite(const char* name) { return opened(name, GENERIC_WRITE, 0, CREATE_ALWAYS); }
WindowsFile WindowsFile::overwrite(const wchar_t* name) { return opened(name, GENERIC_WRITE, 0, CREATE_ALWAYS); }
WindowsFile WindowsFile::createNew(const char* name) { return opened(name, GENERIC_WRITE, 0, CREATE_NEW); }
WindowsFile WindowsFile::createNew(const wchar_t* name) { return opened(name, GENERIC_WRITE, 0, CREATE_NEW); }
WindowsFile WindowsFile::openToAppend(const char* name) { return openedToAppend(name); }
WindowsFile WindowsFile::openToAppend(const wchar_t* name) { return openedToAppend(name); }

unsigned int WindowsFile::write(const void* buffer, unsigned int size)
{
    DWORD written = 0;
    ensure(WriteFile(getHandle(), buffer, size, &written, nullptr),
           [&] { return "Error while writing " + std::to_string(size) + " bytes"; });
    return written;
}

void WindowsFile::flush() { ensure(FlushFileBuffers(getHandle()), "Can't flush file buffers"); }

void WindowsFile::close() { WindowsHandle::close(); }

WindowsFile::~WindowsFile() noexcept(false) = default;

unsigned int WindowsFile::read(void* buffer, unsigned int size)
{
    DWORD count = 0;
    if (!ReadFile(getHandle(), buffer, size, &count, nullptr) && GetLastError() != ERROR_BROKEN_PIPE)
        throwLastError(
            [&] { return BasicString<char>::fromFormat("Error while reading %u bytes to %p", size, buffer); });
    return count;
}

unsigned long long WindowsFile::seek(long long offset, whence origin) const
{
    LONG high = static_cast<LONG>(offset >> 32);
    const DWORD low = ensureClearedNot(
        INVALID_SET_FILE_POINTER,
        [&] { return SetFilePointer(getHandle(), static_cast<LONG>(offset), &high, static_cast<DWORD>(origin)); },
        [&] {
            return "WindowsFile::seek: Can't seek to " + std::to_string(offset) + " relative to " + nameOf(origin);
        });
    return joined(static_cast<DWORD>(high), low);
}

void WindowsFile::setFilePointer(long long offset, whence origin) { seek(offset, origin); }

unsigned long long WindowsFile::getFilePointer() { return seek(0, current); }

unsigned long long WindowsFile::getSize()
{
    DWORD high = 0;
    const DWORD low = ensureClearedNot(
        INVALID_FILE_SIZE, [&] { return GetFileSize(getHandle(), &high); },
        "Can't retrieve the file size for a windows file");
    return joined(high, low);
}

unsigned int WindowsFile::ioControl(unsigned long code, const void* in, unsigned int inSize, void* out,
                                    unsigned int outSize)
{
    DWORD returned = 0;
    ensure(DeviceIoControl(getHandle(), code, const_cast<void*>(in), inSize, out, outSize, &returned, nullptr),
           "Error in DeviceIoControl");
    return returned;
}

namespace {
template <class Ch> unsigned long attributesOf(const Ch* name)
{
    return ensureNot(INVALID_FILE_ATTRIBUTES, getFileAttributes(name),
                     [&] { return "Can't get file attributes for " + quoted(name); });
}

template <class Ch> unsigned long long sizeOf(const Ch* name)
{
    WIN32_FILE_ATTRIBUTE_DATA data;
    WindowsFile::getAttributes(name, data);
    return joined(data.nFileSizeHigh, data.nFileSizeLow);
}
} // namespace

unsigned long WindowsFile::getAttributes(const char* name) { return attributesOf(name); }
unsigned long WindowsFile::getAttributes(const wchar_t* name) { return attributesOf(name); }

void WindowsFile::getAttributes(const char* name, WIN32_FILE_ATTRIBUTE_DATA& data)
{
    ensure(getFileAttributesEx(name, &data), "Error in GetFileAttributesExA");
}
void WindowsFile::getAttributes(const wchar_t* name, WIN32_FILE_ATTRIBUTE_DATA& data)
{
    ensure(getFileAttributesEx(name, &data), "Error in GetFileAttributesExW");
}

unsigned long long WindowsFile::getSize(const char* name) { return sizeOf(name); }
unsigned long long WindowsFile::getSize(const wchar_t* name) { return sizeOf(name); }

bool WindowsFile::isDirectory(const char* name) { return (attributesOf(name) & FILE_ATTRIBUTE_DIRECTORY) != 0; }
bool WindowsFile::isDirectory(const wchar_t* name) { return (attributesOf(name) & FILE_ATTRIBUTE_DIRECTORY) != 0; }
} // namespace tarn
