#include <tarn/COMPropertyPage.h>

#include <tarn/MessageLoop.h>
#include <tarn/Rect.h>

#include "../foundation/Closing.h"
#include "../foundation/Throw.h"

#include <cstring>
#include <stdexcept>
#include <utility>

namespace tarn {
namespace {
// For the caller, who frees it.
LPOLESTR allocated(const BasicString<wchar_t>& text)
{
    const std::size_t bytes = (text.size() + 1) * sizeof(wchar_t);
    void* const copy = CoTaskMemAlloc(bytes);
    if (!copy)
        throwError(BadAllocation());
    return static_cast<LPOLESTR>(std::memcpy(copy, text.c_str(), bytes));
}
} // namespace

COMPropertyPage::COMPropertyPage(IUnknown* outer, unsigned short resource, unsigned short title, HINSTANCE instance)
    : Dialog(resource, instance), IUnknownImpl(outer), title_(title)
{
}

void* COMPropertyPage::queryInterface(const GUID& iid)
{
    return iid == IID_IPropertyPage ? static_cast<IPropertyPage*>(this) : IUnknownImpl::queryInterface(iid);
}

HRESULT COMPropertyPage::SetPageSite(IPropertyPageSite* site)
{
    if (site && site_.get())
        return E_UNEXPECTED;
    site_ = site;
    return S_OK;
}

HRESULT COMPropertyPage::Activate(HWND parent, LPCRECT rect, BOOL)
{
    if (!rect)
        return E_POINTER;
    return asHRESULT([&] {
        dirty_ = false;
        isActivating_ = true;
        try {
            create(parent);
            move(*rect, true);
        } catch (...) {
            isActivating_ = false;
            throw;
        }
        isActivating_ = false;
        if (dirty_)
            setDirty(true);
    });
}

HRESULT COMPropertyPage::Deactivate()
{
    if (!isOpen())
        return E_UNEXPECTED;
    dirty_ = false;
    return asHRESULT([&] { destroy(); });
}

HRESULT COMPropertyPage::GetPageInfo(PROPPAGEINFO* info)
{
    if (!info)
        return E_POINTER;
    return asHRESULT([&] {
        const Size size = getWindowSize();
        *info = PROPPAGEINFO{sizeof *info, nullptr, size, nullptr, nullptr, 0};
        info->pszTitle = allocated(BasicString<wchar_t>::fromResource(title_, getInstance()));
    });
}

HRESULT COMPropertyPage::SetObjects(ULONG count, IUnknown** objects)
{
    if (count && !objects)
        return E_POINTER;
    return asHRESULT([&] { objects_ = Objects(objects, objects + count); });
}

HRESULT COMPropertyPage::Show(UINT command)
{
    if (!isOpen())
        return E_UNEXPECTED;
    if (command != SW_SHOW && command != SW_SHOWNORMAL && command != SW_HIDE)
        return E_INVALIDARG;
    return asHRESULT([&] { show(command); });
}

HRESULT COMPropertyPage::Move(LPCRECT rect)
{
    if (!rect)
        return E_POINTER;
    if (!isOpen())
        return E_UNEXPECTED;
    return asHRESULT([&] { move(*rect, true); });
}

HRESULT COMPropertyPage::IsPageDirty() { return dirty_ ? S_OK : S_FALSE; }

HRESULT COMPropertyPage::Apply()
{
    if (!isOpen())
        return E_UNEXPECTED;
    return asHRESULT([&] {
        apply();
        dirty_ = false;
    });
}

HRESULT COMPropertyPage::Help(LPCOLESTR folder)
{
    return asHRESULT([&]() -> HRESULT { return help(folder) ? S_OK : E_NOTIMPL; });
}

HRESULT COMPropertyPage::TranslateAccelerator(MSG* msg)
{
    if (!msg)
        return E_POINTER;
    return asHRESULT([&]() -> HRESULT {
        const bool isFrames = msg->message == WM_KEYDOWN && (msg->wParam == VK_RETURN || msg->wParam == VK_ESCAPE);
        const bool isOurs = isOpen() && !isFrames && (msg->hwnd == getWindowHandle() || IsChild(*this, msg->hwnd));
        return isOurs && handleDialogMessage(*this, *msg) ? S_OK : S_FALSE;
    });
}

// The buttons are the frame's, and ending the page alone would only hide it.
void COMPropertyPage::onCommand(Window* sender, unsigned short code, unsigned short id)
{
    Window::onCommand(sender, code, id);
}

LRESULT COMPropertyPage::onMessage(UINT msg, WPARAM wParam, LPARAM lParam)
{
    const bool isActivating = isActivating_, wasDirty = dirty_;
    const LRESULT result = handleAndTell(msg, wParam, lParam);
    if (isActivating) // What controls tell while onInitDialog() fills them is no change of the user's.
        dirty_ = wasDirty;
    return result;
}

LRESULT COMPropertyPage::handleAndTell(UINT msg, WPARAM wParam, LPARAM lParam) noexcept
{
    try {
        try {
            return Dialog::onMessage(msg, wParam, lParam);
        } catch (const std::exception& e) {
            onError(e);
        } catch (...) {
            onError(std::runtime_error("Unknown exception"));
        }
    } catch (...) {
        dropCurrentException();
    }
    return 0;
}

void COMPropertyPage::apply() {}
bool COMPropertyPage::help(const wchar_t*) { return false; }
void COMPropertyPage::onError(const std::exception& error) { messageBox(error.what(), "", MB_ICONERROR); }

void COMPropertyPage::setDirty(bool dirty)
{
    dirty_ = dirty;
    if (site_ && !isActivating_)
        HRESULTHolder::throwOnError(site_->OnStatusChange(dirty ? PROPPAGESTATUS_DIRTY : PROPPAGESTATUS_CLEAN));
}
} // namespace tarn
