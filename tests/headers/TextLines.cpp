#include <tarn/TextLines.h>

#include <vector>

using namespace tarn;

void readAllLines(InputStream& file, std::vector<BasicString<wchar_t>>& lines);
void readAllLines(InputStream& file, std::vector<BasicString<wchar_t>>& lines)
{
#include "TextLines.example"
}
