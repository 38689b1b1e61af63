#include <tarn/DragDrop.h>

using namespace tarn;

void open(const std::vector<BasicString<wchar_t>>& files);
void drag();
void drag()
{
#include "DragDrop.example"
}
