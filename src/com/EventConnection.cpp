#include <tarn/EventConnection.h>

#include <tarn/IUnknownImpl.h>
#include <tarn/Lock.h>

#include "../foundation/Closing.h"

#include <iterator>
#include <utility>

namespace tarn {
// Shared with what the sender holds, which may live longer.
struct EventConnection::Target {
    CriticalSection section;
    Handler handler;

    Handler get()
    {
        const AutoLock lock(section);
        return handler;
    }
    void clear()
    {
        const AutoLock lock(section);
        handler = nullptr;
    }
};

namespace {
/// What the sender calls.
template <class Target> class EventSink final : public IDispatch, public IUnknownImpl {
public:
    EventSink(const GUID& events, std::shared_ptr<Target> target)
        : IUnknownImpl(nullptr), events_(events), target_(std::move(target))
    {
    }

    TARN_IUNKNOWN_METHODS
    HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) override { return *count = 0, S_OK; }
    HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) override { return DISP_E_BADINDEX; }
    HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) override
    {
        return DISP_E_UNKNOWNNAME;
    }
    HRESULT STDMETHODCALLTYPE Invoke(DISPID event, REFIID, LCID, WORD, DISPPARAMS* parameters, VARIANT* result,
                                     EXCEPINFO* failure, UINT*) override
    {
        return asHRESULT(failure, [&] {
            const VARIANT* const first = parameters->rgvarg;
            const std::vector<Variant> arguments(std::make_reverse_iterator(first + parameters->cArgs),
                                                 std::make_reverse_iterator(first));
            if (const auto handler = target_->get()) {
                Variant answer = handler(event, arguments);
                if (result)
                    *result = answer.detach();
            }
        });
    }

protected:
    void* queryInterface(const GUID& iid) override
    {
        return iid == IID_IDispatch || iid == events_ ? static_cast<IDispatch*>(this)
                                                      : IUnknownImpl::queryInterface(iid);
    }

private:
    const GUID events_;
    const std::shared_ptr<Target> target_;
};
} // namespace

EventConnection::EventConnection(IUnknown* source, const GUID& events, Handler handler)
    : target_(std::make_shared<Target>())
{
    constexpr const char* failure = "Can't connect to events";
    target_->handler = std::move(handler);
    const auto container = COMInterfacePointer<IUnknown>(source).require<IConnectionPointContainer>();
    container.throwOnError(container->FindConnectionPoint(events, point_.put()), failure);
    const COMInterfacePointer<IDispatch> sink(new EventSink<Target>(events, target_));
    point_.throwOnError(point_->Advise(sink, &cookie_), failure);
}

EventConnection& EventConnection::operator=(EventConnection&& other) noexcept
{
    EventConnection taken(std::move(other)); // First, because it may be this object.
    closeQuietly([this] { disconnect(); });
    target_ = std::move(taken.target_);
    point_ = std::move(taken.point_);
    cookie_ = taken.cookie_;
    return *this;
}

EventConnection::~EventConnection()
{
    closeQuietly([this] { disconnect(); });
}

void EventConnection::disconnect()
{
    if (!point_)
        return;
    target_->clear();
    const COMInterfacePointer<IConnectionPoint> point = std::move(point_);
    point.throwOnError(point->Unadvise(cookie_), "Can't disconnect from events");
}
} // namespace tarn
