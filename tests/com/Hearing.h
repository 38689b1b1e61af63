#pragma once

#include "Expect.h"
#include "Talking.h"
#include "Wine.h"

namespace support {
/// Checks that the errors of a Talking object of whatever apartment arrive here, and those of one here over there.
inline void checkErrorsOf(const tarn::COMInterfacePointer<IDispatch>& object)
{
    const std::wstring told = L": The plan \x4E2D is locked", code = L": HRESULT value 80040123";
    const tarn::Dispatch there(object);
    const auto failure = thrownBy<tarn::COMError>([&] { there.call(L"fail"); });
    CHECK(tarn::whatW(failure) == L"Can't call \"fail\"" + told + code);
    CHECK(failure.getHRESULT() == static_cast<long>(0x80040123));
    const tarn::COMInterfacePointer<IDispatch> here(new Talking);
    CHECK(there.call(L"ask", {here.get()}).toString() == L"Can't call \"fail\"" + told + code);
    CHECK(thrownBy<tarn::COMError>([&] { there.call(L"other"); }).getHRESULT() == DISP_E_MEMBERNOTFOUND);

    UINT count = 0;
    const auto plain =
        thrownBy<tarn::COMError>([&] { object.throwOnError(object->GetTypeInfoCount(&count), "Can't ask"); });
    const std::wstring heard = tarn::whatW(plain); // Not all versions of Wine have it come along.
    CHECK((heard == L"Can't ask" + told + code || (isWine() && heard == L"Can't ask" + code)));
}
} // namespace support
