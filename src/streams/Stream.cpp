#include <tarn/Stream.h>

#include <tarn/Archive.h>
#include <tarn/BasicString.h>
#include <tarn/Exception.h>
#include <tarn/MemoryStream.h>
#include <tarn/Serializable.h>

#include "../foundation/Throw.h"
#include "ArchiveTables.h"
#include "ClassName.h"
#include "NestingLevel.h"

#include <algorithm>

namespace tarn {
static_assert(std::endian::native == std::endian::little, "numbers are written as they lie in memory");
static_assert(sizeof(wchar_t) == 2, "wide strings are UTF-16");

namespace detail {
void throwShortRead(const void* buffer, unsigned int size)
{
    throwError(EndOfFile(
        BasicString<char>::fromFormat("EOF in readFully(%p,%lu)\n", buffer, static_cast<unsigned long>(size))));
}

void throwShortWrite(const void* buffer, unsigned int size)
{
    throwError(EndOfFile(
        BasicString<char>::fromFormat("EOF in writeFully(%p,%lu)\n", buffer, static_cast<unsigned long>(size))));
}
} // namespace detail

void InputStream::readFully(void* buffer, unsigned int size)
{
    if (read(buffer, size) != size)
        detail::throwShortRead(buffer, size);
}

namespace {
// A stream has no data of its own to count in.
thread_local unsigned int depthOnThisThread = 0;
} // namespace

Serializable* InputStream::readObject()
{
    const NestingLevel level(depthOnThisThread);
    const unsigned int length = readUInt32();
    if (ObjectHead::isPlain(length)) {
        Serializable* const object = ObjectHead::createPlain(*this, length, nullptr);
        object->deserialize(*this);
        return object;
    }
    const ObjectHead head(*this, length);
    Serializable* const object = Serializable::create(head.name());
    if (head.isVersioned()) {
        MemoryOutputStream nowhere;
        Archive(*this, nowhere).readBody(*object, head.version(), head.firstWord());
    } else {
        object->deserialize(*this);
    }
    return object;
}

void OutputStream::writeObject(Serializable* object)
{
    const NestingLevel level(depthOnThisThread);
    const ClassName name(typeid(*object));
    if (const Archive::DataVersion version(name, *object); version.isWritten()) {
        MemoryInputStream nothing;
        *this << VersionedHead(name, version.number());
        Archive(nothing, *this).writeBody(*object, version);
        return;
    }
    *this << name.toWrite();
    object->serialize(*this);
}

unsigned long long Seekable::seek(long long offset, whence origin)
{
    setFilePointer(offset, origin);
    return getFilePointer();
}

unsigned long long Seekable::getSize()
{
    const unsigned long long position = getFilePointer();
    const unsigned long long size = seek(0, end);
    setFilePointer(static_cast<long long>(position), begin);
    return size;
}

InputStream& operator>>(InputStream& in, bool& value)
{
    unsigned char byte;
    in.readFully(&byte, 1);
    value = byte != 0;
    return in;
}

namespace {
// A damaged length asks for up to 4 GB: the text grows by pieces, as far as there are data.
template <class Ch> void readPieces(InputStream& in, std::basic_string<Ch>& text, unsigned int left)
{
    constexpr unsigned int piece = 0x8000;
    text.clear();
    while (left > 0) {
        const unsigned int count = std::min(left, piece);
        const std::size_t start = text.size();
        text.resize(start + count);
        in.readFully(text.data() + start, count * static_cast<unsigned int>(sizeof(Ch)));
        left -= count;
    }
}
} // namespace

void detail::readCharacters(InputStream& in, std::string& text, unsigned int length) { readPieces(in, text, length); }
void detail::readCharacters(InputStream& in, std::wstring& text, unsigned int length) { readPieces(in, text, length); }

InputStream& operator>>(InputStream& in, std::string& text)
{
    readPieces(in, text, in.readUInt32());
    return in;
}
InputStream& operator>>(InputStream& in, std::wstring& text)
{
    readPieces(in, text, in.readUInt32());
    return in;
}

OutputStream& operator<<(OutputStream& out, InputStream& in)
{
    constexpr unsigned int piece = 10000;
    // What lies in memory needs no other on its way.
    if (typeid(in) == typeid(MemoryInputStream)) {
        auto& memory = dynamic_cast<MemoryInputStream&>(in);
        for (auto taken = memory.take(piece); !taken.empty(); taken = memory.take(piece))
            out.write(taken.data(), static_cast<unsigned int>(taken.size()));
        return out;
    }
    char buffer[piece];
    while (const unsigned int count = in.read(buffer, sizeof buffer))
        out.write(buffer, count);
    return out;
}
} // namespace tarn
