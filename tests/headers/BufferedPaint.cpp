#include <tarn/BufferedPaint.h>
#include <tarn/Window.h>

using namespace tarn;

#include "BufferedPaint.example"
