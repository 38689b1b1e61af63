#pragma once

#include <tarn/Exception.h>
#include <tarn/StringBox.h>

#include "../foundation/Check.h"
#include "ControlMessages.h"

#include <algorithm>
#include <stdexcept>

// The members of combo boxes and list boxes; the source of each class says by which messages.

namespace tarn {
static_assert(CB_ERR == LB_ERR && CB_ERRSPACE == LB_ERRSPACE);

/// The index of what was added.
inline int ensureAdded(const Window& box, LRESULT index, const char* what)
{
    if (index == CB_ERRSPACE)
        throwError(BadAllocation());
    if (isFailure(box, index, CB_ERR))
        throwError(std::runtime_error(what));
    return static_cast<int>(index);
}

/// An index as the platform takes it: -1 of any width stays -1.
inline WPARAM toIndex(unsigned index) { return static_cast<WPARAM>(static_cast<int>(index)); }

template <class Messages, class Ch> int insertText(const Window& box, UINT message, unsigned index, const Ch* text)
{
    return ensureAdded(box, sendText(box, message, toIndex(index), text), Messages::failedString);
}

template <class Messages, class Ch> BasicString<Ch> textOfItem(const Window& box, unsigned index)
{
    const auto ensured = [&](LRESULT length) {
        return static_cast<std::size_t>(
            ensureNot(CB_ERR, isFailure(box, length, CB_ERR) ? CB_ERR : length, Messages::failedText));
    };
    SetLastError(ERROR_SUCCESS);
    const std::size_t longest =
        ensured(sendText(box, Messages::getTextLength, toIndex(index), static_cast<const Ch*>(nullptr)));
    BasicString<Ch> text(longest + 1, Ch()); // With the terminator.
    text.resize(ensured(sendText(box, Messages::getText, toIndex(index), text.data())));
    return text;
}

template <class Messages>
void StringBox<Messages>::create(HWND parent, unsigned short id, const RECT& rect, unsigned long style)
{
    createControl(*this, Messages::windowClass, parent, id, rect, style);
}

template <class Messages> int StringBox<Messages>::addString(const char* text) const
{
    return insertText<Messages>(*this, Messages::addString, 0, text);
}
template <class Messages> int StringBox<Messages>::addString(const wchar_t* text) const
{
    return insertText<Messages>(*this, Messages::addString, 0, text);
}
template <class Messages> int StringBox<Messages>::addString(unsigned short resource, HINSTANCE module) const
{
    const auto text = BasicString<wchar_t>::fromResource(resource, module);
    int last = -1;
    std::size_t start = 0;
    while ((start = text.find_first_not_of(L"\n\r", start)) != text.npos) {
        const std::size_t end = std::min(text.find_first_of(L"\n\r", start), text.size());
        last = addString(text.substr(start, end - start).c_str());
        start = end;
    }
    return last;
}
template <class Messages> int StringBox<Messages>::insertString(unsigned index, const char* text) const
{
    return insertText<Messages>(*this, Messages::insertString, index, text);
}
template <class Messages> int StringBox<Messages>::insertString(unsigned index, const wchar_t* text) const
{
    return insertText<Messages>(*this, Messages::insertString, index, text);
}
template <class Messages> BasicString<char> StringBox<Messages>::getStringA(unsigned index) const
{
    return textOfItem<Messages, char>(*this, index);
}
template <class Messages> BasicString<wchar_t> StringBox<Messages>::getStringW(unsigned index) const
{
    return textOfItem<Messages, wchar_t>(*this, index);
}

template <class Messages> int StringBox<Messages>::addItem(const void* data) const
{
    return ensureAdded(*this, sendMessageA(Messages::addString, 0, toLParam(data)), Messages::failedItem);
}
template <class Messages> int StringBox<Messages>::deleteString(unsigned index) const
{
    return static_cast<int>(ensureSent(*this, CB_ERR, Messages::failedDeleting, Messages::deleteString, index));
}
template <class Messages> void StringBox<Messages>::resetContent() const { sendMessageA(Messages::resetContent); }
template <class Messages> int StringBox<Messages>::getCount() const
{
    return static_cast<int>(sendMessageA(Messages::getCount));
}

template <class Messages> void StringBox<Messages>::setItemData(unsigned index, const void* data) const
{
    ensureSent(*this, CB_ERR, Messages::failedData, Messages::setItemData, index, toLParam(data));
}
template <class Messages> void* StringBox<Messages>::getItemData(unsigned index) const
{
    return toPointer(sendMessageA(Messages::getItemData, index));
}

template <class Messages> int StringBox<Messages>::findString(const char* text, unsigned start) const
{
    return static_cast<int>(sendText(*this, Messages::findString, toIndex(start), text));
}
template <class Messages> int StringBox<Messages>::findString(const wchar_t* text, unsigned start) const
{
    return static_cast<int>(sendText(*this, Messages::findString, toIndex(start), text));
}

template <class Messages> int StringBox<Messages>::getCurrentSelection() const
{
    return static_cast<int>(sendMessageA(Messages::getSelection));
}
template <class Messages> int StringBox<Messages>::setCurrentSelection(unsigned index) const
{
    return static_cast<int>(sendMessageA(Messages::setSelection, toIndex(index)));
}

template <class Messages> bool StringBox<Messages>::hasStrings() const
{
    return (getStyle() & Messages::hasStrings) != 0;
}
template <class Messages> bool StringBox<Messages>::isOwnerDrawFixed() const
{
    return (getStyle() & Messages::ownerDrawFixed) != 0;
}
template <class Messages> bool StringBox<Messages>::isOwnerDrawVariable() const
{
    return (getStyle() & Messages::ownerDrawVariable) != 0;
}
template <class Messages> bool StringBox<Messages>::isOwnerDraw() const
{
    return isOwnerDrawFixed() || isOwnerDrawVariable();
}
} // namespace tarn
