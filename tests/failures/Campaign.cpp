#include "Campaign.h"
#include "FailingCalls.h"

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

// The current folder is one beside the scratch folder: what deletes too much would meet its canary first.
Place::Place() : folder_((root_.path() / "work").wstring())
{
    std::filesystem::create_directory(root_.path() / "current");
    root_.write(canary, song);
    root_.write(std::string("current\\") + canary, song);
    std::filesystem::current_path(root_.path() / "current");
}

void Place::clear() const
{
    std::filesystem::remove_all(folder_);
    std::filesystem::create_directory(folder_);
    RegDeleteTreeW(key_.key(), nullptr);
}

bool Place::isWholeOutside() const
{
    return root_.read(canary) == song && root_.read(std::string("current\\") + canary) == song;
}

std::string Place::narrowFile(const char* name) const { return (std::filesystem::path(folder_) / name).string(); }

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

PassedOver::Row* PassedOver::find(const Run& run)
{
    for (Row& row : rows_)
        if (isIn(row.calls, support::FailingCalls::calls()[run.call].name) && isIn(row.scenarios, run.scenario->name)) {
            row.used = true;
            return &row;
        }
    return nullptr;
}

bool PassedOver::covers(const Run& run) { return find(run) != nullptr; }

bool PassedOver::forbids(const Run& run)
{
    const Row* const row = find(run);
    return row && row->text.find("not run") != std::string::npos;
}

std::vector<std::string> PassedOver::unused() const
{
    std::vector<std::string> texts;
    for (const Row& row : rows_)
        if (!row.used)
            texts.push_back(row.text);
    return texts;
}
} // namespace failures
