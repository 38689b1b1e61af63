#pragma once

#include <tarn/COMInterfacePointer.h>
#include <tarn/Export.h>
#include <tarn/Variant.h>
#include <tarn/Windows.h>

#include <ocidl.h>

#include <functional>
#include <memory>
#include <vector>

namespace tarn {
/// Hears the events that an object of automation sends through a connection point, for as long as it lives.
///
///     const auto onEvent = [](DISPID event, const std::vector<tarn::Variant>& arguments) {
///         return event == 1 ? arguments.at(0) : tarn::Variant();
///     };
///     const tarn::EventConnection connection(object, DIID_Events, onEvent);
///
/// Events come on the threads of COM's choice; in an apartment of one thread on that, while it dispatches messages.
class TARN_API EventConnection {
public:
    /// Gets the number of an event and its arguments, the first one first, those by reference as values. What it
    /// returns or throws goes to the sender, as from asHRESULT() with an `EXCEPINFO`.
    using Handler = std::function<Variant(DISPID event, const std::vector<Variant>& arguments)>;

    /// To the object's events of an interface. Throws as HRESULTHolder::throwOnError does, "Can't connect to events",
    /// with `CONNECT_E_NOCONNECTION` when the object has none of these, and "Can't get COM interface" when it has no
    /// events.
    EventConnection(IUnknown* source, const GUID& events, Handler handler);
    /// A move takes the connection over; an assignment ends that of before.
    ///@{
    EventConnection(EventConnection&&) noexcept = default;
    EventConnection& operator=(EventConnection&& other) noexcept;
    ///@}
    /// Drops what goes wrong.
    ~EventConnection();

    /// Ends it: no event is handed on from now on, though one on another thread may still be in the handler. Throws
    /// "Can't disconnect from events"; harmless when it has ended.
    void disconnect();

private:
    struct Target;

    std::shared_ptr<Target> target_;
    COMInterfacePointer<IConnectionPoint> point_;
    DWORD cookie_ = 0;
};
} // namespace tarn
