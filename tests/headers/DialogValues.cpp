#include <tarn/DialogValues.h>
#include <tarn/Dialog.h>

using namespace tarn;

#include "DialogValues.example"
