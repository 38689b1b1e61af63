#pragma once

#include <tarn/Export.h>
#include <tarn/ReadingFailure.h>
#include <tarn/Serializable.h>
#include <tarn/Stream.h>
#include <tarn/ref_ptr.h>

#include <memory>
#include <optional>
#include <typeinfo>
#include <utility>
#include <vector>

namespace tarn {
class GraphRecorder;
template <class T> class weak_ref;

/// Writes and reads whole graphs of Serializable objects: what is shared through ref_ptr is written once,
/// and is one shared object again after reading, circles included.
///
/// An archive is a stream itself. The objects are handed it by writeObject() and readObject(), write and
/// read their values on it, and their references with the operators below:
///
///     void Node::serialize(tarn::OutputStream& out) const { out << name_ << next_; }
///     void Node::deserialize(tarn::InputStream& in) { in >> name_ >> next_; }
///
/// The two streams must outlive the archive. It holds a share of every object that it read, and gives it
/// up when it is destroyed: let it go before your own typed pointers, for the reason that ref_ptr gives.
/// Keys are told by the objects alive: keep what has been written alive while the archive writes.
///
/// Objects of a class with a version (see SerializableImpl) carry it, and their data can be told from what follows. So
/// a newer class reads what older programs wrote, and what was written before it had versions:
///
///     void Leaf::deserialize(tarn::InputStream& in)
///     {
///         in >> name_;
///         if (tarn::versionOf(in) >= 2)
///             in >> colour_;
///     }
///
/// An older class reads what newer programs wrote, as long as these only add members behind the others, and drops what
/// it does not know, or keeps it as NewerData and writes it back.
///
/// Damaged data end in an exception: EndOfFile, Exception, Serializable::Exception, or what deserialize()
/// throws. What had been read by then is in getSharedObjects(), and load() tidies it up. ReadingFailure says where
/// it was.
class TARN_API Archive : public InputStream, public OutputStream {
public:
    /// How deep objects may lie in each other's data, in writing and in reading. Beyond that, and where the
    /// thread's stack comes to its last quarter (256 KB, when that is less) before it, Serializable::Exception
    /// "Objects are nested more than 2000 levels deep" is thrown. Write a long list as its elements in turn, not
    /// each inside the one before.
    static constexpr unsigned int maxDepth = 2000;

    /// To write only or to read only, give a MemoryInputStream or MemoryOutputStream for the other.
    Archive(InputStream& input, OutputStream& output);
    /// The copy goes on with the same streams and with tables of its own.
    Archive(const Archive&);
    unsigned int read(void* buffer, unsigned int size) override;
    virtual ~Archive();
    unsigned int write(const void* buffer, unsigned int size) override;

    /// Writes the object in full, each time. Throws `std::bad_typeid` for null, after two zero words.
    void writeObject(const Serializable* object);
    /// Writes the object, or only its key when this archive wrote it before. Throws `std::bad_typeid` for
    /// an empty pointer, after two zero words: see writeOptional().
    void writeObject(const ref_ptr<Serializable>& ptr);

    /// Reads an object written through a plain pointer; the caller owns it, and destroys it through its
    /// own class. Throws Exception "In Archive::ReadObject war das eingelesene Cookie != 0..." when a
    /// reference is found. An object whose deserialize() throws is lost, not freed.
    Serializable* readObject();
    /// Reads a shared object or a reference to one. Throws Serializable::Exception "Der Stream ... nicht
    /// jedoch das Objekt selbst!" for a reference to what was not read before, and Exception "Das
    /// Objekt wurde zuvor als Single-Objekt gelesen..." for an object read with the function above before.
    /// An object written through a plain pointer can be read as well, as long as this archive has read
    /// none with the function above.
    void readObject(ref_ptr<Serializable>& ptr);
    /// The same for a pointer to a certain class. Throws Serializable::Exception for an object of another.
    template <class T> void readObject(ref_ptr<T>& ptr);

