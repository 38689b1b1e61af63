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
