#include <tarn/FolderWalk.h>

using namespace tarn;

void measure(unsigned long long& total);
void measure(unsigned long long& total)
{
#include "FolderWalk.example"
}
