#include <tarn/MessageLoop.h>

#include <tarn/Window.h>

void loop(HWND window, HACCEL accelerators, HWND dialog);
void loop(HWND window, HACCEL accelerators, HWND dialog)
{
    MSG msg;
#include "MessageLoop.example"
}
