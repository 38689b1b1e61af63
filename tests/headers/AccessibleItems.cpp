#include <tarn/AccessibleItems.h>
#include <tarn/Window.h>

using namespace tarn;

#include "AccessibleItems.example"
