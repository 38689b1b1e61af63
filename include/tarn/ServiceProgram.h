#pragma once

#include <tarn/BasicString.h>
#include <tarn/Event.h>
#include <tarn/Export.h>
#include <tarn/Lock.h>

#include <exception>
#include <vector>

namespace tarn {
/// A program that is a service, runs in a console, too, and can be tested as an object.
///
///     class Backup : public ServiceProgram {
///     public:
///         Backup() : ServiceProgram(L"Backup") {}
///         unsigned long run(const std::vector<BasicString<wchar_t>>&) override
///         {
///             while (getStopEvent().wait(60'000) == WindowsHandle::timeout)
///                 saveWhatIsNew();
///             return 0;
///         }
///     };
///
///     int main() { return Backup().main(); }
///
/// Install it with "--service" behind its path, `"C:\Backup\backup.exe" --service`: by this argument main() tells that
/// the service manager has started it, which not every platform lets a program find out. Started by hand it runs in the
/// console, and ends with Ctrl+C. A test calls run() on a thread, and requestStop().
///
/// One object at a time is in main(), runAsService() or runInConsole(). Failures throw WindowsError.
class TARN_API ServiceProgram {
public:
    /// The name under which it is installed. Throws "Error in CreateEvent".
    explicit ServiceProgram(const wchar_t* name);
    /// It stays where it is.
    ///@{
    ServiceProgram(const ServiceProgram&) = delete;
    ServiceProgram& operator=(const ServiceProgram&) = delete;
    ///@}
    virtual ~ServiceProgram() = default;

    /// Runs as a service when one of the arguments is "--service", else in the console. The result is for the system.
    int main();
    /// For the service manager. What leaves run() is reported to it (the code of a WindowsError, else
    /// ERROR_EXCEPTION_IN_SERVICE), and then thrown here. Throws "Can't run as a service".
    int runAsService();
    /// Until run() returns, which Ctrl+C, Ctrl+Break and the end of the session ask it to. Gives the program's own
    /// arguments. Throws "Can't handle Ctrl+C", and what leaves run().
    int runInConsole();

    /// What the program does; it ends when getStopEvent() is signaled. The arguments are those of the start, the first
    /// is the name. The result is the exit code; any other than 0 is told to the service manager as a failure.
    virtual unsigned long run(const std::vector<BasicString<wchar_t>>& arguments) = 0;

    /// Signaled when run() is to end.
    const Event& getStopEvent() const { return stop_; }
    /// Signaled while the service is not paused, to be waited for before each piece of work.
    const Event& getGoOnEvent() const { return goOn_; }
    /// Asks run() to end, from any thread.
    void requestStop();
    /// While stopping takes long: that it goes on, and how long the next step may take. From run(); does nothing in the
    /// console.
    void reportProgress(unsigned nextStepMs);

protected:
    /// Whether it can be paused; then run() looks at getGoOnEvent(). False.
    virtual bool canPause() const { return false; }
    /// A command of your own, 128 to 255, by `Service::control`. Called on another thread than run(); what it throws
    /// stops the service, and is thrown by runAsService().
    virtual void onCommand([[maybe_unused]] unsigned long command) {}

private:
    struct ServiceInternals; // Derived classes see private names, and should see none that a program has.

    const BasicString<wchar_t> name_;
    const Event stop_{true, false};
    const Event goOn_{true, true};
    const Event ended_{true, false};
    CriticalSection lock_; // Of the rest.
    SERVICE_STATUS_HANDLE handle_ = nullptr;
    unsigned long state_ = 0;
    unsigned long checkPoint_ = 0;
    unsigned long exitCode_ = 0;
    bool isSystemCode_ = true; // The exit code is one of the system's errors.
    std::exception_ptr failure_;
};
} // namespace tarn
