#include <tarn/Archive.h>

#include <tarn/FramedStream.h>
#include <tarn/NewerData.h>

#include "../foundation/Closing.h"
#include "../foundation/FailureTail.h"
#include "../foundation/Throw.h"
#include "ArchiveTables.h"
#include "ClassName.h"
#include "NestingLevel.h"

#include <algorithm>
#include <cstring>
#include <optional>

namespace tarn {
namespace {
// The first word of an object record; any other is the key of a reference record.
constexpr unsigned int objectCookie = 0;
constexpr unsigned int singleKey = 0;

constexpr std::size_t longestWrite = 0x7FFFFFFF;
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

unsigned int Archive::read(void* buffer, unsigned int size)
{
    if (readsPlain_)
        return input_.read(buffer, size);
    return tables_->reader.read(input_, buffer, size);
}
unsigned int Archive::write(const void* buffer, unsigned int size)
{
    if (writesPlain_)
        return output_.write(buffer, size);
    if (tables_->recorder)
        tables_->recorder->write(buffer, size);
    else
        tables_->writer.write(output_, buffer, size);
    return size;
}

// ---- Writing

void Archive::writeObject(const Serializable* object)
{
    const NestingLevel level(depth_);
    writeRecord(object, singleKey);
}

void Archive::writeObject(const ref_ptr<Serializable>& ptr)
{
    if (ptr)
        writeShared(*ptr, ptr.getIdentity());
    else
        writeObject(nullptr); // Which fails.
}

void Archive::writeShared(const Serializable& object, const void* identity)
{
    auto place = tables_->written.placeFor(reinterpret_cast<std::uintptr_t>(identity));
    if (place) {
        if (!writesPlain_ && tables_->recorder) {
            tables_->recorder->refer(place.key());
        } else if (!writesPlain_ && tables_->writer.isInParts()) {
            tables_->writer.putWords(static_cast<unsigned int>(referencePart), place.key());
        } else {
            static_cast<OutputStream&>(*this) << place.key();
        }
        return;
    }
    const NestingLevel level(depth_);
    place.put(); // Before the data are written, so that a circle leads to a reference.
    writeRecord(&object, place.key());
}

namespace {
// Two words and the class's name in one piece. As of any text only the name's length is guarded against a short write.
void writeHead(OutputStream& out, unsigned int key, const char* text, unsigned int length)
{
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
} // namespace

namespace {
/// Writes the name, when no more than that stands in front of an object of this class.
bool writesPlainHead(OutputStream& out, KnownClasses& classes, const Serializable* object, unsigned int key)
{
    const ClassName name(typeid(*object), classes);
    if (!name.isPlain())
        return false;
    writeHead(out, key, name.toWrite(), static_cast<unsigned int>(name.length()));
    return true;
}
} // namespace

void Archive::writeRecord(const Serializable* object, unsigned int key)
{
    if (!object) {
        static_cast<OutputStream&>(*this) << objectCookie << key;
        throwError(std::bad_typeid());
    }
    if (writesPlain_ && writesPlainHead(*this, tables_->classes, object, key))
        object->serialize(*this);
    else
        writeInParts(*object, key);
}

void Archive::writeInParts(const Serializable& object, unsigned int key)
{
    if (tables_->recorder) {
        recordObject(object, key);
        return;
    }
    OutputStream& self = *this;
    const ClassName name(typeid(object), tables_->classes);
    const auto* const sealed = name.isRegistered() ? nullptr : dynamic_cast<const SealedObject*>(&object);
    const DataVersion version = sealed ? DataVersion(*sealed) : DataVersion(name, object);

    const bool isPart = tables_->writer.isInParts();
    if (isPart)
        tables_->writer.putWords(static_cast<unsigned int>(objectPart), key);
    BodyWriter::Object scope(tables_->writer, writesPlain_);
    if (!isPart)
        self << objectCookie << key;
    if (version.isWritten()) {
        self << VersionedHead(sealed ? sealed->getClassName().c_str() : name.toWrite(), version.number());
        writeBody(object, version);
    } else {
        self << name.toWrite();
        object.serialize(*this);
    }
}

void Archive::recordWith(GraphRecorder& recorder)
{
    tables_->recorder = &recorder;
    writesPlain_ = false;
}

void Archive::recordObject(const Serializable& object, unsigned int key)
{
    const auto* const sealed = dynamic_cast<const SealedObject*>(&object);
    tables_->recorder->begin(key, sealed ? sealed->getClassName() : ClassName(typeid(object)).text());
    object.serialize(*this);
    if (const auto* const keeper = dynamic_cast<const NewerData*>(&object))
        writeNewerData(*keeper);
    tables_->recorder->end();
}

void Archive::writeWeak(const ref_ptr<Serializable>& ptr)
{
    if (tables_->recorder)
        tables_->recorder->expectWeak();
    writeObject(ptr);
}

void Archive::writeBody(const Serializable& object, const DataVersion& version)
{
    BodyWriter::Object scope(tables_->writer, writesPlain_);
    scope.beginBody();
    object.serialize(*this);
    if (version.newerData())
        writeNewerData(*version.newerData());
    scope.endBody(output_);
}

void Archive::writeNewerData(const NewerData& data)
{
    for (const detail::SealedPart& part : data.parts_) {
        if (part.isShared)
            writeObject(part.object);
        else if (part.object)
            writeObject(part.object.get());
        else
            for (std::size_t at = 0; at < part.bytes.size(); at += longestWrite)
                write(part.bytes.data() + at,
                      static_cast<unsigned int>(std::min(part.bytes.size() - at, longestWrite)));
    }
}

// ---- Reading

/// Stands for an object that is being read: what is read inside of it does not change how the one around it goes on,
/// and when it fails its class is noted.
class Archive::Reading {
public:
    explicit Reading(Archive& archive)
        : level_(archive.depth_), archive_(archive), wasPlain_(std::exchange(archive.readsPlain_, true))
    {
        if (!wasPlain_)
            outer_ = std::exchange(archive.tables_->reader.state, {});
    }
    Reading(const Reading&) = delete;
    Reading& operator=(const Reading&) = delete;
    ~Reading()
    {
        archive_.readsPlain_ = wasPlain_;
        if (!wasPlain_)
            archive_.tables_->reader.state = *outer_;
        if (object_)
            fails();
    }
    /// The object has been made; it must live as long as it is read.
    void reads(const Serializable& object) { object_ = &object; }
    /// It was read whole.
    void succeeds() { object_ = nullptr; }

private:
    [[gnu::noinline, gnu::cold]] void fails() const noexcept
    {
        closeQuietly([this] { note(); });
    }
    void note() const
    {
        FailedPath& failed = archive_.tables_->failed;
        if (failed.classes.empty() || failed.depth != archive_.depth_ + 1) {
            failed.classes.clear();
            failed.offset = archive_.findOffset();
        }
        failed.classes.push_back(&typeid(*object_));
        failed.depth = archive_.depth_;
    }

