#include <tarn/DialogValues.h>

#include <tarn/ComboBox.h>
#include <tarn/ListBox.h>

#include "../foundation/Check.h"

#include <array>
#include <charconv>
#include <string_view>
#include <system_error>
#include <utility>

namespace tarn {
namespace {
constexpr std::size_t longestNumber = 64;

template <class T> std::string asText(T value)
{
    std::array<char, longestNumber> buffer;
    return {buffer.data(), std::to_chars(buffer.data(), buffer.data() + buffer.size(), value).ptr};
}

/// The whole text as a number, whatever the locale.
template <class T> std::optional<T> asNumber(const BasicString<wchar_t>& text)
{
    std::string digits;
    for (const wchar_t c : text.trim())
        digits += c > 0 && c < 128 ? static_cast<char>(c) : '?';
    T value{};
    const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), value);
    const bool isWhole = error == std::errc() && end == digits.data() + digits.size();
    return isWhole ? std::optional<T>(value) : std::nullopt;
}

template <class T> std::optional<T> numberIn(const Window& dialog, int id, T min, T max)
{
    const std::optional<T> number = asNumber<T>(dialog.getTextW(id));
    return number && *number >= min && *number <= max ? number : std::nullopt;
}

template <class T> BasicString<wchar_t> askForNumber(const wchar_t* sentence, const char* kind, T min, T max)
{
    if (sentence)
        return sentence;
    std::string text = "Enter a ";
    text.append(kind).append(" from ").append(asText(min)).append(" to ").append(asText(max)).append(".");
    return BasicString<wchar_t>(text);
}

// What is not there would answer that it is not checked, or that its first item is selected.
void ensureThere(const Window& dialog, int id) { ensure(GetDlgItem(dialog, id), "Can't retrieve dialog item ID"); }

bool isListBox(HWND control)
{
    wchar_t name[8] = L"";
    GetClassNameW(control, name, 8);
    return std::wstring_view(name) == L"ListBox";
}

BasicString<char> textIn(const Window& dialog, int id, std::string&) { return dialog.getTextA(id); }
BasicString<wchar_t> textIn(const Window& dialog, int id, std::wstring&) { return dialog.getTextW(id); }
} // namespace

template <class Text> void DialogValues::addTextTo(int id, Text& value, bool isRequired, const wchar_t* sentence)
{
    const auto show = [id, &value](const Window& dialog) { dialog.setText(id, value.c_str()); };
    const auto read = [id, &value, isRequired](const Window& dialog) {
        const auto text = textIn(dialog, id, value);
        return isRequired && text.trim().empty() ? Taking() : [&value, text] { value = text; };
    };
    controls_.push_back({id, show, read, sentence ? sentence : L"Fill in this field."});
}
void DialogValues::addText(int id, std::string& value) { addTextTo(id, value, false, nullptr); }
void DialogValues::addText(int id, std::wstring& value) { addTextTo(id, value, false, nullptr); }
void DialogValues::addRequiredText(int id, std::string& value, const wchar_t* sentence)
{
    addTextTo(id, value, true, sentence);
}
void DialogValues::addRequiredText(int id, std::wstring& value, const wchar_t* sentence)
{
    addTextTo(id, value, true, sentence);
}

void DialogValues::addInteger(int id, const std::function<long long()>& get, const std::function<void(long long)>& set,
                              long long min, long long max, const wchar_t* sentence)
{
    const auto show = [id, get](const Window& dialog) { dialog.setText(id, asText(get()).c_str()); };
    const auto read = [=](const Window& dialog) {
        const auto number = numberIn(dialog, id, min, max);
        return number ? [set, number] { set(*number); } : Taking();
    };
    controls_.push_back({id, show, read, askForNumber(sentence, "whole number", min, max)});
}

void DialogValues::addNumber(int id, double& value, double min, double max, const wchar_t* sentence)
{
    const auto show = [id, &value](const Window& dialog) { dialog.setText(id, asText(value).c_str()); };
    const auto read = [=, &value](const Window& dialog) {
        const auto number = numberIn(dialog, id, min, max);
        return number ? [&value, number] { value = *number; } : Taking();
    };
    controls_.push_back({id, show, read, askForNumber(sentence, "number", min, max)});
}

void DialogValues::addCheck(int id, bool& value)
{
    const auto show = [id, &value](const Window& dialog) { dialog.setCheck(id, value); };
    const auto read = [id, &value](const Window& dialog) {
        return [&value, isOn = dialog.isChecked(id)] { value = isOn; };
    };
    controls_.push_back({id, show, read, {}});
}

void DialogValues::addChoice(int id, int& index, const wchar_t* sentence)
{
    const auto show = [id, &index](const Window& dialog) {
        const HWND box = GetDlgItem(dialog, id);
        const auto selected = static_cast<unsigned>(index);
        isListBox(box) ? ListBox(box).setCurrentSelection(selected) : ComboBox(box).setCurrentSelection(selected);
    };
    const auto read = [id, &index, isRequired = sentence != nullptr](const Window& dialog) {
        const HWND box = GetDlgItem(dialog, id);
        const int selected = isListBox(box) ? ListBox(box).getCurrentSelection() : ComboBox(box).getCurrentSelection();
        return isRequired && selected < 0 ? Taking() : [&index, selected] { index = selected; };
    };
    controls_.push_back({id, show, read, sentence});
}

void DialogValues::addRadio(int first, int last, int& index)
{
    const auto show = [=, &index](const Window& dialog) {
        for (int id = first; id <= last; ++id)
            dialog.setCheck(id, id - first == index);
    };
    const auto read = [=, &index](const Window& dialog) {
        int checked = last;
        while (checked >= first && !dialog.isChecked(checked))
            --checked;
        return [&index, selected = checked < first ? -1 : checked - first] { index = selected; };
    };
    controls_.push_back({first, show, read, {}});
}

void DialogValues::show(const Window& dialog) const
{
    for (const Control& control : controls_) {
        ensureThere(dialog, control.id);
        control.show(dialog);
    }
}

std::optional<DialogValues::Refusal> DialogValues::check(const Window& dialog) const
{
    std::vector<Taking> takings;
    for (const Control& control : controls_) {
        ensureThere(dialog, control.id);
        takings.push_back(control.read(dialog));
        if (!takings.back())
            return Refusal{control.id, control.sentence};
    }
    for (const Taking& taking : takings)
        taking();
    return std::nullopt;
}

bool DialogValues::take(const Window& dialog) const
{
    const std::optional<Refusal> refusal = check(dialog);
    if (!refusal)
        return true;
    const Window root(GetAncestor(dialog, GA_ROOT)); // Of a page its sheet, which has the title.
    root.messageBox(refusal->sentence.c_str(), root.getTextW().c_str(), MB_OK | MB_ICONWARNING);
    dialog.sendMessageA(WM_NEXTDLGCTL, reinterpret_cast<WPARAM>(GetDlgItem(dialog, refusal->id)), TRUE);
    return false;
}
} // namespace tarn
