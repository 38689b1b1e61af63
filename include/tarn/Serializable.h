#pragma once

#include <tarn/Exception.h>
#include <tarn/Export.h>
#include <tarn/ref_ptr.h>

#include <concepts>
#include <memory>
#include <type_traits>
#include <typeinfo>

namespace tarn {
class InputStream;
class NewerData;
class OutputStream;

/// An object that can be written to a stream and made anew from it.
///
/// A class derives from it, writes and reads its own data, has a default constructor, and registers itself
/// with a static SerializableImpl:
///
///     class Circle final : public tarn::Serializable {
///     public:
///         void serialize(tarn::OutputStream& out) const override;
///         void deserialize(tarn::InputStream& in) override;
///     };
///     static tarn::SerializableImpl<Circle> registration;
///
/// There is no virtual destructor: destroy an object through its own class, which is best declared `final`,
/// or through a base of your own that has a virtual one. The registry is not locked:
/// create objects only when no registration can run at the same time.
class TARN_API Serializable {
public:
    /// Names an object that cannot be made or found.
    class TARN_API Exception : public tarn::Exception {
    public:
        /// what() is the description.
        Exception(const std::string& description);
        /// A copy has its own text.
        ///@{
        Exception(const Exception&);
        Exception& operator=(const Exception&);
        ~Exception() override;
        ///@}
    };

    /// Writes the object's own data.
    virtual void serialize(OutputStream& out) const = 0;
    /// Reads the data back, in the order in which serialize() wrote them.
    virtual void deserialize(InputStream& in) = 0;

    /// Registers the function that makes a new object of the class `name`; the text is not copied and has
    /// to live as long as the process.
    ///
    /// Names are compared over the length of the shorter one, and the first registration wins: once
    /// "class A" is registered, registering "class AB" does nothing, and an archived AB comes back as an
    /// A. So let no class's name begin with the whole name of another.
    static void addCreator(const char* name, Serializable* (*creator)());
    /// A new object of the class, owned by the caller; the empty name stands for the first registered
    /// class. Throws Serializable::Exception "Klassendefinition nicht gefunden - ..." for an unknown one.
    static Serializable* create(const char* name);

protected:
    ~Serializable() = default;
};

namespace detail {
/// What is known of a registered class beside its name.
struct ClassTraits {
    Serializable* (*create)() = nullptr;
    void (*destroy)(Serializable* object) = nullptr;
    unsigned int version = 0;
    bool keepsNewerData = false;
};

/// Registers the creator, and the name under which objects of the type are written.
///@{
TARN_API void registerClass(const std::type_info& type, const char* keyword, const ClassTraits& traits,
                            const void* owner);
TARN_API void registerClassAs(const std::type_info& type, const char* name, const ClassTraits& traits,
                              const void* owner);
TARN_API void registerClass(const std::type_info& type, const char* keyword, Serializable* (*creator)(),
                            const void* owner);
TARN_API void registerClassAs(const std::type_info& type, const char* name, Serializable* (*creator)(),
                              const void* owner);
///@}
/// Ends what an owner in a DLL registered, since the DLL is being unloaded.
TARN_API void unregisterClass(const void* owner) noexcept;
} // namespace detail

/// Says that a class was declared with the word `struct`, which its run-time type does not tell.
struct DeclaredAsStruct {};
/// To be given to SerializableImpl.
inline constexpr DeclaredAsStruct declaredAsStruct;

/// Destroys an object as what it is, when its class is registered; of any other its memory is freed.
struct TARN_API DestroyObject {
    /// Null is allowed.
    void operator()(Serializable* object) const noexcept;
};
/// Owns an object of whatever class.
using OwnedObject = std::unique_ptr<Serializable, DestroyObject>;

/// Registers the class T when it is constructed: have one static object of it for each class.
///
/// The name that archives carry is the word "class" and the qualified name ("class shapes::Circle"), with
/// `declaredAsStruct` the word "struct". Where another spelling is wanted (an instance of a template, say),
/// give the whole name. Objects of a class that is not registered are written as "class" and their name.
///
/// A second object with another name lets data that carry it be read, too; what is written carries the first.
/// Two classes of unnamed namespaces may have the same qualified name: give one of them a name of its own, or
/// writing it throws Serializable::Exception `"..." is the name of another class, too`.
///
/// A class says the version of its data with a constant, `static constexpr unsigned int classVersion = 2;`. Archive
/// writes it, and versionOf() gives it when the data are read; see there for what newer and older programs do. Without
/// the constant, or with 0, the data are written without a version.
///
/// The registration lasts as long as the program, that of a static object in a DLL as long as the DLL is loaded.
template <class T> class SerializableImpl {
public:
    /// Registers T under the name that is said above, or under the whole `name`, which is copied.
    ///@{
    SerializableImpl() { detail::registerClass(typeid(T), "class ", traits(), this); }
    explicit SerializableImpl(DeclaredAsStruct) { detail::registerClass(typeid(T), "struct ", traits(), this); }
    explicit SerializableImpl(const char* name) { detail::registerClassAs(typeid(T), name, traits(), this); }
    ///@}
    SerializableImpl(const SerializableImpl&) = delete;
    SerializableImpl& operator=(const SerializableImpl&) = delete;
    ~SerializableImpl() { detail::unregisterClass(this); }

private:
    static Serializable* create() { return new T; }
    static void destroy(Serializable* object)
    {
        if constexpr (std::is_destructible_v<T>)
            ref_ptr<T>(dynamic_cast<T*>(object));
    }
    static detail::ClassTraits traits()
    {
        detail::ClassTraits traits{.create = &create, .destroy = &destroy};
        if constexpr (requires { T::classVersion; })
            traits.version = T::classVersion;
        traits.keepsNewerData = std::is_base_of_v<NewerData, T>;
        return traits;
    }
};
} // namespace tarn
