#include "Test.h"

#include "Hearing.h"

#include <tarn/COMApartment.h>
#include <tarn/Event.h>

#include <thread>

namespace {
/// A thread with COM that has an object, and lends it to others.
class Server {
public:
    explicit Server(COMApartment::model model) : thread_([this, model] { serve(model); }) { ready_.wait(INFINITE); }
    Server(const Server&) = delete;
    Server& operator=(const Server&) = delete;
    ~Server()
    {
        PostThreadMessageW(id_, WM_QUIT, 0, 0);
        thread_.join();
    }

    COMInterfacePointer<IDispatch> getObject()
    {
        COMInterfacePointer<IDispatch> object;
        HRESULTHolder::throwOnError(
            CoGetInterfaceAndReleaseStream(std::exchange(stream_, nullptr), IID_IDispatch, object.putVoid()));
        return object;
    }

private:
    void serve(COMApartment::model model)
    {
        const COMApartment com(model);
        const COMInterfacePointer<IDispatch> object(new Talking);
        MSG message;
        PeekMessageW(&message, nullptr, 0, 0, PM_NOREMOVE); // Now it has a queue.
        id_ = GetCurrentThreadId();
        CoMarshalInterThreadInterfaceInStream(IID_IDispatch, object, &stream_);
        ready_.set();
        while (GetMessageW(&message, nullptr, 0, 0) > 0)
            DispatchMessageW(&message);
    }

    Event ready_{true, false};
    unsigned long id_ = 0;
    IStream* stream_ = nullptr;
    std::thread thread_;
};
} // namespace

TEST_CASE("asHRESULT: the text of an exception arrives in another apartment, both ways")
{
    constexpr auto single = COMApartment::singleThreaded, multi = COMApartment::multiThreaded;
    const auto [model, other] = GENERATE_COPY(table<COMApartment::model, COMApartment::model>(
        {{single, single}, {single, multi}, {multi, single}})); // The fourth would be one apartment.
    Server server(model);
    std::thread([&server, own = other] {
        const COMApartment com(own);
        checkErrorsOf(server.getObject());
    }).join();
}
