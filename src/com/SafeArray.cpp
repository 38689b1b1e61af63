#include <tarn/SafeArray.h>

#include <tarn/BStr.h>
#include <tarn/Variant.h>

#include "../foundation/Throw.h"
#include "../foundation/NumericCast.h"

#include <vector>

namespace tarn {
namespace {
SAFEARRAY* create(VARTYPE type, std::initializer_list<SAFEARRAYBOUND> bounds)
{
    constexpr const char* failure = "Can't create safe array";
    if (bounds.size() == 0 || type == VT_EMPTY || type == VT_NULL || type == VT_RECORD)
        HRESULTHolder::throwOnError(E_INVALIDARG, failure);
    std::vector<SAFEARRAYBOUND> copy(bounds);
    SAFEARRAY* const array = SafeArrayCreate(type, numericCast<UINT>(copy.size()), copy.data());
    if (!array) // The call gives no reason.
        throwError(BadAllocation());
    return array;
}

SAFEARRAY* copyOf(SAFEARRAY* array)
{
    SAFEARRAY* copy = nullptr;
    if (array)
        HRESULTHolder::throwOnError(SafeArrayCopy(array, &copy), "Can't copy safe array");
    return copy;
}

// The platform reads one index for each dimension without knowing how many there are.
LONG* checked(const SafeArray& array, std::vector<LONG>& indices, const char* failure)
{
    if (indices.size() != array.getDimensionCount() || indices.empty())
        HRESULTHolder::throwOnError(DISP_E_BADINDEX, failure);
    return indices.data();
}

// Where the data of a variant of any type but VT_VARIANT and VT_DECIMAL lies.
void* dataOf(VARIANT& value) { return &value.byref; }

COMInterfacePointer<IRecordInfo> recordInfoOf(SAFEARRAY* array, const char* failure)
{
    COMInterfacePointer<IRecordInfo> info;
    HRESULTHolder::throwOnError(SafeArrayGetRecordInfo(array, info.put()), failure);
    return info;
}

// A record is copied whole to where the call is told, and no variant is as large.
Variant getRecord(SAFEARRAY* array, LONG* where, const char* failure)
{
    COMInterfacePointer<IRecordInfo> info = recordInfoOf(array, failure);
    void* const record = info->RecordCreate();
    if (!record)
        throwError(BadAllocation());
    const HRESULT hr = SafeArrayGetElement(array, where, record);
    if (FAILED(hr)) {
        info->RecordDestroy(record);
        HRESULTHolder::throwOnError(hr, failure);
    }
    Variant element;
    element.pvRecord = record;
    element.pRecInfo = info.detach();
    element.vt = VT_RECORD;
    return element;
}

void putRecord(SAFEARRAY* array, LONG* where, const VARIANT& value, const char* failure)
{
    if (value.vt != VT_RECORD || !value.pRecInfo || !value.pvRecord ||
        !value.pRecInfo->IsMatchingType(recordInfoOf(array, failure)))
        HRESULTHolder::throwOnError(DISP_E_TYPEMISMATCH, failure);
    HRESULTHolder::throwOnError(SafeArrayPutElement(array, where, value.pvRecord), failure);
}

// The call takes the addresses of elements, except that it takes those which are pointers themselves.
void* elementOf(VARIANT& value)
{
    switch (value.vt) {
    case VT_BSTR:
    case VT_UNKNOWN:
    case VT_DISPATCH:
        return value.byref;
    case VT_DECIMAL:
        return &value;
    default:
        return dataOf(value);
    }
}
} // namespace

SafeArray::SafeArray(VARTYPE type, unsigned count, long lowerBound) : array_(create(type, {{count, lowerBound}})) {}
SafeArray::SafeArray(VARTYPE type, std::initializer_list<SAFEARRAYBOUND> bounds) : array_(create(type, bounds)) {}
SafeArray::SafeArray(SAFEARRAY* array) : array_(copyOf(array)) {}
SafeArray::SafeArray(const SafeArray& other) : SafeArray(other.array_) {}
SafeArray::~SafeArray() { SafeArrayDestroy(array_); }

VARTYPE SafeArray::getType() const
{
    VARTYPE type = VT_EMPTY;
    HRESULTHolder::throwOnError(SafeArrayGetVartype(array_, &type), "Can't get type of safe array");
    return type;
}

long SafeArray::getLowerBound(unsigned dimension) const
{
    LONG bound = 0;
    HRESULTHolder::throwOnError(SafeArrayGetLBound(array_, dimension, &bound), "Can't get bounds of safe array");
    return bound;
}

long SafeArray::getUpperBound(unsigned dimension) const
{
    LONG bound = 0;
    HRESULTHolder::throwOnError(SafeArrayGetUBound(array_, dimension, &bound), "Can't get bounds of safe array");
    return bound;
}

unsigned SafeArray::getSize() const
{
    const unsigned dimensions = getDimensionCount();
    unsigned size = dimensions ? 1 : 0;
    for (unsigned i = 1; i <= dimensions; ++i)
        size *= static_cast<unsigned>(getUpperBound(i) - getLowerBound(i) + 1);
    return size;
}

Variant SafeArray::getElement(long index) const { return getElement({index}); }

Variant SafeArray::getElement(std::initializer_list<long> indices) const
{
    constexpr const char* failure = "Can't get element of safe array";
    std::vector<LONG> position(indices);
    LONG* const where = checked(*this, position, failure);
    Variant element;
    const VARTYPE type = getType();
    if (type == VT_VARIANT) {
        HRESULTHolder::throwOnError(SafeArrayGetElement(array_, where, &element), failure);
        return element;
    }
    if (type == VT_RECORD)
        return getRecord(array_, where, failure);
    void* const data = type == VT_DECIMAL ? static_cast<void*>(&element) : dataOf(element);
    HRESULTHolder::throwOnError(SafeArrayGetElement(array_, where, data), failure);
    element.vt = type; // Not before: a failing call leaves no element to be freed.
    return element;
}

void SafeArray::setElement(long index, const VARIANT& value) { setElement({index}, value); }

void SafeArray::setElement(std::initializer_list<long> indices, const VARIANT& value)
{
    constexpr const char* failure = "Can't set element of safe array";
    std::vector<LONG> position(indices);
    LONG* const where = checked(*this, position, failure);
    const VARTYPE type = getType();
    if (type == VT_VARIANT) {
        HRESULTHolder::throwOnError(SafeArrayPutElement(array_, where, const_cast<VARIANT*>(&value)), failure);
        return;
    }
    if (type == VT_RECORD) {
        putRecord(array_, where, value, failure);
        return;
    }
    Variant converted;
    HRESULTHolder::throwOnError(VariantChangeType(&converted, const_cast<VARIANT*>(&value), 0, type), failure);
    HRESULTHolder::throwOnError(SafeArrayPutElement(array_, where, elementOf(converted)), failure);
}

void SafeArray::resize(unsigned count)
{
    SAFEARRAYBOUND bound = {count, getLowerBound(getDimensionCount())};
    HRESULTHolder::throwOnError(SafeArrayRedim(array_, &bound), "Can't resize safe array");
}

void SafeArray::attach(SAFEARRAY* array)
{
    if (array == array_)
        return;
    HRESULTHolder::throwOnError(SafeArrayDestroy(array_), "Can't destroy safe array");
    array_ = array;
}

SAFEARRAY** SafeArray::put()
{
    attach(nullptr);
    return &array_;
}
} // namespace tarn
