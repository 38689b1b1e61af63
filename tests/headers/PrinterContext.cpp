#include <tarn/PrinterContext.h>

using namespace tarn;

void print();
void print()
{
#include "PrinterContext.example"
}
