#include <tarn/ShellFileDialog.h>

using namespace tarn;

void showPicture(const BasicString<wchar_t>& path);
void choose(HWND window);
void choose(HWND window)
{
#include "ShellFileDialog.example"
}
