#include <tarn/LowLevelIOStream.h>

#include <tarn/BasicString.h>

#include "../foundation/CRTCheck.h"
#include "../foundation/Closing.h"

#include <utility>

#include <io.h>
#include <sys/stat.h>

namespace tarn {
namespace {
using Text = BasicString<char>;

// Without a mode the runtime library would take whatever lies behind the arguments for one.
int openedFile(const char* name, int flags, int mode = _S_IREAD | _S_IWRITE)
{
    return ensureCRT(-1, _open(name, flags, mode),
                     [&] { return Text::fromFormat("Fehler in LowLevelIOStream::open(%s,%x)\n", name, flags); });
}
} // namespace

LowLevelIOStream::LowLevelIOStream(const char* name, int flags) { open(name, flags); }
LowLevelIOStream::LowLevelIOStream(const char* name, int flags, int mode) { open(name, flags, mode); }
LowLevelIOStream::LowLevelIOStream(LowLevelIOStream&& other) noexcept : fd_(other.detach()) {}
LowLevelIOStream& LowLevelIOStream::operator=(LowLevelIOStream&& other) noexcept
{
    if (this != &other) {
        closeQuietly([this] { LowLevelIOStream::close(); });
        fd_ = other.detach();
    }
    return *this;
}
LowLevelIOStream::~LowLevelIOStream() noexcept(false)
{
    closeAtEnd([this] { LowLevelIOStream::close(); });
}

unsigned int LowLevelIOStream::write(const void* buffer, unsigned int size)
{
    return static_cast<unsigned int>(ensureCRT(-1, _write(fd_, buffer, size), [&] {
        return Text::fromFormat("Error in LowLevelIOStream::write(%p,%u)", buffer, size);
    }));
}

void LowLevelIOStream::flush()
{
    if (_commit(fd_) != 0)
        throwCRTError("Can't flush");
}

void LowLevelIOStream::close()
{
    if (fd_ == -1)
        return;
    if (_close(fd_) != 0)
        throwCRTError("LowLevelIOStream::close()");
    fd_ = -1;
}

void LowLevelIOStream::open(const char* name, int flags)
{
    close();
    fd_ = openedFile(name, flags);
}

void LowLevelIOStream::open(const char* name, int flags, int mode)
{
    close();
    fd_ = openedFile(name, flags, mode);
}

void LowLevelIOStream::attach(int descriptor)
{
    close();
    fd_ = descriptor;
}

int LowLevelIOStream::detach() noexcept { return std::exchange(fd_, -1); }

unsigned int LowLevelIOStream::read(void* buffer, unsigned int size)
{
    return static_cast<unsigned int>(ensureCRT(-1, _read(fd_, buffer, size), [&] {
        return Text::fromFormat("Fehler in LowLevelIOStream::read(%p,%u)", buffer, size);
    }));
}

unsigned long long LowLevelIOStream::seek(long long offset, whence origin)
{
    return static_cast<unsigned long long>(ensureCRT(-1LL, _lseeki64(fd_, offset, origin), [&] {
        return Text::fromFormat("Fehler in LowLevelIOStream::seek(%I64d,%d)\n", offset, static_cast<int>(origin));
    }));
}
} // namespace tarn
