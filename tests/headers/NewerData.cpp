#include <tarn/NewerData.h>
#include <tarn/Stream.h>

#include "NewerData.example"

Shape shape;
