#pragma once

#include <tarn/BasicString.h>
#include <tarn/Export.h>

#include <memory>
#include <optional>
#include <vector>

namespace tarn {
/// Lets a program run once in a session: a second start hands its arguments to the first and ends.
///
///     const SingleInstance instance(L"Example.Planner");
///     if (!instance.isFirst() && instance.handOver(CommandLine::own(), 5000))
///         return 0;
///
/// The first one takes them with receive(), on a thread of its own or when getEvent() is signaled. Members may be
/// called from one thread at a time. Failures throw WindowsError.
class TARN_API SingleInstance {
public:
    /// The name tells programs apart: choose one that no other has, without a backslash. Throws "Error in CreateMutex"
    /// and "Can't make pipe for other instances".
    explicit SingleInstance(const wchar_t* name);
    /// Moved to, it is what the source was, which is then good for nothing.
    ///@{
    SingleInstance(SingleInstance&& other) noexcept;
    SingleInstance& operator=(SingleInstance&& other) noexcept;
    ///@}
    /// When the first ends, the next one that is started is the first; those that run stay what they are. Throws "Error
    /// while closing handle".
    ~SingleInstance() noexcept(false);

    /// Whether no other object of this name was there.
    bool isFirst() const { return first_ != nullptr; }

    /// Gives the texts to the first instance and waits until it has taken them; it may bring its window to the front
    /// then. False when it did not take them in time, because it is just ending for instance: make a new
    /// SingleInstance, and ask that. Throws "Can't hand arguments over".
    bool handOver(const std::vector<BasicString<wchar_t>>& arguments, unsigned timeoutMs) const;

    /// What the next start hands over; nothing when the time is up. For the first one alone: throws "Only the first
    /// instance receives arguments", and "Can't receive arguments".
    std::optional<std::vector<BasicString<wchar_t>>> receive(unsigned timeoutMs);
    /// Signaled when receive(0) is worth a call. Lent; null when this is not the first.
    void* getEvent() const;

private:
    class First;

    void end();

    BasicString<wchar_t> pipeName_;
    std::unique_ptr<First> first_;
};
} // namespace tarn
