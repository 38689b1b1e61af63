#include <tarn/Clipboard.h>

using namespace tarn;

void copy(HWND window);
void copy(HWND window)
{
#include "Clipboard.example"
}
