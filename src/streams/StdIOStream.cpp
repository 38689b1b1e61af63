#include <tarn/StdIOStream.h>

#include "../foundation/CRTCheck.h"
#include "../foundation/Quoted.h"

#include <utility>

#include <wchar.h>

namespace tarn {
namespace {
FILE* openFile(const char* name, const char* mode) { return fopen(name, mode); }
FILE* openFile(const wchar_t* name, const wchar_t* mode) { return _wfopen(name, mode); }

template <class Ch> FILE* openedFile(const Ch* name, const Ch* mode)
{
    return ensureCRT(nullptr, openFile(name, mode),
                     [&] { return "Can't open stdio file " + quoted(name) + " with ops " + quoted(mode); });
}

// What the runtime library itself would not survive: a position asked of no file.
FILE* existing(FILE* file)
{
    if (!file)
        errno = EBADF;
    return file;
}
} // namespace

StdIOStream::StdIOStream(const char* name, const char* mode) { StdIOStream::open(name, mode); }
StdIOStream::StdIOStream(const wchar_t* name, const wchar_t* mode) { StdIOStream::open(name, mode); }
StdIOStream::StdIOStream(FILE* file) { attach(file); }
StdIOStream::StdIOStream(StdIOStream&& other) noexcept
    : file_(std::exchange(other.file_, nullptr)), owned_(std::exchange(other.owned_, false))
{
}
StdIOStream& StdIOStream::operator=(StdIOStream&& other) noexcept
{
    if (this != &other) {
        StdIOStream::close();
        file_ = std::exchange(other.file_, nullptr);
        owned_ = std::exchange(other.owned_, false);
    }
    return *this;
}
StdIOStream::~StdIOStream() { StdIOStream::close(); }

unsigned int StdIOStream::write(const void* buffer, unsigned int size)
{
    return file_ ? static_cast<unsigned int>(fwrite(buffer, 1, size, file_)) : 0;
}

void StdIOStream::flush()
{
    // Without a file the runtime library would flush all that the process has open.
    if (file_ && fflush(file_) != 0)
        throwCRTError("Can't flush stdio file");
}

void StdIOStream::close()
{
    if (file_ && owned_)
        fclose(file_);
    owned_ = false;
    file_ = nullptr;
}

void StdIOStream::open(const wchar_t* name, const wchar_t* mode)
{
    close();
    file_ = openedFile(name, mode);
    owned_ = true;
}

void StdIOStream::open(const char* name, const char* mode)
{
    close();
    file_ = openedFile(name, mode);
    owned_ = true;
}

unsigned int StdIOStream::read(void* buffer, unsigned int size)
{
    return file_ ? static_cast<unsigned int>(fread(buffer, 1, size, file_)) : 0;
}

void StdIOStream::setFilePointer(long long offset, whence origin)
{
    const int from = origin == current ? SEEK_CUR : origin == end ? SEEK_END : SEEK_SET;
    if (!existing(file_) || fseek(file_, static_cast<long>(offset), from) != 0)
        throwCRTError([&] { return "fseek(" + std::to_string(offset) + "," + std::to_string(origin) + ") failed"; });
}

unsigned long long StdIOStream::getFilePointer()
{
    const long position = existing(file_) ? ftell(file_) : -1;
    if (position < 0)
        throwCRTError("Can't tell the current file pointer position in StdIOStream::tell");
    return static_cast<unsigned long>(position);
}

void StdIOStream::attach(FILE* file)
{
    close();
    file_ = file;
    owned_ = true;
}

FILE* StdIOStream::detach()
{
    owned_ = false;
    return file_;
}
} // namespace tarn
