#include "DocumentFile.h"

#include "SafeFile.h"
#include "Text.h"

#include <tarn/BufferingStream.h>
#include <tarn/MemoryStream.h>

#include <boost/crc.hpp>

#include <algorithm>
#include <cstring>

// A file is a header and an archive. The check-sum counts the archive and what the header says of it, so
// that each changed byte is noticed before anything is made of the data.

namespace planner {
namespace {
struct Header {
    char magic[8];
    unsigned version;
    unsigned size; ///< Of the archive, in bytes.
    unsigned checkSum;
};
static_assert(sizeof(Header) == 20);
constexpr char magic[8] = {'P', 'l', 'a', 'n', 'n', 'e', 'r', '\x1A'};
constexpr unsigned version = 1;

unsigned checkSumOf(const Header& header, const void* archive)
{
    boost::crc_32_type sum;
    sum.process_bytes(&header.version, sizeof header.version);
    sum.process_bytes(&header.size, sizeof header.size);
    sum.process_bytes(archive, header.size);
    return sum.checksum();
}

[[noreturn]] void refuse(const std::wstring& file, const std::string& reason)
{
    throw tarn::Exception('"' + narrow(file) + "\" " + reason);
}

std::string contentOf(const std::wstring& file)
{
    std::string content = readWholeFile(file);
    Header header{};
    if (content.size() >= sizeof header.magic)
        std::memcpy(&header, content.data(), std::min(sizeof header, content.size()));
    if (std::memcmp(header.magic, magic, sizeof magic) != 0)
        refuse(file, "is not a planner document");
    if (content.size() < sizeof header)
        refuse(file, "is damaged: it ends too early");
    if (header.version != version)
        refuse(file, "has the version " + std::to_string(header.version) + ", which this program cannot read");
    content.erase(0, sizeof header);
    if (header.size != content.size())
        refuse(file, "is damaged: it has " + std::to_string(content.size()) + " bytes of data instead of " +
                         std::to_string(header.size));
    if (header.checkSum != checkSumOf(header, content.data()))
        refuse(file, "is damaged: the check-sum is wrong");
    return content;
}

// Without pointers of a class with a destructor, what a failed read leaves behind would be freed without
// running any.
DocumentPtr readArchive(const std::string& content)
{
    std::vector<tarn::ref_ptr<Item>> items;
    tarn::MemoryInputStream in(content.data(), static_cast<unsigned>(content.size()));
    tarn::MemoryOutputStream nothing;
    tarn::Archive archive(in, nothing);
    DocumentPtr document;
    try {
        archive >> document;
    } catch (...) {
        for (const auto& object : archive.getSharedObjects())
            items.push_back(tarn::ref_ptr_cast<Item>(object));
        throw;
    }
    return document;
}
} // namespace

void saveDocument(const Document& document, const std::wstring& file)
{
    tarn::MemoryInputStream nothing;
    tarn::MemoryOutputStream archived;
    archived.setFilePointer(sizeof(Header), tarn::Seekable::begin);
    tarn::BufferingOutputStream buffered(archived);
    tarn::Archive(nothing, buffered).writeObject(&document);
    buffered.flush();
    const auto size = static_cast<unsigned>(archived.getSize());

    std::string content(static_cast<const char*>(archived.getData()), size);
    Header header{};
    std::memcpy(header.magic, magic, sizeof magic);
    header.version = version;
    header.size = size - static_cast<unsigned>(sizeof header);
    header.checkSum = checkSumOf(header, content.data() + sizeof header);
    std::memcpy(content.data(), &header, sizeof header);
    replaceFile(file, content);
}

DocumentPtr loadDocument(const std::wstring& file) { return readArchive(contentOf(file)); }
} // namespace planner
