#include "Campaign.h"

#include <Wine.h>

#include <tarn/BasicString.h>

#include <filesystem>
#include <fstream>
#include <sstream>
#include <stdexcept>

namespace failures {
namespace {
constexpr const char* canary = "canary.txt";
constexpr const char* song = "still singing";

// The cells of a row of the page, without their blanks and quotes.
std::vector<std::string> cellsOf(const std::string& line)
{
    std::vector<std::string> cells;
    std::istringstream in(line);
    std::string cell;
    std::getline(in, cell, '|'); // Before the first bar is nothing.
    while (std::getline(in, cell, '|')) {
        std::erase(cell, '`');
        cells.push_back(tarn::BasicString<char>(cell).trim());
    }
    return cells;
}

// Whether `name` is one of a list with commas between, or the list says "any".
bool isIn(const std::string& list, std::string_view name)
{
    if (list == "any")
        return true;
    std::istringstream in(list);
    for (std::string entry; std::getline(in >> std::ws, entry, ',');)
        if (entry == name)
            return true;
    return false;
}
} // namespace

Place::Place()
{
    const auto current = root_.path() / "current", temporary = root_.path() / "temporary";
    for (const auto& folder : {current, temporary, root_.path() / "work"})
        std::filesystem::create_directory(folder);
    root_.write(canary, song);
    root_.write(std::string("current\\") + canary, song);
    std::filesystem::current_path(current);
    SetEnvironmentVariableW(L"TMP", temporary.c_str());
}

bool Place::isWholeOutside() const
{
    return root_.read(canary) == song && root_.read(std::string("current\\") + canary) == song;
}

WorkPlace::WorkPlace(const std::wstring& keyPath)
    : folder_(std::filesystem::current_path().parent_path() / "work"),
      temporary_(std::filesystem::current_path().parent_path() / "temporary")
{
    if (RegOpenKeyExW(HKEY_CURRENT_USER, keyPath.c_str(), 0, KEY_ALL_ACCESS, &key_) != ERROR_SUCCESS)
        throw std::runtime_error("no key to work in");
}

void WorkPlace::clear() const
{
    for (const auto& folder : {folder_, temporary_})
        for (const auto& entry : std::filesystem::directory_iterator(folder))
            std::filesystem::remove_all(entry);
    RegDeleteTreeW(key_, nullptr);
}

bool WorkPlace::isTidy() const { return std::filesystem::is_empty(temporary_); }

std::vector<Scenario> allScenarios()
{
    std::vector<Scenario> all;
    for (const auto& some : {foundationScenarios(), systemScenarios(), registryScenarios(), comScenarios(),
                             graphicsScenarios(), windowScenarios(), dialogScenarios(), underWayScenarios()})
        all.insert(all.end(), some.begin(), some.end());
    return all;
}

void drainMessages()
{
    MSG msg;
    while (PeekMessageW(&msg, nullptr, 0, 0, PM_REMOVE))
        continue;
}

PassedOver::PassedOver()
{
    std::ifstream page(FAILING_CALLS_PAGE);
    if (!page)
        throw std::runtime_error("no page of failing calls");
    for (std::string line; std::getline(page, line);)
        if (line.starts_with("| `")) {
            const auto cells = cellsOf(line);
            rows_.push_back({cells.at(0), cells.at(1), line});
        }
}

bool PassedOver::covers(const std::string& call, const std::string& scenario)
{
    for (Row& row : rows_)
        if (isIn(row.calls, call) && isIn(row.scenarios, scenario))
            return row.used = true;
    return false;
}

std::vector<std::string> PassedOver::unused() const
{
    std::vector<std::string> texts;
    for (const Row& row : rows_)
        if (!row.used && (support::wineVersion() == 8 || row.text.find("Wine") == std::string::npos))
            texts.push_back(row.text);
    return texts;
}
} // namespace failures
