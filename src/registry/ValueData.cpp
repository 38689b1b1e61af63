#include "ValueData.h"

#include <stdexcept>

#include "../foundation/Check.h"

namespace tarn {
void checkDWordType(DWORD type)
{
    if (type != REG_DWORD && type != REG_DWORD_BIG_ENDIAN && type != REG_BINARY)
        throwError(std::runtime_error("Can't read DWORD value from registry with type other than "
                                      "REG_DWORD_LITTLE_ENDIAN, REG_DWORD_BIG_ENDIAN or REG_BINARY"));
}

void checkDWordSize(std::size_t size)
{
    if (size != sizeof(DWORD))
        throwError(std::runtime_error("Can't read DWORD from registry value with size != sizeof(DWORD)"));
}

void checkQWord(DWORD type, std::size_t size)
{
    if (type != REG_QWORD && type != REG_DWORD && type != REG_BINARY)
        throwError(std::runtime_error("Can't read QWORD value from registry with type other than REG_QWORD, REG_DWORD "
                                      "or REG_BINARY"));
    if (size != (type == REG_DWORD ? sizeof(DWORD) : sizeof(unsigned long long)))
        throwError(std::runtime_error("Can't read QWORD from registry value with size != sizeof(QWORD)"));
}

void checkStringType(DWORD type)
{
    if (type != REG_SZ && type != REG_EXPAND_SZ)
        throwWindowsError(ERROR_UNSUPPORTED_TYPE, "Wrong value type. Expected REG_SZ or REG_EXPAND_SZ");
}

void checkStringsType(DWORD type)
{
    if (type != REG_MULTI_SZ)
        throwWindowsError(ERROR_UNSUPPORTED_TYPE, "Wrong value type. Expected REG_MULTI_SZ");
}
} // namespace tarn
