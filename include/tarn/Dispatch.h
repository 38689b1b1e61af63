#pragma once

#include <tarn/COMInterfacePointer.h>
#include <tarn/Export.h>
#include <tarn/GUID.h>
#include <tarn/Variant.h>
#include <tarn/Windows.h>

#include <oaidl.h>

#include <initializer_list>

namespace tarn {
/// Calls an object of automation by the names of its members, as scripts do:
///
///     const tarn::Dispatch dictionary(tarn::toGUID(L"Scripting.Dictionary"));
///     dictionary.call(L"Add", {"answer", 42});
///     dictionary.call(L"Add", {}, {{L"Item", 43}, {L"Key", "next"}});
///     dictionary.set(L"Item", dictionary.get(L"Count"), {"answer"});
///
/// Holds a reference to the object. Names are those of any case; each call looks them up. Members throw as
/// HRESULTHolder::throwOnError() does: "Can't find member "NAME"", with `DISP_E_UNKNOWNNAME`, when the object has none
/// of the name, and "Can't call "NAME"", behind which stands what the object tells of its failure.
class TARN_API Dispatch {
public:
    /// An argument with its name. The name is borrowed.
    struct Argument {
        /// As the object calls it.
        const wchar_t* name;
        /// What is passed.
        Variant value;
    };

    /// Of an object that is there. Throws COMError(`E_POINTER`) for null.
    explicit Dispatch(COMInterfacePointer<IDispatch> object);
    /// A new object of the class. Throws as COMInterfacePointer::create().
    explicit Dispatch(const GUID& clsid, unsigned long context = CLSCTX_ALL);

    /// The result of a method.
    Variant call(const wchar_t* method, std::initializer_list<Variant> arguments = {},
                 std::initializer_list<Argument> named = {}) const;
    /// The value of a property; those with indices take them as arguments.
    Variant get(const wchar_t* property, std::initializer_list<Variant> indices = {}) const;
    /// Sets a property. An object is set as a reference where the property takes one.
    void set(const wchar_t* property, const Variant& value, std::initializer_list<Variant> indices = {}) const;

    /// Lent, not given.
    IDispatch* getObject() const noexcept { return object_.get(); }

private:
    COMInterfacePointer<IDispatch> object_;
};
} // namespace tarn
