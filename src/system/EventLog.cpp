#include <tarn/EventLog.h>

#include "../foundation/Check.h"
#include "../foundation/Closing.h"
#include "EventRecords.h"

#include <string_view>

namespace tarn {
namespace {
constexpr const char* notRegistered = "Can't register event source";

BasicString<wchar_t> keyOf(const wchar_t* source)
{
    if (!source || !*source || std::wstring_view(source).find(L'\\') != std::wstring_view::npos)
        throwWindowsError(ERROR_INVALID_NAME, notRegistered);
    return BasicString<wchar_t>(L"SYSTEM\\CurrentControlSet\\Services\\EventLog\\Application\\") + source;
}

struct CloseLog {
    void operator()(void* log) const { CloseEventLog(log); }
};
} // namespace

EventLog::EventLog(const wchar_t* source) : log_(ensure(RegisterEventSourceW(nullptr, source), "Can't open event log"))
{
}

void EventLog::Close::operator()(void* log) const noexcept
{
    closeQuietly([=] { ensure(DeregisterEventSource(log), "Can't close event log"); });
}

void EventLog::report(Severity severity, const wchar_t* text, unsigned long id) const
{
    constexpr WORD types[] = {EVENTLOG_INFORMATION_TYPE, EVENTLOG_WARNING_TYPE, EVENTLOG_ERROR_TYPE};
    ensure(ReportEventW(log_.get(), types[severity], 0, id, nullptr, 1, 0, &text, nullptr), "Can't report event");
}

void EventLog::registerSource(const wchar_t* source)
{
    const BasicString<wchar_t> key = keyOf(source);
    // A program of the system's that has texts for the numbers 1 to 1000, each of which is the first text reported.
    constexpr wchar_t messages[] = L"%SystemRoot%\\System32\\EventCreate.exe";
    constexpr DWORD types = EVENTLOG_INFORMATION_TYPE | EVENTLOG_WARNING_TYPE | EVENTLOG_ERROR_TYPE;
    ensureCode(
        RegSetKeyValueW(HKEY_LOCAL_MACHINE, key.c_str(), L"EventMessageFile", REG_EXPAND_SZ, messages, sizeof messages),
        notRegistered);
    ensureCode(RegSetKeyValueW(HKEY_LOCAL_MACHINE, key.c_str(), L"TypesSupported", REG_DWORD, &types, sizeof types),
               notRegistered);
}

void EventLog::unregisterSource(const wchar_t* source)
{
    const LSTATUS code = RegDeleteKeyW(HKEY_LOCAL_MACHINE, keyOf(source).c_str());
    if (code != ERROR_FILE_NOT_FOUND)
        ensureCode(code, notRegistered);
}

std::vector<EventLog::Entry> EventLog::read(const wchar_t* source, std::size_t most)
{
    constexpr const char* failed = "Can't read event log";
    const std::unique_ptr<void, CloseLog> log(ensure(OpenEventLogW(nullptr, source), failed));
    std::vector<Entry> entries;
    std::vector<BYTE> buffer(0x10000);
    while (entries.size() < most) {
        DWORD size = 0, needed = 0;
        if (ReadEventLogW(log.get(), EVENTLOG_BACKWARDS_READ | EVENTLOG_SEQUENTIAL_READ, 0, buffer.data(),
                          static_cast<DWORD>(buffer.size()), &size, &needed))
            appendEntries(entries, buffer.data(), size, source);
        else if (GetLastError() == ERROR_INSUFFICIENT_BUFFER)
            buffer.resize(needed);
        else if (GetLastError() == ERROR_HANDLE_EOF)
            break;
        else
            throwLastError(failed);
    }
    if (entries.size() > most)
        entries.resize(most);
    return entries;
}
} // namespace tarn
