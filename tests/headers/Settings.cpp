#include <tarn/Settings.h>

using namespace tarn;

void widen();
void widen()
{
#include "Settings.example"
}
