#include <tarn/ClassSource.h>

#include "../foundation/NullIdentifier.h"

namespace tarn {
const IID IID_ClassSource = {0x7BB892C4, 0xBBBF, 0x45B2, {0x89, 0xCE, 0x88, 0x80, 0x23, 0x0D, 0x58, 0x46}};

HRESULT SimpleClassSource::QueryInterface(REFIID riid, void** ppv)
{
    if (!ppv || isNull(riid))
        return E_POINTER;
    if (riid != IID_ClassSource && riid != IID_IUnknown)
        return E_NOINTERFACE;
    *ppv = static_cast<ClassSource*>(this);
    return S_OK;
}

Class* SimpleClassSource::getClass(const std::type_info& type)
{
    const auto found = classes_.find(type.name());
    return found != classes_.end() ? found->second : nullptr;
}
} // namespace tarn
