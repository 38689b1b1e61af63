#include <tarn/Serializable.h>

#include "Serializable.example"
