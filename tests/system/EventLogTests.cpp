#include "Test.h"

#include <tarn/EventLog.h>

#include "system/EventRecords.h"

TEST_CASE("EventLog: a source is registered, reports and is read")
{
    const std::wstring key = L"SYSTEM\\CurrentControlSet\\Services\\EventLog\\Application\\TarnTest";
    EventLog::registerSource(L"TarnTest");
    wchar_t file[MAX_PATH];
    DWORD size = sizeof file;
    CHECK(RegGetValueW(HKEY_LOCAL_MACHINE, key.c_str(), L"EventMessageFile", RRF_RT_REG_EXPAND_SZ | RRF_NOEXPAND,
                       nullptr, file, &size) == ERROR_SUCCESS);
    CHECK(std::wstring(file) == L"%SystemRoot%\\System32\\EventCreate.exe");
    DWORD types = 0;
    size = sizeof types;
    RegGetValueW(HKEY_LOCAL_MACHINE, key.c_str(), L"TypesSupported", RRF_RT_REG_DWORD, nullptr, &types, &size);
    CHECK(types == (EVENTLOG_INFORMATION_TYPE | EVENTLOG_WARNING_TYPE | EVENTLOG_ERROR_TYPE));
    const EventLog events(L"TarnTest");
    const Time before = Time::now() - 1000;
    events.report(EventLog::information, L"first");
    EventLog moved(EventLog(L"TarnTest"));
    moved.report(EventLog::error, L"\x0416", 7);
    const auto entries = EventLog::read(L"TarnTest", 2);
    if (entries.empty() && isWine())
        WARN("Nothing can be read, as under Wine");
    else
        CHECK((entries.size() == 2 && entries[0].texts[0] == L"\x0416" && entries[0].id == 7 &&
               entries[0].severity == EventLog::error && entries[1].time >= before));
    EventLog::unregisterSource(L"TarnTest");
    EventLog::unregisterSource(L"TarnTest");
    CHECK(RegGetValueW(HKEY_LOCAL_MACHINE, key.c_str(), nullptr, RRF_RT_ANY, nullptr, nullptr, nullptr) ==
          ERROR_FILE_NOT_FOUND);
    for (const wchar_t* const bad : {L"", L"a\\b", static_cast<const wchar_t*>(nullptr)})
        expectWindowsError([&] { EventLog::registerSource(bad); }, ERROR_INVALID_NAME, "Can't register event source");
}

TEST_CASE("EventLog: of the platform's records those of the source count")
{
    std::vector<BYTE> records;
    const auto add = [&](WORD type, DWORD id, const std::wstring& source, WORD texts, const std::wstring& all) {
        EVENTLOGRECORD record{};
        const std::wstring names = source + L'\0' + L"MACHINE" + L'\0';
        record.StringOffset = static_cast<DWORD>(sizeof record + names.size() * sizeof(wchar_t));
        record.Length = static_cast<DWORD>(record.StringOffset + all.size() * sizeof(wchar_t) + sizeof(DWORD));
        record.Length = (record.Length + 3) / 4 * 4;
        record.TimeGenerated = 4'000'000'000; // Behind 2038.
        record.EventType = type;
        record.EventID = id;
        record.NumStrings = texts;
        const std::size_t at = records.size();
        records.resize(at + record.Length);
        std::memcpy(&records[at], &record, sizeof record);
        std::memcpy(&records[at + sizeof record], names.data(), names.size() * sizeof(wchar_t));
        std::memcpy(&records[at + record.StringOffset], all.data(), all.size() * sizeof(wchar_t));
    };
    add(EVENTLOG_AUDIT_SUCCESS, 0xC0000001, L"Mine", 2, std::wstring(L"a\0\0", 3));
    add(EVENTLOG_ERROR_TYPE, 2, L"Mine too", 1, std::wstring(L"b\0", 2));
    add(EVENTLOG_WARNING_TYPE, 3, L"Mine", 0, {});
    std::vector<EventLog::Entry> entries;
    appendEntries(entries, records.data(), records.size(), L"Mine");
    REQUIRE(entries.size() == 2);
    CHECK((entries[0].severity == EventLog::information && entries[0].id == 0xC0000001));
    CHECK(entries[0].time == Time::fromTimeT64(4'000'000'000));
    CHECK(entries[0].texts == std::vector<BasicString<wchar_t>>{L"a", {}});
    CHECK((entries[1].severity == EventLog::warning && entries[1].texts.empty()));
}
