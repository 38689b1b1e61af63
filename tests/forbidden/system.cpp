#include <tarn/BasicString.h>
#include <tarn/Event.h>
#include <tarn/Lock.h>

void namesAreNotTakenForTrue(const tarn::BasicString<wchar_t>& name)
{
    // forbidden: use of deleted function .*Mutex::Mutex\(const Text
    tarn::Mutex("name").lock();
    // forbidden: use of deleted function .*Mutex::Mutex\(const Text
    tarn::Mutex(name).lock();
    // forbidden: use of deleted function .*Event::Event\(const Text
    tarn::Event("name", true).set();
}
