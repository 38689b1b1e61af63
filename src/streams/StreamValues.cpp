#include <tarn/StreamValues.h>

#include <tarn/Exception.h>

#include "../foundation/Throw.h"

#include <string>

namespace tarn::detail {
void throwManyElements() { throwError(Exception("Too many elements to be written")); }
void throwNoAlternative(unsigned int index)
{
    throwError(Exception("A variant has no alternative " + std::to_string(index)));
}
void throwNumberTooLarge() { throwError(Exception("A number is too large for this program")); }
} // namespace tarn::detail
