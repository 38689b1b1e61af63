#include "../Sample.h"

#include <tarn/RegistryKey.h>

#include <cstring>
#include <iostream>

// The program of the other edition: peer write FILE, peer read FILE, peer double, peer register SUBKEY

namespace {
// Gives back the numbers and the text of its standard input, twice as large.
void doubleAll()
{
    tarn::WindowsFile in, out;
    in.attach(GetStdHandle(STD_INPUT_HANDLE));
    out.attach(GetStdHandle(STD_OUTPUT_HANDLE));
    long long number = 0;
    double fraction = 0;
    std::wstring text;
    in >> number >> fraction >> text;
    out << 2 * number << 2 * fraction << text + text;
}

void registerWidth(const char* subkey)
{
    for (const HKEY root : {HKEY_LOCAL_MACHINE, HKEY_CURRENT_USER}) {
        tarn::RegistryKey key;
        key.create(root, subkey, KEY_ALL_ACCESS);
        key.setValue("pointer", static_cast<unsigned long>(sizeof(void*)));
        key.attach(key.detach(), true);
    }
}
} // namespace

int main(int argc, char** argv)
{
    try {
        const auto is = [&](const char* command) { return argc > 1 && std::strcmp(argv[1], command) == 0; };
        if (is("double"))
            doubleAll();
        else if (argc > 2 && is("write"))
            support::writeSample(argv[2]);
        else if (argc > 2 && is("read"))
            return support::isSample(argv[2]) ? 0 : 1;
        else if (argc > 2 && is("register"))
            registerWidth(argv[2]);
        else
            return 2;
        return 0;
    } catch (const std::exception& e) {
        std::cerr << e.what() << '\n';
        return 3;
    }
}
