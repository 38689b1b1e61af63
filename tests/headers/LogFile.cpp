#include <tarn/LogFile.h>

using namespace tarn;

void begin(const std::exception& exception);
void begin(const std::exception& exception)
{
#include "LogFile.example"
}
