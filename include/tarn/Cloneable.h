#pragma once

#include <tarn/Export.h>

namespace tarn {
/// An object that can copy itself without its class being known.
class TARN_API Cloneable {
public:
    /// A new copy of the whole object. The caller owns it, and destroys it through its own class: there is
    /// no virtual destructor.
    virtual Cloneable* Clone() const = 0;

protected:
    ~Cloneable() = default;
};
} // namespace tarn
