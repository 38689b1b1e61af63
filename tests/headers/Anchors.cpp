#include <tarn/Anchors.h>
#include <tarn/Dialog.h>

using namespace tarn;

#include "Anchors.example"
