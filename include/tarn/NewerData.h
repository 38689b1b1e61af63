#pragma once

#include <tarn/Export.h>
#include <tarn/Serializable.h>

#include <string>
#include <vector>

namespace tarn {
class Archive;

namespace detail {
/// What stands between two references in an object's data, or one of these references.
struct SealedPart {
    std::string bytes;
    ref_ptr<Serializable> object;
    bool isShared = false;
};
} // namespace detail

/// A base for classes whose objects keep what a newer program wrote behind the members that they know, and write it
/// back, so that nothing is lost between a program and its successor:
///
///     class Shape final : public tarn::Serializable, public tarn::NewerData {
///     public:
///         static constexpr unsigned int classVersion = 1;
///         void serialize(tarn::OutputStream& out) const override { out << name_; }
///         void deserialize(tarn::InputStream& in) override { in >> name_; }
///
///     private:
///         std::string name_;
///     };
///
/// Archive fills and writes it; classes without it drop what they do not know. It holds the objects that the unknown
/// members refer to, in circles, too: call dropNewerData() where you open those of your own.
class TARN_API NewerData {
public:
    /// Whether there is any.
    bool hasNewerData() const { return !parts_.empty(); }
    /// The version that wrote it; 0 when there is none.
    unsigned int getNewerVersion() const { return version_; }
    /// Lets go of it. It is lost then for the newer program.
    void dropNewerData() noexcept;

protected:
    NewerData() = default;
    /// A copy shares the objects.
    ///@{
    NewerData(const NewerData&) = default;
    NewerData& operator=(const NewerData& other);
    ///@}
    ~NewerData() { dropNewerData(); }

private:
    friend class Archive;
    // Derived classes see private names, and should see none that a program has.
    struct NewerDataInternals {
        class Circles;
        static void drop(std::vector<detail::SealedPart> parts) noexcept;
    };

    unsigned int version_ = 0;
    std::vector<detail::SealedPart> parts_;
};

/// An object of a class that this program does not know, as Archive::keepUnknownClasses() keeps it: it can be shared,
/// referred to and written back, but not looked into. Only data with versions can be kept in this way.
class TARN_API SealedObject final : public Serializable, public NewerData {
public:
    /// As Archive makes it.
    explicit SealedObject(const std::string& className) : className_(className) {}
    /// As it stood in the data, "class shapes::Star".
    const std::string& getClassName() const { return className_; }

    /// Nothing: Archive writes and reads what it holds.
    ///@{
    void serialize(OutputStream& out) const override;
    void deserialize(InputStream& in) override;
    ///@}

private:
    std::string className_;
};
} // namespace tarn
