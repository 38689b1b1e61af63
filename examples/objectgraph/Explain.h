#pragma once

#include <tarn/MemoryStream.h>

/// Prints the bytes of an archive of elements and styles, each with what it means.
void explain(tarn::MemoryInputStream& archive);