    /// Reads an object written through a plain pointer, or one that was written as shared, to one owner of its own
    /// class. Throws as readObject() does, and Serializable::Exception for an object of another class; nothing is left
    /// of it then.
    ///@{
    template <class T> std::unique_ptr<T> readSingle();
    OwnedObject readSingle();
    ///@}

    /// Reads a shared object, and all that hangs on it, or nothing: when that fails, what it had read so far is taken
    /// apart and destroyed, circles included, before the error goes on. Each object is taken apart by a deserialize()
    /// that reads zeros and empty references; one that refuses to keeps what it has got.
    template <class T> ref_ptr<T> load();

    /// Keeps objects of classes that this program does not know as SealedObjects, where the data have versions, instead
    /// of throwing. They fit where a `ref_ptr<Serializable>` is read, and in NewerData.
    void keepUnknownClasses(bool keep = true);

    /// Lets go of an object. When it is the last pointer the object is destroyed as what it is, if its class is
    /// registered, where ref_ptr would have freed its memory alone.
    static void release(ref_ptr<Serializable>& ptr) noexcept;

    /// Every shared object read so far, whole or not, in the order in which they came. After a failed read, take
    /// them to pointers of their own classes (ref_ptr_cast), open their circles and let the archive go: then their
    /// destructors run.
    std::vector<ref_ptr<Serializable>> getSharedObjects() const;

    /// The archive that an object is handed as a stream. Throws Exception "The stream is not an archive"
    /// for any other stream, also for one that passes its bytes on to an archive.
    ///@{
    static Archive& behind(InputStream& in);
    static Archive& behind(OutputStream& out);
    ///@}

private:
    friend InputStream;
    friend OutputStream;
    friend TARN_API unsigned int versionOf(InputStream& in);
    template <class T> friend OutputStream& operator<<(OutputStream& out, const std::shared_ptr<T>& ptr);
    template <class T> friend InputStream& operator>>(InputStream& in, std::shared_ptr<T>& ptr);
    template <class T> friend OutputStream& operator<<(OutputStream& out, const weak_ref<T>& reference);
    template <class T> friend OutputStream& operator<<(OutputStream& out, const ref_ptr<T>& ptr);
    friend class ObjectGraph;

    using FindPart = const void*(const Serializable& object);
    template <class T> static const void* findPart(const Serializable& object) { return dynamic_cast<T*>(&object); }
    const void* partOf(const Serializable& object, const std::type_info& wanted, FindPart* find);

    void recordWith(GraphRecorder& recorder);
    void recordObject(const Serializable& object, unsigned int key);
    void writeWeak(const ref_ptr<Serializable>& ptr);
    void writeShared(const Serializable& object, const void* identity);
    [[noreturn]] void refuse(const ref_ptr<Serializable>& object, const std::type_info& expected);
    [[noreturn]] static void refuse(const Serializable& object, const std::type_info& expected);

    class DataVersion;
    class Reading;
    void writeRecord(const Serializable* object, unsigned int key);
    void writeInParts(const Serializable& object, unsigned int key);
    void writeBody(const Serializable& object, const DataVersion& version);
    void writeNewerData(const NewerData& data);

    std::optional<unsigned long long> findOffset() const;
    template <class Read> void located(Read read);
    unsigned int readPartTag();
    void readRecord(ref_ptr<Serializable>& ptr);
    void readOwned(OwnedObject& object);
    Serializable* createNamed(bool isPart);
    Serializable* createFrom(unsigned int length);
    void readData(Serializable& object);
    void readBody(Serializable& object, unsigned int version, unsigned int firstWord);
    void readNewerData(Serializable& object);
    std::shared_ptr<Serializable> readStandardShared();
    std::size_t countObjects() const;
    void discardFrom(std::size_t first) noexcept;

    struct Tables;

