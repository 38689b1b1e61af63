#include "Picture.h"

#include <tarn/AutoSelect.h>
#include <tarn/Bitmap.h>
#include <tarn/COMApartment.h>
#include <tarn/DeviceContext.h>
#include <tarn/PictureFile.h>
#include <tarn/Rect.h>
#include <tarn/Window.h>

namespace support {
void savePicture(HBITMAP bitmap, const wchar_t* file)
{
    const tarn::COMApartment com;
    tarn::savePicture(bitmap, file);
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
    support::savePicture(copy, file);
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
    const tarn::COMApartment com;
    return tarn::loadPicture(file).detach();
}
} // namespace support
