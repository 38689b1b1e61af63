#include <tarn/PrintDialog.h>

using namespace tarn;

void print(HWND window);
void print(HWND window)
{
#include "PrintDialog.example"
}
