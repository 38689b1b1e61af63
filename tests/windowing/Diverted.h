#pragma once

#include "Test.h"

namespace support {
/// While it lives, calls of a function come to another one.
class Diverted {
public:
    template <class Function> Diverted(const wchar_t* module, const char* name, Function* to) : Diverted(module, name)
    {
        const auto* const target = reinterpret_cast<const void*>(to);
        unsigned char jump[sizeof former_] = {0x48, 0xB8, 0, 0, 0, 0, 0, 0, 0, 0, 0xFF, 0xE0}; // mov rax, to; jmp rax
        if constexpr (sizeof target == 4)
            std::memcpy(jump, "\x90\xB8", 2); // nop; mov eax, to
        std::memcpy(jump + 2, &target, sizeof target);
        if constexpr (sizeof target == 4)
            std::memcpy(jump + 6, "\xFF\xE0", 2);
        write(jump);
    }
    Diverted(const Diverted&) = delete;
    Diverted& operator=(const Diverted&) = delete;
    ~Diverted() { write(former_); }

private:
    Diverted(const wchar_t* module, const char* name)
        : from_(reinterpret_cast<unsigned char*>(GetProcAddress(LoadLibraryW(module), name)))
    {
        REQUIRE(from_);
        std::memcpy(former_, from_, sizeof former_);
    }
    void write(const unsigned char (&code)[12]) const
    {
        DWORD protection = 0;
        VirtualProtect(from_, sizeof code, PAGE_EXECUTE_READWRITE, &protection);
        std::memcpy(from_, code, sizeof code);
        VirtualProtect(from_, sizeof code, protection, &protection);
    }

    unsigned char* from_;
    unsigned char former_[12];
};
} // namespace support
