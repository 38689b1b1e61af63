#pragma once

#include <tarn/EventLog.h>
#include <tarn/Windows.h>

#include <cstddef>
#include <string_view>

namespace tarn {
/// What the platform has put into a buffer, as far as it is of `source`.
inline void appendEntries(std::vector<EventLog::Entry>& entries, const BYTE* data, std::size_t size,
                          std::wstring_view source)
{
    for (const BYTE* const end = data + size; data != end;) {
        const auto& record = *reinterpret_cast<const EVENTLOGRECORD*>(data);
        if (std::wstring_view(reinterpret_cast<const wchar_t*>(data + sizeof record)) == source) {
            EventLog::Entry entry{record.EventType == EVENTLOG_ERROR_TYPE     ? EventLog::error
                                  : record.EventType == EVENTLOG_WARNING_TYPE ? EventLog::warning
                                                                              : EventLog::information,
                                  record.EventID,
                                  Time::fromTimeT64(record.TimeGenerated),
                                  {}};
            const auto* text = reinterpret_cast<const wchar_t*>(data + record.StringOffset);
            for (WORD i = 0; i < record.NumStrings; ++i, text += entry.texts.back().size() + 1)
                entry.texts.emplace_back(text);
            entries.push_back(std::move(entry));
        }
        data += record.Length;
    }
}
} // namespace tarn
