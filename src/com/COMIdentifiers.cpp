#include <tarn/COMIdentifiers.h>

#include "../foundation/Hex.h"

namespace tarn {
BasicString<char> getHRESULTIdentifier(long hr)
{
    return "HRESULT value " + toHex(static_cast<unsigned long>(hr)) + '\0';
}
} // namespace tarn
