#include <tarn/ToolBar.h>

#include "ControlMessages.h"
#include "ItemApi.h"

namespace tarn {
namespace {
constexpr const char* cannotAddButton = "Can't add tool bar button";
constexpr const char* cannotChangeButton = "Can't change tool bar button";

template <class Ch> void addTo(const ToolBar& bar, unsigned short id, const Ch* text, int image, int style)
{
    TBBUTTON button{};
    button.iBitmap = image;
    button.idCommand = id;
    button.fsState = TBSTATE_ENABLED;
    button.fsStyle = static_cast<BYTE>(style);
    button.iString = reinterpret_cast<INT_PTR>(text);
    ensureSent(bar, FALSE, cannotAddButton, ItemApi<Ch>::addButtons, 1, toLParam(&button));
}

template <class Ch> BasicString<Ch> textOfButton(const ToolBar& bar, unsigned short id)
{
    const auto ask = [&](Ch* buffer) {
        return static_cast<std::size_t>(
            ensureSent(bar, -1, "Can't get tool bar button", ItemApi<Ch>::getButtonText, id, toLParam(buffer)));
    };
    BasicString<Ch> text(ask(nullptr) + 1, Ch()); // With the terminator.
    text.resize(ask(text.data()));
    return text;
}
} // namespace

void ToolBar::create(HWND parent, unsigned short id, unsigned long style)
{
    createControl(*this, TOOLBARCLASSNAMEW, parent, id, RECT(), WS_VISIBLE | style);
    sendMessageA(TB_BUTTONSTRUCTSIZE, sizeof(TBBUTTON));
}
void ToolBar::adjust() const { sendMessageA(TB_AUTOSIZE); }

HIMAGELIST ToolBar::setImageList(HIMAGELIST list) const
{
    return static_cast<HIMAGELIST>(toPointer(sendMessageA(TB_SETIMAGELIST, 0, toLParam(list))));
}
void ToolBar::useStandardImages(bool large) const
{
    sendMessageA(TB_LOADIMAGES, large ? IDB_STD_LARGE_COLOR : IDB_STD_SMALL_COLOR, toLParam(HINST_COMMCTRL));
}

void ToolBar::addButton(unsigned short id, const char* text, int image, int style) const
{
    addTo(*this, id, text, image, style);
}
void ToolBar::addButton(unsigned short id, const wchar_t* text, int image, int style) const
{
    addTo(*this, id, text, image, style);
}
void ToolBar::addSeparator() const { addTo<wchar_t>(*this, 0, nullptr, 0, BTNS_SEP); }
int ToolBar::getButtonCount() const { return static_cast<int>(sendMessageA(TB_BUTTONCOUNT)); }
void ToolBar::deleteButton(unsigned index) const
{
    ensureSent(*this, FALSE, "Can't delete tool bar button", TB_DELETEBUTTON, index);
}
BasicString<char> ToolBar::getButtonTextA(unsigned short id) const { return textOfButton<char>(*this, id); }
BasicString<wchar_t> ToolBar::getButtonTextW(unsigned short id) const { return textOfButton<wchar_t>(*this, id); }

void ToolBar::enableButton(unsigned short id, bool enable) const
{
    ensureSent(*this, FALSE, cannotChangeButton, TB_ENABLEBUTTON, id, MAKELPARAM(enable, 0));
}
bool ToolBar::isButtonEnabled(unsigned short id) const { return sendMessageA(TB_ISBUTTONENABLED, id) > 0; }
void ToolBar::setButtonChecked(unsigned short id, bool isOn) const
{
    ensureSent(*this, FALSE, cannotChangeButton, TB_CHECKBUTTON, id, MAKELPARAM(isOn, 0));
}
bool ToolBar::isButtonChecked(unsigned short id) const { return sendMessageA(TB_ISBUTTONCHECKED, id) > 0; }
} // namespace tarn
