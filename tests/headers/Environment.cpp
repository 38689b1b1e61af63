#include <tarn/Environment.h>

#include <tarn/Process.h>

using namespace tarn;

void change();
void change()
{
#include "Environment.example"
}
