#include "Picture.h"

#include <tarn/AutoSelect.h>
#include <tarn/Bitmap.h>
#include <tarn/DeviceContext.h>
#include <tarn/Rect.h>
#include <tarn/Window.h>

#include <objidl.h>

#include <gdiplus.h>

#include <stdexcept>
#include <string>

namespace support {
namespace {
constexpr CLSID pngEncoder = {0x557CF406, 0x1A04, 0x11D3, {0x9A, 0x73, 0x00, 0x00, 0xF8, 0x1E, 0xF3, 0x2E}};

void require(Gdiplus::Status status, const char* what)
{
    if (status != Gdiplus::Ok)
        throw std::runtime_error(std::string(what) + ": status " + std::to_string(status));
}

class ImagingComponent {
public:
    ImagingComponent()
    {
        const Gdiplus::GdiplusStartupInput input;
        require(Gdiplus::GdiplusStartup(&token_, &input, nullptr), "Can't start the imaging component");
    }
    ImagingComponent(const ImagingComponent&) = delete;
    ImagingComponent& operator=(const ImagingComponent&) = delete;
    ~ImagingComponent() { Gdiplus::GdiplusShutdown(token_); }

private:
    ULONG_PTR token_ = 0;
};
} // namespace

void savePicture(HBITMAP bitmap, const wchar_t* file)
{
    const ImagingComponent imaging;
    Gdiplus::Bitmap picture(bitmap, nullptr);
    require(picture.GetLastStatus(), "Can't read the bitmap");
    require(picture.Save(file, &pngEncoder, nullptr), "Can't write the picture");
}

void savePicture(HDC context, const RECT& part, const wchar_t* file)
{
    const tarn::Rect area(part);
    tarn::Bitmap copy(context, area.getWidth(), area.getHeight());
    {
        const tarn::DeviceContext source(context);
        tarn::DeviceContext memory = tarn::DeviceContext::createCompatible(source);
        const tarn::AutoSelect use(memory, copy);
        memory.blit(source, 0, 0, area.getWidth(), area.getHeight(), area.left, area.top, SRCCOPY);
    }
    savePicture(copy, file);
}

void savePicture(HWND window, bool wholeWindow, const wchar_t* file)
{
    const tarn::Window shown(window);
    const tarn::Rect area = wholeWindow ? shown.getWindowRectangle() : shown.getClientRectangle();
    const tarn::DeviceContext context(window, wholeWindow);
    savePicture(context, tarn::Rect(tarn::Point(), area.getSize()), file);
}

HBITMAP loadPicture(const wchar_t* file)
{
    const ImagingComponent imaging;
    Gdiplus::Bitmap picture(file);
    require(picture.GetLastStatus(), "Can't read the picture");
    HBITMAP bitmap = nullptr;
    require(picture.GetHBITMAP(Gdiplus::Color::White, &bitmap), "Can't read the picture");
    return bitmap;
}
} // namespace support
