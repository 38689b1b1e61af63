// What nearly every source includes, compiled once. Sources still include what they use: the 64-bit
// build goes without this header.
#include <tarn/Windows.h>

#include <map>
#include <string>
#include <vector>
