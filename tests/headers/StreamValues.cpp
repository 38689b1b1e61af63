#include <tarn/StreamValues.h>

#include <chrono>
#include <string>

#include "StreamValues.example"

static_assert(tarn::StreamStruct<Person>);
