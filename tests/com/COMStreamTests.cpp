#include "Test.h"

#include <tarn/Archive.h>
#include <tarn/BufferingStream.h>
#include <tarn/COMStream.h>
#include <tarn/IUnknownImpl.h>
#include <tarn/MemoryStream.h>
#include <tarn/StandardStreams.h>

#include "FailureOf.h"

namespace {
COMInterfacePointer<IStream> platformStream()
{
    COMInterfacePointer<IStream> stream;
    REQUIRE(CreateStreamOnHGlobal(nullptr, TRUE, stream.put()) == S_OK);
    return stream;
}

/// Two bytes at a time, then a failure; takes three.
struct Slow : InputStream, OutputStream {
    unsigned int read(void* buffer, unsigned int size) override
    {
        if (reads++ == 3)
            throw WindowsError(ERROR_READ_FAULT);
        std::fill_n(static_cast<char*>(buffer), std::min(size, 2u), 'x');
        return std::min(size, 2u);
    }
    unsigned int write(const void*, unsigned int size) override { return std::min(size, 3u); }
    int reads = 0;
};
} // namespace

TEST_CASE("COMStream: a stream of the platform's is one of the library's")
{
    COMStream stream(platformStream());
    stream << 42 << L"\x0416";
    stream.flush();
    CHECK((stream.getSize() == 10 && stream.getFilePointer() == 10));
    stream.setFilePointer(-10, Seekable::current);
    int number = 0;
    BasicString<wchar_t> text;
    stream >> number >> text;
    CHECK((number == 42 && text == L"\x0416" && stream.read(&number, 4) == 0));
    CHECK_THROWS_AS(stream.setFilePointer(-1, Seekable::begin), std::exception);
    CHECK_THROWS_AS(COMStream(nullptr).flush(), COMError);
    Slow slow;
    COMStream failing(makeCOMStream(slow));
    const auto whole = makeCOMStream(slow); // It has no transactions, locks and clones.
    COMInterfacePointer<IStream> none;
    for (const HRESULT result : {whole->Revert(), whole->SetSize({}), whole->LockRegion({}, {}, 0),
                                 whole->UnlockRegion({}, {}, 0), whole->Clone(none.put())})
        CHECK(result == STG_E_INVALIDFUNCTION);
    char bytes[10];
    expectWindowsError([&] { failing.read(bytes, 10); }, ERROR_READ_FAULT, "Can't read from COM stream");
}

TEST_CASE("makeCOMStream: one of the library's is a stream for the platform")
{
    const unsigned before = IUnknownImpl::getInstanceCount();
    {
        const auto memory = std::make_shared<MemoryOutputStream>();
        const auto stream = makeCOMStream(memory);
        CHECK(memory.use_count() == 2);
        CHECK(WriteClassStm(stream, IID_IStream) == S_OK);
        STATSTG info;
        CHECK((stream->Stat(&info, 0) == S_OK && info.cbSize.QuadPart == 16 && info.grfMode == STGM_WRITE));
        CLSID read;
        CHECK(ReadClassStm(stream, &read) == STG_E_ACCESSDENIED);
        MemoryInputStream in(memory->getData(), 16);
        const auto source = makeCOMStream(in);
        CHECK((ReadClassStm(source, &read) == S_OK && read == IID_IStream));
        CHECK(ReadClassStm(source, &read) != S_OK);

        const auto target = platformStream();
        ULARGE_INTEGER taken, given;
        CHECK((source->Seek({.QuadPart = 1}, STREAM_SEEK_SET, &taken) == S_OK && taken.QuadPart == 1));
        CHECK(source->Seek({}, STREAM_SEEK_END + 1, nullptr) == STG_E_INVALIDFUNCTION);
        CHECK(source->CopyTo(target, {.QuadPart = 100'000}, &taken, &given) == S_OK);
        CHECK((taken.QuadPart == 15 && given.QuadPart == 15));
        CHECK(source->QueryInterface(IID_IStorage, reinterpret_cast<void**>(&given)) == E_NOINTERFACE);
        CHECK(source->SetSize({}) == STG_E_INVALIDFUNCTION);
    }
    CHECK(IUnknownImpl::getInstanceCount() == before);
}

TEST_CASE("makeCOMStream: pieces become whole, and failures results")
{
    Slow slow;
    const auto stream = makeCOMStream(slow);
    char bytes[10];
    ULONG count = 0;
    CHECK((stream->Read(bytes, 5, &count) == S_OK && count == 5));
    CHECK((stream->Read(bytes, 1, &count) == HRESULT_FROM_WIN32(ERROR_READ_FAULT) && count == 0));
    CHECK((stream->Write("12345", 5, &count) == STG_E_MEDIUMFULL && count == 3));
    CHECK(stream->Seek({}, STREAM_SEEK_SET, nullptr) == STG_E_INVALIDFUNCTION);
    CHECK(stream->Read(nullptr, 5, &count) == STG_E_INVALIDPOINTER);
    CHECK(stream->Commit(0) == S_OK);
    STATSTG info;
    CHECK((stream->Stat(&info, 0) == S_OK && info.cbSize.QuadPart == 0 && info.grfMode == STGM_READWRITE));
    MemoryOutputStream memory;
    BufferingOutputStream buffering(memory);
    const std::vector<char> many(40'000);
    MemoryInputStream source(many.data(), 40'000);
    const auto buffered = makeCOMStream(buffering);
    CHECK(makeCOMStream(source)->CopyTo(buffered, {.QuadPart = 39'999}, nullptr, nullptr) == S_OK);
    CHECK((memory.getSize() < 39'999 && buffered->Commit(0) == S_OK && memory.getSize() == 39'999));
}
