#include "Test.h"

#include "FailureOf.h"

#include <tarn/COMApartment.h>
#include <tarn/EventConnection.h>
#include <tarn/IUnknownImpl.h>

#include <olectl.h>

#include <map>
#include <thread>

namespace {
constexpr GUID DIID_Events = {0x7f0c4f52, 0x1b9d, 0x4f06, {0x9a, 0x3e, 0x5d, 0x21, 0x77, 0x08, 0xc4, 0x6b}};

// An object with events, which is its own and only connection point.
class Sender : public IConnectionPointContainer, public IConnectionPoint, public IUnknownImpl {
public:
    Sender() : IUnknownImpl(nullptr) {}

    TARN_IUNKNOWN_METHODS
    HRESULT STDMETHODCALLTYPE EnumConnectionPoints(IEnumConnectionPoints**) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE FindConnectionPoint(REFIID iid, IConnectionPoint** point) override
    {
        return iid == DIID_Events ? QueryInterface(IID_IConnectionPoint, reinterpret_cast<void**>(point))
                                  : CONNECT_E_NOCONNECTION;
    }
    HRESULT STDMETHODCALLTYPE GetConnectionInterface(IID* iid) override { return *iid = DIID_Events, S_OK; }
    HRESULT STDMETHODCALLTYPE GetConnectionPointContainer(IConnectionPointContainer**) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE Advise(IUnknown* sink, DWORD* cookie) override
    {
        IDispatch* handed = nullptr; // Asked for as the interface of the events.
        const HRESULT result = sink->QueryInterface(DIID_Events, reinterpret_cast<void**>(&handed));
        sinks[*cookie = 7].attach(handed);
        return result;
    }
    HRESULT STDMETHODCALLTYPE Unadvise(DWORD cookie) override
    {
        return sinks.erase(cookie) ? S_OK : CONNECT_E_NOCONNECTION;
    }
    HRESULT STDMETHODCALLTYPE EnumConnections(IEnumConnections**) override { return E_NOTIMPL; }

    void* queryInterface(const GUID& iid) override
    {
        if (iid == IID_IConnectionPoint)
            return static_cast<IConnectionPoint*>(this);
        return iid == IID_IConnectionPointContainer ? static_cast<IConnectionPointContainer*>(this)
                                                    : IUnknownImpl::queryInterface(iid);
    }

    std::map<DWORD, COMInterfacePointer<IDispatch>> sinks;
};

HRESULT send(IDispatch* sink, Variant& answer, EXCEPINFO* failure = nullptr)
{
    Variant backwards[] = {2, "one"};
    DISPPARAMS parameters = {backwards, nullptr, 2, 0};
    return sink->Invoke(5, IID_NULL, 0, DISPATCH_METHOD, &parameters, answer.put(), failure, nullptr);
}
} // namespace

TEST_CASE("EventConnection: a handler gets the events of an object until it is disconnected")
{
    const unsigned before = IUnknownImpl::getInstanceCount();
    std::thread([model = GENERATE(COMApartment::singleThreaded, COMApartment::multiThreaded)] {
        const COMApartment com(model);
        auto* const sender = new Sender;
        const COMInterfacePointer<IConnectionPointContainer> source(sender);
        int count = 0;
        EventConnection connection(source, DIID_Events, [&](DISPID event, const std::vector<Variant>& arguments) {
            CHECK((event == 5 && arguments == std::vector<Variant>{"one", 2}));
            if (++count >= 2)
                throw WindowsError(ERROR_ACCESS_DENIED);
            return Variant("heard");
        });
        Variant answer;
        const COMInterfacePointer<IDispatch> sink = sender->sinks.at(7);
        CHECK((send(sink, answer) == S_OK && answer == "heard"));
        auto* const other = new Sender;
        const COMInterfacePointer<IConnectionPointContainer> otherSource(other);
        EventConnection moved(otherSource, DIID_Events, [](DISPID, const auto&) { return Variant("not wanted"); });
        DISPPARAMS none{};
        CHECK(other->sinks.at(7)->Invoke(1, IID_NULL, 0, DISPATCH_METHOD, &none, nullptr, nullptr, nullptr) == S_OK);
        moved = std::move(connection);
        CHECK(other->sinks.empty());
        CHECK(send(sink, answer) == HRESULT_FROM_WIN32(ERROR_ACCESS_DENIED));
        EXCEPINFO failure = {};
        CHECK((send(sink, answer, &failure) == DISP_E_EXCEPTION &&
               failure.scode == HRESULT_FROM_WIN32(ERROR_ACCESS_DENIED)));
        BStr told;
        told.attach(failure.bstrDescription);
        CHECK(told == WindowsError(ERROR_ACCESS_DENIED).whatW());
        EventConnection& same = moved;
        moved = std::move(same);
        CHECK(sender->sinks.count(7) == 1);
        connection = std::move(moved);
        CHECK((sender->sinks.count(7) == 1 && send(sink, answer) == HRESULT_FROM_WIN32(ERROR_ACCESS_DENIED)));
        connection.disconnect();
        connection.disconnect();
        CHECK(sender->sinks.empty());
        CHECK((send(sink, answer) == S_OK && count == 4)); // Who keeps the sink is no danger.
        CHECK(failureOf([&] { EventConnection(source, IID_IDispatch, {}); }) == CONNECT_E_NOCONNECTION);
        {
            const EventConnection ended(source, DIID_Events, {});
        }
        CHECK(sender->sinks.empty());
    }).join();
    CHECK(IUnknownImpl::getInstanceCount() == before);
}
