#include "Diverted.h"
#include "Windows.h"

#include <tarn/Clipboard.h>

#include <thread>

TEST_CASE("Clipboard: texts, files and bytes come back as they were put there")
{
    const OpenWindow window;
    const unsigned own = Clipboard::registerFormat("Tarn++ test");
    CHECK(own == Clipboard::registerFormat(L"Tarn++ test"));
    const std::vector<BasicString<wchar_t>> files{L"C:\\a.txt", L"C:\\\u03B1.txt"};
    const std::vector<std::byte> bytes{std::byte(1), std::byte(0), std::byte(255)};
    {
        Clipboard clipboard(window);
        clipboard.clear();
        CHECK((!clipboard.getText() && !clipboard.getData(own) && clipboard.getFiles().empty()));
        CHECK(clipboard.getPicture().isNull());
        clipboard.setText(L"\u03B1 and more");
        clipboard.setFiles(files);
        clipboard.setData(own, bytes);
    }
    CHECK((Clipboard::has(own) && Clipboard::has(CF_TEXT) && !Clipboard::has(CF_BITMAP)));
    Clipboard clipboard(window);
    CHECK(clipboard.getText() == L"\u03B1 and more");
    CHECK(clipboard.getFiles() == files);
    const auto read = clipboard.getData(own);
    REQUIRE((read && read->size() >= bytes.size()));
    CHECK(std::equal(bytes.begin(), bytes.end(), read->begin()));
    clipboard.clear();
    clipboard.setText("narrow");
    CHECK((clipboard.getText() == L"narrow" && !Clipboard::has(own)));
}

namespace {
HANDLE refused;
HANDLE WINAPI refuse(UINT, HANDLE block) { return refused = block, nullptr; }
} // namespace

TEST_CASE("Clipboard: what it does not take is freed")
{
    const OpenWindow window;
    Clipboard clipboard(window);
    const Diverted calls(L"user32.dll", "SetClipboardData", &refuse);
    expectWindowsError([&] { clipboard.setText(L"text"); }, "Can't put data on clipboard");
    CHECK(GlobalFlags(refused) == GMEM_INVALID_HANDLE);
    expectWindowsError([&] { clipboard.setPicture(Bitmap(2, 2, 1, 1, nullptr)); }, "Can't put data on clipboard");
    CHECK(GetObjectType(refused) == 0);
}

TEST_CASE("Clipboard: a picture comes back as a copy")
{
    const OpenWindow window;
    std::uint32_t* pixels = nullptr;
    const Bitmap bitmap = Bitmap::withPixels(2, 1, pixels);
    pixels[0] = 0xFF0000, pixels[1] = 0x00FF00;
    Clipboard clipboard(window);
    clipboard.clear();
    clipboard.setPicture(bitmap);
    pixels[0] = 0;
    const Bitmap copy = clipboard.getPicture();
    clipboard.clear();
    REQUIRE(copy.getSize() == Size(2, 1));
    CHECK(((copy.getPixels()[0] & 0xFFFFFF) == 0xFF0000 && (copy.getPixels()[1] & 0xFFFFFF) == 0x00FF00));
}

TEST_CASE("Clipboard: who has it open keeps others waiting, and then an error")
{
    const OpenWindow window;
    const Clipboard clipboard(window);
    std::thread([] {
        const HWND other = CreateWindowExW(0, L"STATIC", L"", 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr, nullptr, nullptr);
        expectWindowsError([=] { Clipboard second(other); }, "Can't open clipboard");
        DestroyWindow(other);
    }).join();
    expectWindowsError([] { Clipboard::registerFormat(L""); }, "Can't register clipboard format");
}
