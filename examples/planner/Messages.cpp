#include "Messages.h"

#include "Text.h"

#include <tarn/Exception.h>
#include <tarn/QuestionDialog.h>
#include <tarn/Window.h>

#include <exception>
#include <iostream>
#include <new>

namespace planner {
namespace {
constexpr const wchar_t* caption = L"Planner";
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
    tarn::QuestionDialog dialog(owner);
    dialog.setTitle(caption);
    dialog.setInstruction(question.c_str());
    dialog.addButton(IDYES, yes);
    dialog.addButton(IDNO, no);
    dialog.setCommonButtons(TDCBF_CANCEL_BUTTON);
    return dialog.showModal();
}
} // namespace planner
