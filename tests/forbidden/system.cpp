#include <tarn/BasicString.h>
#include <tarn/Event.h>
#include <tarn/Lock.h>
#include <tarn/Thread.h>

void namesAreNotTakenForTrue(const tarn::BasicString<wchar_t>& name)
{
    // forbidden: use of deleted function .*Mutex::Mutex\(const Text
    tarn::Mutex("name").lock();
    // forbidden: use of deleted function .*Mutex::Mutex\(const Text
    tarn::Mutex(name).lock();
    // forbidden: use of deleted function .*Event::Event\(const Text
    tarn::Event("name", true).set();
}

struct Work : tarn::Thread {
    unsigned long run() override { return 0; }
};

void threadsStayWhereTheyAre(Work& work)
{
    // forbidden: use of deleted function .*Work::Work
    Work moved(static_cast<Work&&>(work));
}

void handlesAreNoNumbers(const tarn::Event& event)
{
    // forbidden: cannot convert .*Event. to .int.
    int number = event;
    // forbidden: no match for .operator\+.|invalid operands|pointer of type .void \*. used in arithmetic
    event + 1;
}
