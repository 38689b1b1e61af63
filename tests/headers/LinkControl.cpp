#include <tarn/LinkControl.h>

using namespace tarn;

void addLinks(HWND window, LinkControl& links);
void addLinks(HWND window, LinkControl& links)
{
#include "LinkControl.example"
}
