#include <tarn/CommandLine.h>

#include <tarn/Process.h>

using namespace tarn;

void pack();
void pack()
{
#include "CommandLine.example"
}
