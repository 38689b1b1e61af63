#include <tarn/RunProcess.h>

#include <tarn/CommandLine.h>

using namespace tarn;

void ask(void (*report)(const char* errors));
void ask(void (*report)(const char* errors))
{
#include "RunProcess.example"
}
