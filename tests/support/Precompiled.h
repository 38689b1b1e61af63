#include <catch2/catch.hpp>

#include <tarn/Exception.h>
#include <tarn/Windows.h>

#include <string>
#include <vector>
