#pragma once

#include <tarn/COMInterfacePointer.h>
#include <tarn/Export.h>
#include <tarn/Stream.h>

#include <concepts>
#include <memory>
#include <utility>

namespace tarn {
/// A COM stream (of a clipboard, a storage, a resource in memory) as one of the library's, to read, write and seek.
///
/// Holds a reference to it. Nothing is buffered here. Failures throw what HRESULTHolder::throwOnError() makes of them.
class TARN_API COMStream final : public BufferedOutputStream, public SeekableInputStream {
public:
    /// With a null pointer each use throws COMError(`E_POINTER`).
    explicit COMStream(COMInterfacePointer<IStream> stream) : stream_(std::move(stream)) {}

    /// Throws "Can't read from COM stream".
    unsigned int read(void* buffer, unsigned int size) override;
    /// Throws "Can't write to COM stream".
    unsigned int write(const void* buffer, unsigned int size) override;
    /// Throw "Can't commit COM stream".
    ///@{
    void flush() override;
    void close() override { flush(); }
    ///@}
    /// Throw "Can't seek in COM stream".
    ///@{
    void setFilePointer(long long offset, whence origin) override;
    unsigned long long getFilePointer() override;
    ///@}

    /// Lent.
    IStream* getStream() const { return stream_.get(); }

private:
    unsigned long long moveTo(long long offset, DWORD origin) const;

    COMInterfacePointer<IStream> stream_;
};

namespace detail {
TARN_API COMInterfacePointer<IStream> makeCOMStream(std::shared_ptr<void> owner, InputStream* in, OutputStream* out);

template <class Base, class Stream> Base* asBase(Stream* stream)
{
    if constexpr (std::derived_from<Stream, Base>)
        return stream;
    else
        return nullptr;
}
} // namespace detail

/// One of the library's streams as a COM stream, for whom wants one. What it cannot (write to an InputStream, seek in a
/// pipe) is refused with `STG_E_ACCESSDENIED` or `STG_E_INVALIDFUNCTION`, and so are clones and regions that are
/// locked; what the stream throws becomes the result.
///
/// Others may hold references for long: give a shared pointer, or a stream that outlives the last of them. One thread
/// at a time uses it.
///@{
template <class Stream> COMInterfacePointer<IStream> makeCOMStream(const std::shared_ptr<Stream>& stream)
{
    return detail::makeCOMStream(stream, detail::asBase<InputStream>(stream.get()),
                                 detail::asBase<OutputStream>(stream.get()));
}
template <class Stream> COMInterfacePointer<IStream> makeCOMStream(Stream& stream)
{
    return detail::makeCOMStream(nullptr, detail::asBase<InputStream>(&stream), detail::asBase<OutputStream>(&stream));
}
///@}
} // namespace tarn
