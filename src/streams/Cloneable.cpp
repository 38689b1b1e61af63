// The class has inline members only: seen here, its tables are exported.
#include <tarn/Cloneable.h>
