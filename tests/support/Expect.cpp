#include "Expect.h"

#include <tarn/Windows.h>

std::string support::systemText(unsigned long code)
{
    char text[2048];
    DWORD length = FormatMessageA(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr, code, 0x400,
                                  text, sizeof text, nullptr);
    while (length && (text[length - 1] == '\n' || text[length - 1] == '\r' || text[length - 1] == ' '))
        --length;
    return std::string(text, length);
}
