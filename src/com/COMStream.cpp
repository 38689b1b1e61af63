#include <tarn/COMStream.h>

#include <tarn/IUnknownImpl.h>

#include <algorithm>

namespace tarn {
unsigned int COMStream::read(void* buffer, unsigned int size)
{
    ULONG count = 0;
    HRESULTHolder::throwOnError(stream_->Read(buffer, size, &count), "Can't read from COM stream");
    return count;
}

unsigned int COMStream::write(const void* buffer, unsigned int size)
{
    ULONG count = 0;
    HRESULTHolder::throwOnError(stream_->Write(buffer, size, &count), "Can't write to COM stream");
    return count;
}

void COMStream::flush() { HRESULTHolder::throwOnError(stream_->Commit(STGC_DEFAULT), "Can't commit COM stream"); }

unsigned long long COMStream::moveTo(long long offset, DWORD origin) const
{
    LARGE_INTEGER distance;
    distance.QuadPart = offset;
    ULARGE_INTEGER position{};
    HRESULTHolder::throwOnError(stream_->Seek(distance, origin, &position), "Can't seek in COM stream");
    return position.QuadPart;
}

void COMStream::setFilePointer(long long offset, whence origin)
{
    static_assert(int(begin) == STREAM_SEEK_SET && int(current) == STREAM_SEEK_CUR && int(end) == STREAM_SEEK_END);
    moveTo(offset, static_cast<DWORD>(origin));
}

unsigned long long COMStream::getFilePointer() { return moveTo(0, STREAM_SEEK_CUR); }

namespace {
class StreamObject final : public IStream, public IUnknownImpl {
public:
    StreamObject(std::shared_ptr<void> owner, InputStream* in, OutputStream* out)
        : IUnknownImpl(nullptr), owner_(std::move(owner)), in_(in), out_(out),
          position_(in ? dynamic_cast<Seekable*>(in) : dynamic_cast<Seekable*>(out))
    {
    }
    TARN_IUNKNOWN_METHODS

    HRESULT STDMETHODCALLTYPE Read(void* buffer, ULONG size, ULONG* count) override
    {
        return transfer(in_, buffer, count, [&](ULONG& done) {
            while (done < size) { // A pipe delivers in pieces, and who gets less takes that for the end.
                const unsigned piece = in_->read(static_cast<char*>(buffer) + done, size - done);
                if (piece == 0)
                    return S_FALSE;
                done += piece;
            }
            return S_OK;
        });
    }
    HRESULT STDMETHODCALLTYPE Write(const void* buffer, ULONG size, ULONG* count) override
    {
        return transfer(out_, buffer, count, [&](ULONG& done) {
            done = out_->write(buffer, size);
            return done == size ? S_OK : STG_E_MEDIUMFULL;
        });
    }
    HRESULT STDMETHODCALLTYPE Seek(LARGE_INTEGER offset, DWORD origin, ULARGE_INTEGER* position) override
    {
        return asHRESULT([&] {
            if (!position_ || origin > STREAM_SEEK_END)
                return STG_E_INVALIDFUNCTION;
            const unsigned long long now = position_->seek(offset.QuadPart, static_cast<Seekable::whence>(origin));
            if (position)
                position->QuadPart = now;
            return S_OK;
        });
    }
    HRESULT STDMETHODCALLTYPE CopyTo(IStream* target, ULARGE_INTEGER size, ULARGE_INTEGER* read,
                                     ULARGE_INTEGER* written) override
    {
        return asHRESULT([&] {
            ULARGE_INTEGER ignored[2], &taken = read ? *read : ignored[0], &given = written ? *written : ignored[1];
            taken.QuadPart = given.QuadPart = 0;
            if (!target)
                return STG_E_INVALIDPOINTER;
            char buffer[0x4000];
            while (taken.QuadPart < size.QuadPart) {
                const auto most = std::min<ULONGLONG>(sizeof buffer, size.QuadPart - taken.QuadPart);
                ULONG piece = 0, count = 0;
                HRESULT result = Read(buffer, static_cast<ULONG>(most), &piece);
                taken.QuadPart += piece;
                if (SUCCEEDED(result) && piece != 0)
                    result = target->Write(buffer, piece, &count);
                given.QuadPart += count;
                if (FAILED(result) || piece == 0)
                    return FAILED(result) ? result : S_OK;
            }
            return S_OK;
        });
    }
    HRESULT STDMETHODCALLTYPE Commit(DWORD) override
    {
        return asHRESULT([this] {
            if (auto* const buffered = dynamic_cast<BufferedOutputStream*>(out_))
                buffered->flush();
        });
    }
    HRESULT STDMETHODCALLTYPE Stat(STATSTG* info, DWORD) override
    {
        return asHRESULT([&] {
            if (!info)
                return STG_E_INVALIDPOINTER;
            *info = {}; // It has no name.
            info->type = STGTY_STREAM;
            info->cbSize.QuadPart = position_ ? position_->getSize() : 0;
            info->grfMode = in_ && out_ ? STGM_READWRITE : out_ ? STGM_WRITE : STGM_READ;
            return S_OK;
        });
    }
    HRESULT STDMETHODCALLTYPE SetSize(ULARGE_INTEGER) override { return STG_E_INVALIDFUNCTION; }
    HRESULT STDMETHODCALLTYPE Revert() override { return STG_E_INVALIDFUNCTION; }
    HRESULT STDMETHODCALLTYPE LockRegion(ULARGE_INTEGER, ULARGE_INTEGER, DWORD) override
    {
        return STG_E_INVALIDFUNCTION;
    }
    HRESULT STDMETHODCALLTYPE UnlockRegion(ULARGE_INTEGER, ULARGE_INTEGER, DWORD) override
    {
        return STG_E_INVALIDFUNCTION;
    }
    HRESULT STDMETHODCALLTYPE Clone(IStream**) override { return STG_E_INVALIDFUNCTION; }

protected:
    void* queryInterface(const GUID& iid) override
    {
        return iid == IID_IStream || iid == IID_ISequentialStream ? static_cast<IStream*>(this)
                                                                  : IUnknownImpl::queryInterface(iid);
    }

private:
    template <class Call> static HRESULT transfer(const void* stream, const void* buffer, ULONG* count, Call call)
    {
        ULONG ignored = 0, &done = count ? *count : ignored;
        done = 0;
        if (!stream)
            return STG_E_ACCESSDENIED;
        return buffer ? asHRESULT([&] { return call(done); }) : STG_E_INVALIDPOINTER;
    }

    const std::shared_ptr<void> owner_;
    InputStream* const in_;
    OutputStream* const out_;
    Seekable* const position_;
};
} // namespace

COMInterfacePointer<IStream> detail::makeCOMStream(std::shared_ptr<void> owner, InputStream* in, OutputStream* out)
{
    return new StreamObject(std::move(owner), in, out);
}
} // namespace tarn
