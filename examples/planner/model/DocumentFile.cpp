#include "DocumentFile.h"

#include "SafeFile.h"
#include "Text.h"

#include <tarn/BufferingStream.h>
#include <tarn/Fields.h>
#include <tarn/MemoryStream.h>

#include <boost/crc.hpp>

#include <string_view>

// A file is a header and an archive. The check-sum counts the archive and what the header says of it, so
// that each changed byte is noticed before anything is made of the data.

namespace planner {
namespace {
struct Header {
    unsigned version;
    unsigned size; ///< Of the archive, in bytes.
    unsigned checkSum;

    auto all() { return tarn::fields(version, size, checkSum); }
};
constexpr std::string_view magic = "Planner\x1A";
constexpr std::size_t headerSize = magic.size() + sizeof(Header);
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
    if (!content.starts_with(magic))
        refuse(file, "is not a planner document");
    if (content.size() < headerSize)
        refuse(file, "is damaged: it ends too early");
    Header header{};
    tarn::MemoryInputStream in(content.data() + magic.size(), sizeof header);
    in >> header.all();
    if (header.version != version)
        refuse(file, "has the version " + std::to_string(header.version) + ", which this program cannot read");
    content.erase(0, headerSize);
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
    tarn::MemoryOutputStream content;
    content.writeFully(magic.data(), static_cast<unsigned>(magic.size()));
    content.setFilePointer(headerSize, tarn::Seekable::begin);
    tarn::BufferingOutputStream buffered(content);
    tarn::Archive(nothing, buffered).writeObject(&document);
    buffered.flush();

    const auto size = static_cast<std::size_t>(content.getSize());
    const char* const bytes = static_cast<const char*>(content.getData());
    Header header{version, static_cast<unsigned>(size - headerSize), 0};
    header.checkSum = checkSumOf(header, bytes + headerSize);
    content.setFilePointer(magic.size(), tarn::Seekable::begin);
    content << header.all();
    replaceFile(file, {bytes, size});
}

DocumentPtr loadDocument(const std::wstring& file) { return readArchive(contentOf(file)); }
} // namespace planner
