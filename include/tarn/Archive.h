#pragma once

#include <tarn/Export.h>
#include <tarn/Serializable.h>
#include <tarn/Stream.h>
#include <tarn/ref_ptr.h>

#include <memory>
#include <typeinfo>
#include <vector>

namespace tarn {
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
/// Damaged data end in an exception: EndOfFile, Exception, Serializable::Exception, or what deserialize()
/// throws. What had been read by then is in getSharedObjects().
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
    void writeObject(const Serializable* object, unsigned long key);
    [[noreturn]] void refuse(const ref_ptr<Serializable>& object, const std::type_info& expected);

    struct Tables;

    InputStream& input_;
    OutputStream& output_;
    std::unique_ptr<Tables> tables_;
    unsigned int depth_ = 0;
};

template <class T> void Archive::readObject(ref_ptr<T>& ptr)
{
    ref_ptr<Serializable> object;
    readObject(object);
    const ref_ptr<T> typed = ref_ptr_cast<T>(object);
    if (!typed)
        refuse(object, typeid(T));
    ptr = typed;
}

/// Writes a reference that an object holds, in its serialize().
template <class T> OutputStream& operator<<(OutputStream& out, const ref_ptr<T>& ptr)
{
    Archive::behind(out).writeObject(ref_ptr<Serializable>(ptr));
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
} // namespace tarn