    InputStream& input_;
    OutputStream& output_;
    std::unique_ptr<Tables> tables_;
    unsigned int depth_ = 0;
    // Of most data, which stand on the streams as they are: then this class passes them on without a look at the
    // tables.
    bool writesPlain_ = true;
    bool readsPlain_ = true;
};

template <class T> void Archive::readObject(ref_ptr<T>& ptr)
{
    ref_ptr<Serializable> object;
    readObject(object);
    if (!object) {
        ptr.release();
        return;
    }
    const void* const found = partOf(*object, typeid(T), &findPart<const T>);
    if (!found)
        refuse(object, typeid(T));
    ref_ptr<T> typed;
    typed.object_ = static_cast<T*>(const_cast<void*>(found));
    typed.count_ = std::exchange(object.count_, nullptr);
    object.object_ = nullptr;
    ptr.swap(typed);
}

template <class T> std::unique_ptr<T> Archive::readSingle()
{
    static_assert(
        std::has_virtual_destructor_v<T> || std::is_final_v<T>,
        "The pointer has to destroy whatever object it gets: give the class a virtual destructor, or make it final");
    OwnedObject object = readSingle();
    T* const typed = dynamic_cast<T*>(object.get());
    if (!typed)
        refuse(*object, typeid(T));
    object.release();
    return std::unique_ptr<T>(typed);
}

template <class T> ref_ptr<T> Archive::load()
{
    const std::size_t before = countObjects();
    try {
        ref_ptr<T> object;
        readObject(object);
        return object;
    } catch (...) {
        discardFrom(before);
        throw;
    }
}

/// The version of the data that deserialize() reads: the `classVersion` of the program that wrote them, 0 when they
/// were written without one.
TARN_API unsigned int versionOf(InputStream& in);

/// Writes a reference that an object holds, in its serialize().
template <class T> OutputStream& operator<<(OutputStream& out, const ref_ptr<T>& ptr)
{
    Archive& archive = Archive::behind(out);
    if (ptr)
        archive.writeShared(*ptr, ptr.getIdentity());
    else
        archive.writeObject(nullptr); // Which fails.
    return out;
}

/// Reads a reference that an object holds, in its deserialize().
template <class T> InputStream& operator>>(InputStream& in, ref_ptr<T>& ptr)
{
    Archive::behind(in).readObject(ptr);
    return in;
}

/// For a reference that may be empty: a bool, true when an object follows.
template <class T> void writeOptional(OutputStream& out, const ref_ptr<T>& ptr)
{
    out << static_cast<bool>(ptr);
    if (ptr)
        out << ptr;
}

/// Reads what writeOptional() wrote; `ptr` is empty when no object follows.
template <class T> void readOptional(InputStream& in, ref_ptr<T>& ptr)
{
    bool present = false;
    in >> present;
    if (present)
        in >> ptr;
    else
        ptr.release();
}

/// An object that is shared by standard pointers, as writeOptional() writes one. What archives share is told by the
/// address of the object. A pointer that was read destroys the object as what it is.
///@{
template <class T> OutputStream& operator<<(OutputStream& out, const std::shared_ptr<T>& ptr)
{
    out << static_cast<bool>(ptr);
    if (ptr)
        Archive::behind(out).writeShared(*ptr, dynamic_cast<const void*>(ptr.get()));
    return out;
}
template <class T> InputStream& operator>>(InputStream& in, std::shared_ptr<T>& ptr)
{
    bool present = false;
    in >> present;
    const std::shared_ptr<Serializable> object = present ? Archive::behind(in).readStandardShared() : nullptr;
    auto typed = std::dynamic_pointer_cast<T>(object);
    if (object && !typed)
        Archive::refuse(*object, typeid(T));
    ptr = std::move(typed);
    return in;
}
///@}

/// An object that has one owner: a bool, and when it is true the object as through a plain pointer.
///@{
template <class T> OutputStream& operator<<(OutputStream& out, const std::unique_ptr<T>& ptr)
{
    out << static_cast<bool>(ptr);
    if (ptr)
        Archive::behind(out).writeObject(ptr.get());
    return out;
}
template <class T> InputStream& operator>>(InputStream& in, std::unique_ptr<T>& ptr)
{
    bool present = false;
    in >> present;
    ptr = present ? Archive::behind(in).template readSingle<T>() : nullptr;
    return in;
}
///@}
} // namespace tarn