    NestingLevel level_;
    Archive& archive_;
    bool wasPlain_;
    const Serializable* object_ = nullptr;
    std::optional<BodyReader::State> outer_; // Where it was not plain.
};

// Where the next byte would be read, if the stream can tell.
std::optional<unsigned long long> Archive::findOffset() const
{
    if (auto* const framed = dynamic_cast<FramedInputStream*>(&input_))
        return framed->getReadCount();
    auto* const seekable = dynamic_cast<Seekable*>(&input_);
    if (!seekable)
        return {};
    std::optional<unsigned long long> offset;
    closeQuietly([&] { offset = seekable->getFilePointer(); });
    return offset;
}

// Errors that leave the outermost object get their place, in the text that they hold. Without the memory for it they
// are the same errors.
template <class Read> void Archive::located(Read read)
{
    tables_->failed.classes.clear();
    const auto placed = [this](const std::exception& error, const char* sentence) {
        const FailedPath& failed = tables_->failed;
        std::vector<std::string> path;
        for (auto type = failed.classes.rbegin(); type != failed.classes.rend(); ++type)
            path.push_back(ClassName(**type).text());
        return withPlace(error, sentence, failed.classes.empty() ? findOffset() : failed.offset, path);
    };
    try {
        read();
    } catch (EndOfFile& error) {
        closeQuietly(
            [&] { static_cast<std::runtime_error&>(error) = EndOfFile(placed(error, "The data end too early")); });
        throw;
    } catch (tarn::Exception& error) {
        closeQuietly([&] { static_cast<tarn::Exception&>(error) = tarn::Exception(placed(error, nullptr)); });
        throw;
    }
}

// The word in front of an object in parts: zero, or the key of one that was read.
unsigned int Archive::readPartTag()
{
    BodyReader& reader = tables_->reader;
    if (reader.state.mode == BodyReader::State::zeros)
        throwError(tarn::Exception("An object is taken apart"));
    const unsigned int part = reader.state.left == 0 ? reader.takeWord(input_) : endOfBody;
    if (part == referencePart)
        return reader.takeKey(input_);
    if (part != objectPart)
        throwError(Serializable::Exception("The data have no object where one is expected"));
    reader.readHead(input_);
    return objectCookie;
}

Serializable* Archive::createNamed(bool isPart)
{
    const unsigned int length = isPart ? tables_->reader.head[1] : readUInt32();
    return ObjectHead::isPlain(length) ? ObjectHead::createPlain(*this, length, &tables_->classes) : createFrom(length);
}

// Not a part of its callers, on whose stack there is no room for a name as long as the data are read.
[[gnu::noinline]] Serializable* Archive::createFrom(unsigned int length)
{
    const ObjectHead head(*this, length);
    if (head.isVersioned()) {
        tables_->reader.beginBody(head.version(), head.firstWord());
        readsPlain_ = false;
    }
    if (head.isVersioned() && (tables_->keepsUnknown || tables_->readsNewerData) &&
        !ClassRegistry::get().creatorOf(head.name()))
        return new SealedObject(head.name());
    return tables_->classes.create(head.name(), head.length());
}

void Archive::readBody(Serializable& object, unsigned int version, unsigned int firstWord)
{
    tables_->reader.beginBody(version, firstWord);
    readsPlain_ = false;
    readData(object);
}

void Archive::readData(Serializable& object)
{
    object.deserialize(*this);
    if (!readsPlain_ && !tables_->reader.isAtEnd(input_))
        readNewerData(object);
}

// What the object did not read. It is kept by those that want it; the objects in it are read in any case, because
// others may refer to them.
[[gnu::noinline, gnu::cold]] void Archive::readNewerData(Serializable& object)
{
    constexpr unsigned int piece = 0x1000;
    BodyReader& reader = tables_->reader;
    NewerData dropped;
    auto* const keeper = dynamic_cast<NewerData*>(&object);
    NewerData& data = keeper ? *keeper : dropped;
    data.dropNewerData();
    data.version_ = reader.state.version;
    const struct Within {
        explicit Within(bool& now) : is(now), before(std::exchange(now, true)) {}
        ~Within() { is = before; }
        bool& is;
        bool before;
    } within(tables_->readsNewerData);
    for (;;) {
        const unsigned int word = reader.state.left == 0 ? reader.nextWord(input_) : reader.state.left;
        if (word == endOfBody)
            break;
        detail::SealedPart part;
        if (word < objectPart) {
            char bytes[piece];
            while (const unsigned int count = read(bytes, piece))
                part.bytes.append(bytes, count);
            if (reader.state.left > 0)
                detail::throwShortRead(bytes, piece);
        } else {
            readObject(part.object);
            part.isShared = word == referencePart || part.object.getCount() > 1; // The archive has it, too.
        }
        data.parts_.push_back(std::move(part));
    }
}

namespace {
// Not inside of what they leave, which is short of stack, and fast without them.
[[noreturn, gnu::noinline, gnu::cold]] void throwReferred()
{
    throwError(tarn::Exception(withSentence("In Archive::ReadObject war das eingelesene Cookie != 0.\n"
                                            "Dies deutet auf einen Fehler im Bin\xE4rstream hin!",
                                            "The data refer to an object where a new one is expected")));
}
[[noreturn, gnu::noinline, gnu::cold]] void throwUnknownKey()
{
    throwError(Serializable::Exception(
        withSentence("Der Stream enth\xE4lt eine Objektreferenz, nicht jedoch das Objekt selbst!",
                     "The data refer to an object that they do not have")));
}
[[noreturn, gnu::noinline, gnu::cold]] void throwSingle()
{
    throwError(tarn::Exception(
        withSentence("Das Objekt wurde zuvor als Single-Objekt gelesen und kann daher nicht als Referenz "
                     "zur\xFC"
                     "ckgegeben werden.\n"
                     "M\xF6glicherweise liegt ein Fehler im Format des Bin\xE4streams vor!",
                     "The data share an object that was read as one with a single owner")));
}
} // namespace

// `object` has it as soon as it is made.
void Archive::readOwned(OwnedObject& object)
{
    const bool isPart = !readsPlain_;
    if ((isPart ? readPartTag() : readUInt32()) != objectCookie)
        throwReferred();
    Reading reading(*this);
    const unsigned int key = isPart ? tables_->reader.head[0] : readUInt32();
    tables_->single.makeRoom(depth_); // For the objects around it, too: none is lost later for want of memory.
    object.reset(createNamed(isPart));
    reading.reads(*object);
    readData(*object);
    tables_->addSingle(key);
    reading.succeeds();
}

OwnedObject Archive::readSingle()
{
    OwnedObject object;
    if (depth_ > 0)
        readOwned(object);
    else
        located([&] { readOwned(object); });
    return object;
}

Serializable* Archive::readObject()
{
    struct Lost : OwnedObject {
        ~Lost() { release(); } // Its destructor may not be known, as that of an object made by a mere creator.
    } object;
    if (depth_ > 0)
        readOwned(object);
    else
        located([&] { readOwned(object); });
    return object.release();
}

void Archive::readObject(ref_ptr<Serializable>& ptr)
{
    if (!readsPlain_ && tables_->reader.state.mode == BodyReader::State::zeros)
        ptr.release();
    else if (depth_ > 0)
        readRecord(ptr);
    else
        located([&] { readRecord(ptr); });
}

void Archive::readRecord(ref_ptr<Serializable>& ptr)
{
    const bool isPart = !readsPlain_;
    if (const unsigned int reference = isPart ? readPartTag() : readUInt32(); reference != objectCookie) {
        const ref_ptr<Serializable>* const known = tables_->find(reference);
        if (!known)
            throwUnknownKey();
        ptr = *known;
        return;
    }
    Reading reading(*this);
    const unsigned int key = isPart ? tables_->reader.head[0] : readUInt32();
    if (tables_->isSingle(key) && !tables_->readsNewerData) // There an object of one owner is read like any other.
        throwSingle();
    tables_->makeRoom(key);
    Serializable* const made = createNamed(isPart);
    ref_ptr<Serializable> object(tables_->counts.take(), made);
    // Known before its data are read, so that references inside them find it, and it is not lost when they fail.
    const unsigned int place = tables_->add(key, object);
    reading.reads(*made);
    readData(*made);
    if (key == singleKey && !tables_->readsNewerData) // There nobody else knows where it stands.
        tables_->drop(place);
    reading.succeeds();
    ptr.swap(object);
}

std::shared_ptr<Serializable> Archive::readStandardShared()
{
    ref_ptr<Serializable> object;
    readObject(object);
    if (!object)
        return nullptr;
    std::weak_ptr<Serializable>& known = tables_->standard[object.getIdentity()];
    std::shared_ptr<Serializable> shared = known.lock();
    if (!shared) {
        Serializable* const plain = object.get();
        shared.reset(plain, [held = std::move(object)](Serializable*) mutable { Archive::release(held); });
        known = shared;
    }
    return shared;
}

const void* Archive::partOf(const Serializable& object, const std::type_info& wanted, FindPart* find)
{
    return tables_->classes.partOf(object, wanted, find);
}

void Archive::refuse(const Serializable& object, const std::type_info& expected)
{
    const auto* const sealed = dynamic_cast<const SealedObject*>(&object);
    const std::string found = sealed ? sealed->getClassName() : ClassName(typeid(object)).text();
    throwError(Serializable::Exception("An object of " + found + " was read where one of " +
                                       ClassName(expected).text() + " is expected"));
}

void Archive::refuse(const ref_ptr<Serializable>& object, const std::type_info& expected)
{
    if (object.getCount() == 1)
        tables_->objects.push_back(object);
    refuse(*object, expected);
}

// ---- What was read

std::vector<ref_ptr<Serializable>> Archive::getSharedObjects() const
{
    std::vector<ref_ptr<Serializable>> objects = tables_->objects;
    std::erase(objects, nullptr);
    return objects;
}

void Archive::release(ref_ptr<Serializable>& ptr) noexcept
{
    if (ptr.getCount() != 1) {
        ptr.release();
        return;
    }
    const detail::LastShare last{ptr.object_, ptr.count_,
                                 [](void* object) { DestroyObject()(static_cast<Serializable*>(object)); }};
    --*ptr.count_;
    ptr.object_ = nullptr;
    ptr.count_ = nullptr;
    detail::letGo(last);
}

std::size_t Archive::countObjects() const { return tables_->objects.size(); }

void Archive::discardFrom(std::size_t first) noexcept
{
    constexpr unsigned int enough = 0x10000; // Zeros, for one object.
    std::vector<ref_ptr<Serializable>>& objects = tables_->objects;
    for (std::size_t i = first; i < objects.size(); ++i)
        if (objects[i])
            try {
                if (auto* const keeper = dynamic_cast<NewerData*>(objects[i].get()))
                    keeper->dropNewerData();
                Reading reading(*this);
                tables_->reader.state = {.mode = BodyReader::State::zeros, .left = enough, .version = ~0u};
                readsPlain_ = false;
                objects[i]->deserialize(*this);
            } catch (...) {
                // It has let go of what it reads before it noticed.
            }
    for (std::size_t i = first; i < objects.size(); ++i)
        release(objects[i]);
}

void Archive::keepUnknownClasses(bool keep) { tables_->keepsUnknown = keep; }

unsigned int versionOf(InputStream& in)
{
    const auto* const archive =
        typeid(in) == typeid(Archive) ? static_cast<Archive*>(&in) : dynamic_cast<Archive*>(&in);
    return archive && !archive->readsPlain_ ? archive->tables_->reader.state.version : 0;
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
