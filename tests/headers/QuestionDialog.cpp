#include <tarn/QuestionDialog.h>

using namespace tarn;

void save();
void ask(HWND window);
void ask(HWND window)
{
#include "QuestionDialog.example"
}
