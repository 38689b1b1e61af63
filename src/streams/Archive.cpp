#include <tarn/Archive.h>

#include "../foundation/Throw.h"
#include "ClassName.h"
#include "NestingLevel.h"

namespace tarn {
namespace {
// The first word of an object record; any other is the key of a reference record.
constexpr unsigned int objectCookie = 0;
constexpr unsigned int singleKey = 0;
} // namespace

Archive::Archive(InputStream& input, OutputStream& output) : input_(input), output_(output) {}
Archive::Archive(const Archive& other)
    : InputStream(other), OutputStream(other), input_(other.input_), output_(other.output_),
      writtenKeys_(other.writtenKeys_), singleKeys_(other.singleKeys_), sharedObjects_(other.sharedObjects_),
      strayObjects_(other.strayObjects_), keys_(other.keys_) // It begins on the outside, wherever it is made.
{
}
Archive::~Archive() = default;

unsigned int Archive::read(void* buffer, unsigned int size) { return input_.read(buffer, size); }
unsigned int Archive::write(const void* buffer, unsigned int size) { return output_.write(buffer, size); }

void Archive::writeObject(const Serializable* object) { writeObject(object, singleKey); }

void Archive::writeObject(const ref_ptr<Serializable>& ptr)
{
    const auto counter = reinterpret_cast<std::uintptr_t>(ptr.getIdentity());
    writeObject(ptr.get(), keys_.of(counter, writtenKeys_));
}

void Archive::writeObject(const Serializable* object, unsigned long key)
{
    const auto word = static_cast<unsigned int>(key);
    OutputStream& out = *this;
    if (word != singleKey && writtenKeys_.contains(word)) {
        out << word;
        return;
    }
    const NestingLevel level(depth_);
    // The key is known before the data are written, so that a circle leads to a reference.
    if (word != singleKey)
        writtenKeys_.insert(word);
    out << objectCookie << word << ClassName(typeid(*object)).text();
    object->serialize(*this);
}

Serializable* Archive::readObject()
{
    if (readUInt32() != objectCookie)
        throwError(tarn::Exception("In Archive::ReadObject war das eingelesene Cookie != 0.\n"
                                   "Dies deutet auf einen Fehler im Bin\xE4rstream hin!"));
    const NestingLevel level(depth_);
    const unsigned int key = readUInt32();
    Serializable* const object = createNamedOn(*this);
    object->deserialize(*this);
    singleKeys_.insert(key);
    return object;
}

void Archive::readObject(ref_ptr<Serializable>& ptr)
{
    if (const unsigned int reference = readUInt32(); reference != objectCookie) {
        const auto found = sharedObjects_.find(reference);
        if (found == sharedObjects_.end())
            throwError(
                Serializable::Exception("Der Stream enth\xE4lt eine Objektreferenz, nicht jedoch das Objekt selbst!"));
        ptr = found->second;
        return;
    }
    const NestingLevel level(depth_);
    const unsigned int key = readUInt32();
    if (singleKeys_.contains(key))
        throwError(tarn::Exception("Das Objekt wurde zuvor als Single-Objekt gelesen und kann daher nicht als Referenz "
                                   "zur\xFC"
                                   "ckgegeben werden.\n"
                                   "M\xF6glicherweise liegt ein Fehler im Format des Bin\xE4streams vor!"));
    ref_ptr<Serializable> object(createNamedOn(*this));
    // Known before its data are read, so that references inside them find it.
    if (key != singleKey)
        keep(key, object);
    try {
        object->deserialize(*this);
    } catch (...) {
        if (object.getCount() == 1)
            strayObjects_.push_back(object);
        throw;
    }
    ptr.swap(object);
}

void Archive::keep(unsigned int key, const ref_ptr<Serializable>& object)
{
    ref_ptr<Serializable>& kept = sharedObjects_[key];
    if (kept.getCount() == 1)
        strayObjects_.push_back(kept);
    kept = object;
}

void Archive::refuse(const ref_ptr<Serializable>& object, const std::type_info& expected)
{
    if (object.getCount() == 1)
        strayObjects_.push_back(object);
    const Serializable& found = *object;
    throwError(Serializable::Exception("An object of " + std::string(ClassName(typeid(found)).text()) +
                                       " was read where one of " + ClassName(expected).text() + " is expected"));
}

std::vector<ref_ptr<Serializable>> Archive::getSharedObjects() const
{
    std::vector<ref_ptr<Serializable>> objects = strayObjects_;
    objects.reserve(objects.size() + sharedObjects_.size());
    for (const auto& [key, object] : sharedObjects_)
        objects.push_back(object);
    return objects;
}

namespace {
template <class Stream> Archive& archiveBehind(Stream& stream)
{
    // The exact class first: asking for a derived one takes ten times as long.
    if (typeid(stream) == typeid(Archive))
        return static_cast<Archive&>(stream);
    if (auto* const archive = dynamic_cast<Archive*>(&stream))
        return *archive;
    throwError(tarn::Exception("The stream is not an archive, which references between objects need"));
}
} // namespace

Archive& Archive::behind(InputStream& in) { return archiveBehind(in); }
Archive& Archive::behind(OutputStream& out) { return archiveBehind(out); }
} // namespace tarn
