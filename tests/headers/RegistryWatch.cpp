#include <tarn/RegistryWatch.h>

using namespace tarn;

void follow(void (*readSettings)());
void follow(void (*readSettings)())
{
#include "RegistryWatch.example"
}
