#pragma once

#include <tarn/Stream.h>

#include <string>

/// Everything that a stream still yields.
inline std::string readAll(tarn::InputStream& in)
{
    std::string all;
    char buffer[1000];
    while (const unsigned count = in.read(buffer, sizeof buffer))
        all.append(buffer, count);
    return all;
}
