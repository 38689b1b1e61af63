#include <tarn/Pipe.h>

#include "../foundation/Check.h"

namespace tarn {
namespace {
void keepFromChildren(const WindowsHandle& end)
{
    ensure(SetHandleInformation(end.getHandle(), HANDLE_FLAG_INHERIT, 0),
           "Can't keep the pipe end from child processes");
}
} // namespace

void Pipe::create(unsigned long bufferSize, SECURITY_ATTRIBUTES* attributes)
{
    close();
    HANDLE readEnd = nullptr, writeEnd = nullptr;
    ensure(CreatePipe(&readEnd, &writeEnd, attributes, bufferSize), "Can't create pipe");
    readEnd_.attach(readEnd); // Both ends are closed, so that nothing can fail here.
    writeEnd_.attach(writeEnd);
}

void Pipe::keepReadEnd() { keepFromChildren(readEnd_); }
void Pipe::keepWriteEnd() { keepFromChildren(writeEnd_); }

void Pipe::close()
{
    readEnd_.close();
    writeEnd_.close();
}
} // namespace tarn
