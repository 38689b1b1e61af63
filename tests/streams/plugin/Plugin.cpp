// A DLL with classes that can be archived, which the tests load and free.

#include <tarn/Serializable.h>
#include <tarn/Stream.h>

namespace plugin {
struct Part final : tarn::Serializable {
    void serialize(tarn::OutputStream& out) const override { out << number; }
    void deserialize(tarn::InputStream& in) override { in >> number; }

    int number = 0;
};
const tarn::SerializableImpl<Part> partRegistration("class plugin::Part");
const tarn::SerializableImpl<Part> otherRegistration("struct plugin::Other");
} // namespace plugin
