#include <tarn/SingleInstance.h>

#include <tarn/CommandLine.h>

using namespace tarn;

int begin();
int begin()
{
#include "SingleInstance.example"
    return 1;
}
