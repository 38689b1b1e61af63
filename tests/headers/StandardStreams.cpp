#include <tarn/StandardStreams.h>

#include <iomanip>

using namespace tarn;

void writeTable(OutputStream& file);
void writeTable(OutputStream& file)
{
#include "StandardStreams.example"
}
