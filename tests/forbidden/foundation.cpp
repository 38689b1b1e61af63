#include <tarn/Debug.h>
#include <tarn/Exception.h>

void buffersOfTheDebuggerAreNotCopied(tarn::DebugBuf<char>& buffer)
{
    // forbidden: use of deleted function .*DebugBuf\(const tarn::DebugBuf
    tarn::DebugBuf<char> copy(buffer);
}

void theMixInIsNoErrorOfItsOwn()
{
    // forbidden: 'tarn::HRESULTHolder' because its destructor is|cannot declare variable .* abstract type
    tarn::HRESULTHolder holder;
}
