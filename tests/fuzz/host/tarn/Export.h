#pragma once

// On the host the sources are linked in, so nothing is exported.
#define TARN_API
