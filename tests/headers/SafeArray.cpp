#include <tarn/SafeArray.h>

void twice(const tarn::SafeArray& samples);
void twice(const tarn::SafeArray& samples)
{
#include "SafeArray.example"
}
