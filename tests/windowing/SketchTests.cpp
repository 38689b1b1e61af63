#include <catch2/catch.hpp>

#include <Picture.h>
#include <ScratchFolder.h>

#include <tarn/BasicString.h>
#include <tarn/Bitmap.h>
#include <tarn/DeviceContext.h>

#include <string>

using namespace tarn;

namespace {
// Runs the sketch program that lies beside this one; gives its exit code.
unsigned long runSketch(const std::wstring& arguments)
{
    wchar_t self[MAX_PATH];
    GetModuleFileNameW(nullptr, self, MAX_PATH);
    const std::wstring program = std::wstring(BasicString<wchar_t>(self).getDirectory()) + L"\\sketch.exe";
    std::wstring command = L"\"" + program + L"\" " + arguments;
    STARTUPINFOW startup{};
    startup.cb = sizeof startup;
    PROCESS_INFORMATION process;
    REQUIRE(CreateProcessW(nullptr, command.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &startup, &process));
    CHECK(WaitForSingleObject(process.hProcess, 60000) == WAIT_OBJECT_0);
    DWORD code = 0;
    GetExitCodeProcess(process.hProcess, &code);
    CloseHandle(process.hThread);
    CloseHandle(process.hProcess);
    return code;
}
} // namespace

TEST_CASE("sketch: the picture shows what the script drew", "[sketch]")
{
    const support::ScratchFolder folder;
    folder.write("script.txt", "size 400 300\nred\nthick\nstroke 100 100 200 100\nblue\nstroke 20 200 220 200\n"
                               "green\nstroke 0 0 300 150\nkey back\ndrop C:\\a.txt\n");
    const std::wstring picture = folder.file(L"picture.png");
    REQUIRE(runSketch(L"--script \"" + folder.file(L"script.txt") + L"\" --screenshot \"" + picture + L"\"") == 0);

    const Bitmap bitmap(support::loadPicture(picture.c_str()), true);
    const Size size = bitmap.getSize();
    DeviceContext memory;
    const Bitmap previous = memory.select(bitmap);
    int red = 0, blue = 0, green = 0;
    for (int y = 0; y < size.cy; ++y) {
        for (int x = 0; x < size.cx; ++x) {
            const unsigned long pixel = memory.getPixel(x, y);
            red += pixel == RGB(205, 50, 45);
            blue += pixel == RGB(40, 90, 190);
            green += pixel == RGB(50, 140, 70);
        }
    }
    memory.select(previous);
    // Eight pixels high with round ends; the green stroke was taken back, but its colour is still chosen.
    CHECK((800 < red && red < 1000));
    CHECK((1600 < blue && blue < 1800));
    CHECK((0 < green && green < 400));
}

TEST_CASE("sketch: a script that cannot be played ends the program with an error", "[sketch]")
{
    const support::ScratchFolder folder;
    folder.write("script.txt", "stroke 1 2 3\n");
    CHECK(runSketch(L"--script \"" + folder.file(L"script.txt") + L"\"") == 1);
    CHECK(runSketch(L"--script \"" + folder.file(L"missing.txt") + L"\"") == 1);
    CHECK(runSketch(L"--nonsense") == 1);
}
