#include "Test.h"

#include <Picture.h>
#include <ScratchFolder.h>

#include <tarn/Bitmap.h>
#include <tarn/DeviceContext.h>
#include <tarn/Process.h>

#include <map>

namespace {
// Runs the sketch program, which lies beside this one; gives its exit code.
unsigned long runSketch(const std::string& arguments)
{
    Process program(("sketch.exe " + arguments).c_str(), 0);
    CHECK(program.wait(60'000) == WindowsHandle::signaled);
    return program.getExitCode();
}

std::string option(const char* name, const std::wstring& file)
{
    return std::string(name) + " \"" + BasicString<char>(file.c_str()).c_str() + "\" ";
}
} // namespace

TEST_CASE("sketch: the picture shows what the script drew, and a script that is wrong ends the program with an error")
{
    const ScratchFolder folder;
    folder.write("script.txt", "size 400 300\nred\nthick\nstroke 100 100 200 100\nblue\nstroke 20 200 220 200\n"
                               "green\nstroke 0 0 300 150\nkey back\ndrop C:\\a.txt\n");
    const std::wstring picture = folder.file(L"picture.png");
    REQUIRE(runSketch(option("--script", folder.file(L"script.txt")) + option("--screenshot", picture)) == 0);

    const Bitmap bitmap(loadPicture(picture.c_str()), true);
    DeviceContext memory;
    const Bitmap previous = memory.select(bitmap);
    std::map<unsigned long, int> counts, tops;
    const Size size = bitmap.getSize();
    for (int y = 0; y < size.cy; ++y) {
        for (int x = 0; x < size.cx; ++x) {
            const unsigned long pixel = memory.getPixel(x, y);
            ++counts[pixel];
            tops.try_emplace(pixel, y);
        }
    }
    memory.select(previous);
    // Eight pixels high with round ends; the green stroke was taken back, but its colour is still chosen.
    constexpr unsigned long redInk = RGB(205, 50, 45), blueInk = RGB(40, 90, 190), greenInk = RGB(50, 140, 70);
    CHECK((800 < counts[redInk] && counts[redInk] < 1000 && tops[blueInk] == tops[redInk] + 100));
    CHECK((1600 < counts[blueInk] && counts[blueInk] < 1800 && 0 < counts[greenInk] && counts[greenInk] < 400));
    CHECK_THROWS_AS(savePicture(bitmap, folder.file(L"no folder\\picture.png").c_str()), std::runtime_error);
    CHECK_THROWS_AS(loadPicture(folder.file(L"missing.png").c_str()), std::runtime_error);

    folder.write("script.txt", "stroke 1 2 3\n");
    CHECK(runSketch(option("--script", folder.file(L"script.txt"))) == 1);
    CHECK(runSketch("--nonsense") == 1);
}
