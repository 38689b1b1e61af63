#include <tarn/BStr.h>
#include <tarn/COMInterfacePointer.h>
#include <tarn/SafeArray.h>

#include <objidl.h>

void referencesArePointersAffair(tarn::COMInterfacePointer<IPersist> object)
{
    // forbidden: use of deleted function .*Release\(\)
    object->Release();
    // forbidden: use of deleted function .*AddRef\(\)
    object->AddRef();
    // forbidden: ambiguous default type conversion|type .* argument given to 'delete'
    delete object;
    // forbidden: use of deleted function .*operator&\(\)
    CoCreateInstance(IID_IPersist, nullptr, CLSCTX_ALL, IID_IPersist, (void**)&object);
}

void whatIsOwnedIsNotFreedByHand(const tarn::BStr& text, const tarn::SafeArray& array)
{
    // forbidden: use of deleted function .*SysFreeString\(const BStr&\)
    SysFreeString(text);
    // forbidden: use of deleted function .*SafeArrayDestroy\(const SafeArray&\)
    SafeArrayDestroy(array);
    // forbidden: use of deleted function .*operator bool\(\) const
    if (text)
        return;
}
