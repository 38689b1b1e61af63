#include "Test.h"

#include "ScratchFolder.h"

#include <tarn/COMApartment.h>
#include <tarn/PictureFile.h>

namespace {
using Pixels = std::vector<std::uint32_t>;

Bitmap picture(int width, int height, const Pixels& colours)
{
    std::uint32_t* pixels = nullptr;
    Bitmap bitmap = Bitmap::withPixels(width, height, pixels);
    std::ranges::copy(colours, pixels);
    return bitmap;
}
} // namespace

TEST_CASE("savePicture, loadPicture: pixels come back through the codecs, upright")
{
    const COMApartment com;
    const ScratchFolder folder;
    const Pixels colours{0xFFFF0000, 0xFF00FF00, 0xFF0000FF, 0xFFFFFFFF, 0xFF000000, 0xFF123456};
    const BasicString<wchar_t> file = folder.file(GENERATE(L"\u20AC.png", L"a.BMP", L"a.tif"));
    savePicture(picture(3, 2, colours), w2a(file.c_str(), CP_ACP).c_str());
    const Bitmap loaded = loadPicture(file.c_str());
    CHECK((loaded.getSize() == Size(3, 2) && loaded.getPixels() == colours));
}

TEST_CASE("savePicture, loadPicture: a PNG keeps opacity when asked to, and a JPEG nearly all colours")
{
    const COMApartment com;
    const ScratchFolder folder;
    const std::wstring png = folder.path().wstring() + L"\\a.png", jpeg = folder.path().wstring() + L"\\a.jpeg";
    const Pixels half{0x80800000, 0x00000000};
    savePicture(picture(2, 1, half), png.c_str(), true);
    CHECK(loadPicture(png.c_str()).getPixels() == half);
    savePicture(picture(2, 1, half), png.c_str());
    CHECK(loadPicture(png.c_str()).getPixels() == Pixels{0xFF800000, 0xFF000000});
    savePicture(picture(16, 16, Pixels(256, 0xFF2060C0)), jpeg.c_str());
    const std::uint32_t colour = loadPicture(jpeg.c_str()).getPixels().at(100);
    CHECK((std::abs(int(colour >> 16 & 0xFF) - 0x20) < 8 && std::abs(int(colour & 0xFF) - 0xC0) < 8));
}

TEST_CASE("savePicture, loadPicture: what is no picture is an error")
{
    const COMApartment com;
    const ScratchFolder folder;
    const std::string text = folder.write("text.png", "no picture");
    CHECK_THROWS_WITH(loadPicture(text.c_str()), Catch::StartsWith("Can't load picture"));
    CHECK_THROWS_WITH(loadPicture(folder.file("missing.png").c_str()), Catch::StartsWith("Can't load picture"));
    CHECK_THROWS_WITH(savePicture(nullptr, folder.file("a.png").c_str()), Catch::StartsWith("Can't save picture"));
    const Bitmap bitmap = picture(1, 1, {0});
    CHECK_THROWS_WITH(savePicture(bitmap, folder.file("a.xyz").c_str()), Catch::StartsWith("Can't save picture"));
}
