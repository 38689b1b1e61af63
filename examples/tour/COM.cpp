#include "Tour.h"

#include <tarn/BStr.h>
#include <tarn/COMModule.h>
#include <tarn/COMStream.h>
#include <tarn/GUID.h>
#include <tarn/StandardStreams.h>
#include <tarn/Variant.h>

#include <objidl.h>

#include <iostream>
#include <typeinfo>

namespace {
constexpr GUID CLSID_Counter = {0x0d6f3c5e, 0x7b92, 0x4c1a, {0xa8, 0x44, 0x19, 0xe2, 0x50, 0x6b, 0xd3, 0x70}};

// A class of our own: IPersist says which class an object is of.
class Counter : public IPersist, public tarn::IUnknownImpl {
public:
    explicit Counter(IUnknown* outer) : IUnknownImpl(outer) {}
    TARN_IUNKNOWN_METHODS
    HRESULT STDMETHODCALLTYPE GetClassID(CLSID* clsid) override
    {
        *clsid = CLSID_Counter;
        return S_OK;
    }
    static tarn::IUnknownImpl* create(IUnknown* outer) { return new Counter(outer); }

protected:
    void* queryInterface(const GUID& iid) override
    {
        return iid == IID_IPersist ? static_cast<IPersist*>(this) : IUnknownImpl::queryInterface(iid);
    }
};

void showNames()
{
    std::cout << "GUIDs by name:        " << tarn::toAString(IID_IUnknown, true) << ", "
              << tarn::toAString(tarn::toGUID("{32595559-0000-0010-8000-00AA00389B71}"), true) << ", "
              << tarn::toAString(tarn::toGUID("{D5A47FA8-6D98-11D1-A21A-00A0C9223196}"), true) << '\n';
}

void showClass()
{
    tarn::COMModule module(GetModuleHandleW(nullptr),
                           {{CLSID_Counter, &Counter::create, L"Counter", tarn::COMModule::both}});
    tarn::COMInterfacePointer<IClassFactory> factory;
    tarn::HRESULTHolder::throwOnError(module.createClassFactory(CLSID_Counter, IID_IClassFactory, factory.putVoid()));
    {
        tarn::COMInterfacePointer<IPersist> object;
        tarn::HRESULTHolder::throwOnError(factory->CreateInstance(nullptr, IID_IPersist, object.putVoid()));
        CLSID clsid;
        object->GetClassID(&clsid);
        std::cout << "An object of class:   " << tarn::toAString(clsid) << '\n'
                  << "Objects alive:        " << tarn::IUnknownImpl::getInstanceCount() << " (it and its factory)\n";
    }
    factory.reset();
    std::cout << "After releasing them: " << tarn::IUnknownImpl::getInstanceCount() << ", so the server may "
              << (module.canUnloadNow() == S_OK ? "go\n" : "not go\n");
}

void showValues()
{
    const tarn::Variant number("42");
    std::cout << "\"42\" doubled:         " << 2 * number.toLong() << '\n';
    tarn::SafeArray squares(VT_R8, 5, 1);
    for (long i = squares.getLowerBound(); i <= squares.getUpperBound(); ++i)
        squares.setElement(i, tarn::Variant(i * i));
    std::cout << "A safe array:        ";
    for (const double square : tarn::SafeArray::Access<double>(squares))
        std::cout << ' ' << square;
    try {
        tarn::Variant("forty-two").toLong();
    } catch (const tarn::COMError& error) {
        std::cout << "\n\"forty-two\":          " << error.what() << '\n';
    }
}

void showStream()
{
    tarn::COMInterfacePointer<IStream> memory;
    tarn::HRESULTHolder::throwOnError(CreateStreamOnHGlobal(nullptr, TRUE, memory.put()), "Can't make a stream");
    tarn::COMStream stream(memory);
    stream << 1999 << "Terns";
    stream.setFilePointer(0, tarn::Seekable::begin);
    std::cout << "A stream of COM's:    " << tarn::readAll(stream).size() << " bytes\n";

    tarn::BStr name = L"Low";
    name += L" Tide";
    std::cout << "A text of COM's:      " << name.toAString() << (name == L"Low Tide" ? ", which compares as text" : "")
              << '\n'
              << "A new identifier:     " << tarn::toAString(tarn::newGUID()).size() << " characters\n";
}

const tour::Section section(80, "COM", [] {
    showNames();
    showClass();
    showValues();
    showStream();
});
} // namespace
