#include <tarn/Pipe.h>

#include <tarn/Process.h>
#include <tarn/Stream.h>

using namespace tarn;

void capture(OutputStream& log);
void capture(OutputStream& log)
{
#include "Pipe.example"
}
