#pragma once

#include <tarn/MemoryStream.h>

#include <string>

/// What was written to a stream in memory.
inline std::string contentOf(tarn::MemoryOutputStream& stream)
{
    return std::string(static_cast<const char*>(stream.getData()), static_cast<unsigned>(stream.getSize()));
}

inline tarn::MemoryInputStream readerOf(const std::string& content)
{
    return tarn::MemoryInputStream(content.data(), static_cast<unsigned>(content.size()));
}

/// What a value writes.
template <class... T> std::string bytesOf(const T&... values)
{
    tarn::MemoryOutputStream out;
    (static_cast<tarn::OutputStream&>(out) << ... << values);
    return contentOf(out);
}

/// The next bytes, as many as one read gives.
inline std::string take(tarn::InputStream& in, unsigned count)
{
    std::string text(count, '\0');
    text.resize(in.read(text.data(), count));
    return text;
}
