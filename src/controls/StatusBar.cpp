#include <tarn/StatusBar.h>

#include "ControlMessages.h"

namespace tarn {
namespace {
constexpr const char* cannotSetText = "Can't set text of status bar";

template <class Ch> BasicString<Ch> textOfPart(const StatusBar& bar, unsigned part, UINT getLength, UINT getText)
{
    if (part >= static_cast<unsigned>(bar.getPartCount()))
        return BasicString<Ch>(); // The control gives the text of another part instead.
    BasicString<Ch> text(LOWORD(bar.sendMessageA(getLength, part)) + std::size_t(1), Ch()); // With the terminator.
    text.resize(LOWORD(bar.sendMessageA(getText, part, toLParam(text.data()))));
    return text;
}
} // namespace

void StatusBar::create(HWND parent, unsigned short id, unsigned long style)
{
    createControl(*this, STATUSCLASSNAMEW, parent, id, RECT(), WS_VISIBLE | style);
}
void StatusBar::adjust() const { sendMessageA(WM_SIZE); }

void StatusBar::setParts(const std::vector<int>& rightEdges) const
{
    ensureSent(*this, FALSE, "Can't set parts of status bar", SB_SETPARTS, rightEdges.size(),
               toLParam(rightEdges.data()));
}
int StatusBar::getPartCount() const { return static_cast<int>(sendMessageA(SB_GETPARTS)); }

void StatusBar::setPartText(unsigned part, const char* text) const
{
    ensureSent(*this, FALSE, cannotSetText, SB_SETTEXTA, part, toLParam(text));
}
void StatusBar::setPartText(unsigned part, const wchar_t* text) const
{
    ensureSent(*this, FALSE, cannotSetText, SB_SETTEXTW, part, toLParam(text));
}
BasicString<char> StatusBar::getPartTextA(unsigned part) const
{
    return textOfPart<char>(*this, part, SB_GETTEXTLENGTHA, SB_GETTEXTA);
}
BasicString<wchar_t> StatusBar::getPartTextW(unsigned part) const
{
    return textOfPart<wchar_t>(*this, part, SB_GETTEXTLENGTHW, SB_GETTEXTW);
}
} // namespace tarn
