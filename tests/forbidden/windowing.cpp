#include <tarn/Window.h>
#include <tarn/WindowClass.h>

void windowsAreNoNumbers(const tarn::Window& window, const tarn::WindowClass& windowClass)
{
    // forbidden: cannot convert .*Window. to .int.
    int number = window;
    // forbidden: cannot convert .*WindowClass. to .int.
    int other = windowClass;
}

void windowsStayWhereTheyAre(tarn::Window& window)
{
    // forbidden: use of deleted function .*Window::Window
    tarn::Window moved(static_cast<tarn::Window&&>(window));
}
