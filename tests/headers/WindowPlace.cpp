#include <tarn/WindowPlace.h>

using namespace tarn;

void showInPlace(Settings& settings, HWND window);
void showInPlace(Settings& settings, HWND window)
{
#include "WindowPlace.example"
}
