#pragma once

// What nearly every test needs: the harness, the checks of errors, the counters for leaks, and the names of the library
// and of these. A test includes it first, and then the headers of what it tests.

#include <catch2/catch.hpp>

#include <tarn/BasicString.h>
#include <tarn/Exception.h>
#include <tarn/Windows.h>

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <memory>
#include <stdexcept>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include "Counts.h"
#include "DebuggerOutput.h"
#include "Expect.h"
#include "Handles.h"
#include "TryAgain.h"
#include "Wine.h"

using namespace support;
using namespace tarn;
