#pragma once

#include <tarn/Export.h>
#include <tarn/Windows.h>

#include <unknwn.h>

#include <map>
#include <string>
#include <typeinfo>

namespace tarn {
/// A class descriptor, which the library only passes around: programs define it.
class Class;

/// {7BB892C4-BBBF-45B2-89CE-8880230D5846}
extern TARN_API const IID IID_ClassSource;

/// Finds the descriptor of an object's class.
struct TARN_API ClassSource : public IUnknown {
    /// The descriptor of the class whose run-time type it is; who owns it, the implementation says.
    virtual Class* getClass(const std::type_info& type) = 0;

protected:
    ~ClassSource() = default;
};

/// A ClassSource over a table. Not counted: AddRef() and Release() do nothing, and whoever made it keeps
/// it for as long as anyone uses it. Does not own the descriptors.
class TARN_API SimpleClassSource : public ClassSource {
public:
    /// Replaces the descriptor that the type has already.
    void insert(const std::type_info& type, Class* descriptor) { classes_[type.name()] = descriptor; }

    /// `E_POINTER` for null, and `E_NOINTERFACE` with `*ppv` left as it is for other interfaces.
    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID riid, void** ppv) override;
    /// Always 1.
    ///@{
    ULONG STDMETHODCALLTYPE AddRef() override { return 1; }
    ULONG STDMETHODCALLTYPE Release() override { return 1; }
    ///@}
    /// Null for a type that is not in the table.
    Class* getClass(const std::type_info& type) override;

private:
    std::map<std::string, Class*> classes_;
};
} // namespace tarn
