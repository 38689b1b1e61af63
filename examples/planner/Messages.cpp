#include "Messages.h"

#include "Ids.h"
#include "Text.h"

#include <tarn/Dialog.h>
#include <tarn/Exception.h>

#include <exception>
#include <iostream>
#include <new>

namespace planner {
namespace {
constexpr const wchar_t* caption = L"Planner";

class QuestionDialog : public tarn::Dialog {
public:
    QuestionDialog(HWND owner, const std::wstring& question, const wchar_t* yes, const wchar_t* no)
        : Dialog(owner, DIALOG_QUESTION, GetModuleHandleW(nullptr)), question_(question), yes_(yes), no_(no)
    {
    }

    bool onInitDialog(tarn::Window&) override
    {
        setText(ID_QUESTION, question_.c_str());
        setText(IDYES, yes_);
        setText(IDNO, no_);
        return true;
    }

    void onCommand(tarn::Window*, unsigned short, unsigned short id) override { end(id); }

private:
    const std::wstring& question_;
    const wchar_t *yes_, *no_;
};
} // namespace

void Messages::error(HWND owner) const
{
    if (isScripted_)
        throw;
    try {
        throw;
    } catch (const std::bad_alloc&) {
        tarn::Window::messageBox(owner, L"There is not enough memory.", caption, MB_OK | MB_ICONERROR);
    } catch (const std::exception& e) {
        tarn::Window::messageBox(owner, tarn::whatW(e), caption, MB_OK | MB_ICONERROR);
    }
}

void Messages::tell(HWND owner, const std::wstring& text) const
{
    if (isScripted_)
        std::cout << narrow(text) << std::flush;
    else
        tarn::Window::messageBox(owner, trimmed(text).c_str(), caption, MB_OK | MB_ICONINFORMATION);
}

bool Messages::confirm(HWND owner, const std::wstring& question)
{
    return tarn::Window::messageBox(owner, question.c_str(), caption, MB_YESNO | MB_ICONQUESTION) == IDYES;
}

int Messages::ask(HWND owner, const std::wstring& question, const wchar_t* yes, const wchar_t* no)
{
    return QuestionDialog(owner, question, yes, no).showModal();
}
} // namespace planner
