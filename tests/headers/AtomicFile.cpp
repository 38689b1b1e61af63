#include <tarn/AtomicFile.h>

using namespace tarn;

void save(int version, const BasicString<wchar_t>& text);
void save(int version, const BasicString<wchar_t>& text)
{
#include "AtomicFile.example"
}
