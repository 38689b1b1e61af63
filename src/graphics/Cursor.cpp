#include <tarn/Cursor.h>

#include "../foundation/Check.h"
#include "../foundation/Closing.h"
#include "GraphicsApi.h"

namespace tarn {
Cursor::~Cursor() noexcept(false)
{
    closeAtEnd([this] { close(); });
}
Cursor& Cursor::operator=(Cursor&& other) noexcept
{
    Cursor former(moveFrom(other), true);
    closeQuietly([&] { former.close(); });
    return *this;
}

void Cursor::load(int id, HINSTANCE module) { load(MAKEINTRESOURCEW(id), module); }
void Cursor::load(const char* name, HINSTANCE module)
{
    close();
    setHandle(ensure(loadCursor(module, name), "Can't load cursor"), true);
}
void Cursor::load(const wchar_t* name, HINSTANCE module)
{
    close();
    setHandle(ensure(loadCursor(module, name), "Can't load cursor"), true);
}

void Cursor::close()
{
    if (const HCURSOR handle = takeOwned())
        ensureGDI([=] { return DestroyCursor(handle); }, "Can't destroy cursor");
}
} // namespace tarn
