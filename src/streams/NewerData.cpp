#include <tarn/Archive.h>
#include <tarn/NewerData.h>

#include "../foundation/Closing.h"

#include <algorithm>
#include <unordered_map>
#include <utility>

namespace tarn {
namespace {
using Parts = std::vector<detail::SealedPart>;

SealedObject* sealedIn(const detail::SealedPart& part) { return dynamic_cast<SealedObject*>(part.object.get()); }
} // namespace

/// Finds the unknown objects that are held by nothing but each other and by what is about to be dropped. Nobody
/// else could open their circles.
class NewerData::NewerDataInternals::Circles {
public:
    explicit Circles(const Parts& dropped)
    {
        visit(dropped);
        for (std::size_t i = 0; i < order_.size(); ++i)
            visit(order_[i]->parts_);
    }

    /// Takes what these objects hold, to be let go of.
    std::vector<Parts> open()
    {
        for (std::size_t i = 0; i < order_.size(); ++i)
            if (Found& found = found_[order_[i]]; found.count > found.references)
                keep(order_[i]);
        std::vector<Parts> parts;
        for (SealedObject* const object : order_)
            if (!found_[object].isKept)
                parts.push_back(std::exchange(object->parts_, {}));
        return parts;
    }

private:
    struct Found {
        unsigned int count = 0;
        unsigned int references = 0; // From what is dropped, and from each other.
        bool isKept = false;
    };

    void visit(const Parts& parts)
    {
        for (const detail::SealedPart& part : parts)
            if (SealedObject* const object = sealedIn(part)) {
                Found& found = found_[object];
                found.count = part.object.getCount();
                if (found.references++ == 0)
                    order_.push_back(object);
            }
    }

    void keep(SealedObject* first)
    {
        std::vector<SealedObject*> left{first};
        while (!left.empty()) {
            SealedObject* const object = left.back();
            left.pop_back();
            if (std::exchange(found_[object].isKept, true))
                continue;
            for (const detail::SealedPart& part : object->parts_)
                if (SealedObject* const next = sealedIn(part))
                    left.push_back(next);
        }
    }

    std::unordered_map<const SealedObject*, Found> found_;
    std::vector<SealedObject*> order_;
};

void NewerData::dropNewerData() noexcept
{
    version_ = 0;
    NewerDataInternals::drop(std::exchange(parts_, {}));
}

void NewerData::NewerDataInternals::drop(Parts parts) noexcept
{
    if (parts.empty())
        return;
    const auto letGo = [](Parts& of) {
        for (detail::SealedPart& part : of)
            Archive::release(part.object);
    };
    std::vector<Parts> inCircles;
    closeQuietly([&] { inCircles = Circles(parts).open(); });
    std::ranges::for_each(inCircles, letGo);
    letGo(parts);
}

NewerData& NewerData::operator=(const NewerData& other)
{
    if (this != &other) {
        NewerData copy(other);
        std::swap(parts_, copy.parts_);
        std::swap(version_, copy.version_);
    }
    return *this;
}

void SealedObject::serialize(OutputStream&) const {}
void SealedObject::deserialize(InputStream&) { dropNewerData(); }
} // namespace tarn
