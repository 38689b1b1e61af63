#include "Canvas.h"
#include "Expect.h"
#include "Picture.h"
#include "ScratchFolder.h"

#include <tarn/Rect.h>

using namespace tarn;
using namespace support;

TEST_CASE("savePicture: the file shows what was drawn", "[graphics][picture]")
{
    const ScratchFolder folder;
    const std::wstring file = folder.file(L"drawing.png");
    Canvas canvas(4, 3);
    canvas.context.fillRectangle(red, Rect(0, 0, 2, 1));
    canvas.context.fillRectangle(blue, Rect(3, 2, 4, 3));
    savePicture(canvas.context, Rect(0, 0, 4, 3), file.c_str());
    CHECK(folder.read("drawing.png").substr(0, 8) == "\x89PNG\r\n\x1A\n");
    const Bitmap loaded(loadPicture(file.c_str()), true);
    DeviceContext context;
    context.select(loaded);
    CHECK(pixelsOf(context, 4, 3) == "RR..\n....\n...B\n");
    CHECK_THROWS_AS(savePicture(loaded, folder.file(L"no folder\\drawing.png").c_str()), std::runtime_error);
    CHECK_THROWS_AS(loadPicture(folder.file(L"missing.png").c_str()), std::runtime_error);
}
