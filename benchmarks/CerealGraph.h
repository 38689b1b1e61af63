#pragma once

#include "ObjectGraph.h"

#include <istream>
#include <memory>
#include <ostream>
#include <streambuf>

#if __has_include(<cereal/archives/binary.hpp>)
#define HAS_CEREAL 1
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wshadow"
#include <cereal/archives/binary.hpp>
#include <cereal/types/memory.hpp>
#include <cereal/types/polymorphic.hpp>
#include <cereal/types/string.hpp>
#pragma GCC diagnostic pop

namespace {
class StandardBuffer : public std::streambuf {
public:
    explicit StandardBuffer(Buffer& buffer) : buffer_(buffer) {}

protected:
    std::streamsize xsputn(const char* data, std::streamsize size) override
    {
        return buffer_.put(data, static_cast<std::size_t>(size));
    }
    std::streamsize xsgetn(char* data, std::streamsize size) override
    {
        return buffer_.get(data, static_cast<std::size_t>(size));
    }

private:
    Buffer& buffer_;
};

struct CerealItem {
    virtual ~CerealItem() = default;
    template <class A> void serialize(A& archive)
    {
        archive(content.left, content.right, content.a, content.b, content.c, content.d, content.text);
    }

    Content<std::shared_ptr<CerealItem>> content;
};
struct CerealLeaf final : CerealItem {};
struct CerealBranch final : CerealItem {};

void writeCereal(Buffer& buffer, const std::shared_ptr<CerealItem>& root)
{
    StandardBuffer streambuf(buffer);
    std::ostream stream(&streambuf);
    cereal::BinaryOutputArchive archive(stream);
    archive(root);
}

std::shared_ptr<CerealItem> readCereal(Buffer& buffer)
{
    StandardBuffer streambuf(buffer);
    std::istream stream(&streambuf);
    cereal::BinaryInputArchive archive(stream);
    std::shared_ptr<CerealItem> root;
    archive(root);
    return root;
}

std::vector<std::shared_ptr<CerealItem>> makeCerealItems(unsigned count)
{
    return makeGraph<std::shared_ptr<CerealItem>, CerealLeaf, CerealBranch>(count);
}
} // namespace

CEREAL_REGISTER_TYPE(CerealLeaf)
CEREAL_REGISTER_TYPE(CerealBranch)
CEREAL_REGISTER_POLYMORPHIC_RELATION(CerealItem, CerealLeaf)
CEREAL_REGISTER_POLYMORPHIC_RELATION(CerealItem, CerealBranch)
#endif
