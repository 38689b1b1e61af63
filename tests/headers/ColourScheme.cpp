#include <tarn/BufferedPaint.h>
#include <tarn/ColourScheme.h>
#include <tarn/Window.h>

using namespace tarn;

#include "ColourScheme.example"
