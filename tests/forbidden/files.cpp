#include <tarn/TemporaryDirectory.h>
#include <tarn/WindowsModule.h>

using tarn::WindowsModule;

void theFlagsOfAModuleAreNoBool(const tarn::BasicString<char>& name)
{
    // forbidden: call to non-.constexpr. function .*writeBoolOrUnsignedLong
    WindowsModule("kernel32.dll", FALSE).close();
    // forbidden: call to non-.constexpr. function .*writeBoolOrUnsignedLong
    WindowsModule(name, TRUE).close();
    WindowsModule fine(name, LOAD_LIBRARY_AS_DATAFILE);
    // forbidden: use of deleted function .*WindowsModule::load
    fine.load("kernel32.dll", true);
}

void theAddressOfATextIsNotAsked(const tarn::TemporaryDirectory& folder)
{
    // forbidden: use of deleted function .*TemporaryDirectory::operator bool
    if (folder)
        return;
    // forbidden: use of deleted function .*TemporaryDirectory::operator==
    folder == L"C:\\";
}
