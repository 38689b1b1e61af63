#include <tarn/Archive.h>

#include "../foundation/Throw.h"
#include "ArchiveTables.h"
#include "ClassName.h"
#include "NestingLevel.h"

#include <cstring>

namespace tarn {
namespace {
// The first word of an object record; any other is the key of a reference record.
constexpr unsigned int objectCookie = 0;
constexpr unsigned int singleKey = 0;
} // namespace

Archive::Archive(InputStream& input, OutputStream& output)
    : input_(input), output_(output), tables_(std::make_unique<Tables>())
{
}
Archive::Archive(const Archive& other)
    : InputStream(other), OutputStream(other), input_(other.input_), output_(other.output_),
      tables_(std::make_unique<Tables>(*other.tables_)) // It begins on the outside, wherever it is made.
{
}
Archive::~Archive() = default;

unsigned int Archive::read(void* buffer, unsigned int size) { return input_.read(buffer, size); }
unsigned int Archive::write(const void* buffer, unsigned int size) { return output_.write(buffer, size); }

void Archive::writeObject(const Serializable* object) { writeObject(object, singleKey); }

void Archive::writeObject(const ref_ptr<Serializable>& ptr)
{
    const auto counter = reinterpret_cast<std::uintptr_t>(ptr.getIdentity());
    writeObject(ptr.get(), tables_->keys.of(counter, tables_->written));
}

namespace {
// Two words and the class's name in one piece. As of any text only the name's length is guarded against a short write.
void writeHead(OutputStream& out, const Serializable* object, unsigned int key)
{
    if (!object)
        out << objectCookie << key; // What comes next fails.
    const ClassName name(typeid(*object));
    const char* const text = name.toWrite();
    const auto length = static_cast<unsigned int>(std::strlen(text));
    const unsigned int words[] = {objectCookie, key, length};
    char head[128];
    if (length > sizeof head - sizeof words) {
        out << objectCookie << key << text;
        return;
    }
    std::memcpy(head, words, sizeof words);
    std::memcpy(head + sizeof words, text, length); // NOLINT(bugprone-not-null-terminated-result): its length is known
    const unsigned int size = sizeof words + length;
    const unsigned int count = out.write(head, size);
    if (count < sizeof words || count > size)
        detail::throwShortWrite(head, sizeof words[0]);
}

void writeRecord(OutputStream& archive, const Serializable* object, unsigned int key)
{
    writeHead(archive, object, key);
    object->serialize(archive);
}
} // namespace

void Archive::writeObject(const Serializable* object, unsigned long key)
{
    const auto word = static_cast<unsigned int>(key);
    if (word == singleKey) {
        const NestingLevel level(depth_);
        writeRecord(*this, object, word);
        return;
    }
    auto place = tables_->written.placeFor(word);
    if (place) {
        static_cast<OutputStream&>(*this) << word;
        return;
    }
    const NestingLevel level(depth_);
    place.put(); // Before the data are written, so that a circle leads to a reference.
    writeRecord(*this, object, word);
}

Serializable* Archive::readObject()
{
    if (readUInt32() != objectCookie)
        throwError(tarn::Exception("In Archive::ReadObject war das eingelesene Cookie != 0.\n"
                                   "Dies deutet auf einen Fehler im Bin\xE4rstream hin!"));
    const NestingLevel level(depth_);
    const unsigned int key = readUInt32();
    tables_->single.makeRoom(depth_); // For the objects around it, too: none is lost later for want of memory.
    Serializable* const object = createNamedOn(*this);
    object->deserialize(*this);
    tables_->addSingle(key);
    return object;
}

void Archive::readObject(ref_ptr<Serializable>& ptr)
{
    if (const unsigned int reference = readUInt32(); reference != objectCookie) {
        const unsigned int* const place = tables_->shared.find(reference);
        if (!place)
            throwError(
                Serializable::Exception("Der Stream enth\xE4lt eine Objektreferenz, nicht jedoch das Objekt selbst!"));
        ptr = tables_->objects[*place];
        return;
    }
    const NestingLevel level(depth_);
    const unsigned int key = readUInt32();
    if (tables_->isSingle(key))
        throwError(tarn::Exception("Das Objekt wurde zuvor als Single-Objekt gelesen und kann daher nicht als Referenz "
                                   "zur\xFC"
                                   "ckgegeben werden.\n"
                                   "M\xF6glicherweise liegt ein Fehler im Format des Bin\xE4streams vor!"));
    tables_->makeRoom();
    Serializable* const made = createNamedOn(*this);
    ref_ptr<Serializable> object(tables_->counts.take(), made);
    // Known before its data are read, so that references inside them find it, and it is not lost when they fail.
    const unsigned int place = tables_->add(key, object);
    object->deserialize(*this);
    if (key == singleKey)
        tables_->drop(place);
    ptr.swap(object);
}

void Archive::refuse(const ref_ptr<Serializable>& object, const std::type_info& expected)
{
    if (object.getCount() == 1)
        tables_->objects.push_back(object);
    const Serializable& found = *object;
    throwError(Serializable::Exception("An object of " + std::string(ClassName(typeid(found)).text()) +
                                       " was read where one of " + ClassName(expected).text() + " is expected"));
}

std::vector<ref_ptr<Serializable>> Archive::getSharedObjects() const
{
    std::vector<ref_ptr<Serializable>> objects = tables_->objects;
    std::erase(objects, nullptr);
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
