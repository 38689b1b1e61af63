#include <tarn/AccessibleItems.h>

#include <tarn/COMApartment.h>
#include <tarn/COMInterfacePointer.h>
#include <tarn/Exception.h>
#include <tarn/IUnknownImpl.h>
#include <tarn/Window.h>

#include "../foundation/Check.h"
#include "../foundation/FunctionOf.h"
#include "../foundation/SystemLibrary.h"
#include "../windowing/HandlerScope.h"
#include "../windowing/Subclass.h"

namespace tarn {
namespace {
// Loaded by those windows alone that are asked.
HMODULE accessibilityLibrary()
{
    static const HMODULE library = loadSystemLibrary(L"oleacc.dll");
    return library;
}

VARIANT numberOf(long number)
{
    VARIANT result{};
    result.vt = VT_I4;
    result.lVal = number;
    return result;
}

BSTR textOf(const BasicString<wchar_t>& text)
{
    return ensure(SysAllocStringLen(text.c_str(), static_cast<UINT>(text.size())), "Can't allocate text");
}

/// What is asked, with the items for as long as there are any. Children count from 1; 0 is the window.
class AccessibleObject final : public IAccessible, public IUnknownImpl {
public:
    AccessibleObject(AccessibleItems& items, HWND window) : IUnknownImpl(nullptr), items_(&items), window_(window) {}
    TARN_IUNKNOWN_METHODS

    void forget() { items_ = nullptr; }

    HRESULT STDMETHODCALLTYPE get_accParent(IDispatch** parent) override
    {
        *parent = nullptr;
        const auto objectOf =
            functionOf<decltype(AccessibleObjectFromWindow)>(accessibilityLibrary(), "AccessibleObjectFromWindow");
        return objectOf ? objectOf(window_, static_cast<DWORD>(OBJID_WINDOW), __uuidof(IDispatch),
                                   reinterpret_cast<void**>(parent))
                        : S_FALSE;
    }
    HRESULT STDMETHODCALLTYPE get_accChildCount(LONG* count) override
    {
        *count = 0;
        return handle(__builtin_return_address(0), [&] { return *count = items_->getItemCount(), S_OK; });
    }
    HRESULT STDMETHODCALLTYPE get_accChild(VARIANT, IDispatch** child) override { return *child = nullptr, S_FALSE; }

    HRESULT STDMETHODCALLTYPE get_accName(VARIANT child, BSTR* name) override
    {
        *name = nullptr;
        return handleItem(__builtin_return_address(0), child, [&](int index) {
            const BasicString<wchar_t> text = index < 0 ? items_->getName() : items_->getItem(index).name;
            return text.empty() ? S_FALSE : (*name = textOf(text), S_OK);
        });
    }
    HRESULT STDMETHODCALLTYPE get_accRole(VARIANT child, VARIANT* role) override
    {
        *role = VARIANT();
        return handleItem(__builtin_return_address(0), child, [&](int index) {
            *role = numberOf(index < 0 ? items_->getRole() : items_->getItem(index).role);
            return S_OK;
        });
    }
    HRESULT STDMETHODCALLTYPE get_accState(VARIANT child, VARIANT* state) override
    {
        *state = VARIANT();
        return handleItem(__builtin_return_address(0), child, [&](int index) {
            *state = numberOf(static_cast<long>(index < 0 ? stateOfWindow() : items_->getItem(index).state));
            return S_OK;
        });
    }
    HRESULT STDMETHODCALLTYPE get_accFocus(VARIANT* child) override
    {
        return findWith(__builtin_return_address(0), STATE_SYSTEM_FOCUSED, child);
    }
    HRESULT STDMETHODCALLTYPE get_accSelection(VARIANT* child) override
    {
        return findWith(__builtin_return_address(0), STATE_SYSTEM_SELECTED, child);
    }
    HRESULT STDMETHODCALLTYPE get_accDefaultAction(VARIANT child, BSTR* action) override
    {
        *action = nullptr;
        return handleItem(__builtin_return_address(0), child, [&](int index) -> HRESULT {
            const BasicString<wchar_t> text = actionOf(index);
            return text.empty() ? DISP_E_MEMBERNOTFOUND : (*action = textOf(text), S_OK);
        });
    }
    HRESULT STDMETHODCALLTYPE accDoDefaultAction(VARIANT child) override
    {
        return handleItem(__builtin_return_address(0), child, [&](int index) -> HRESULT {
            return actionOf(index).empty() ? DISP_E_MEMBERNOTFOUND : (items_->pressItem(index), S_OK);
        });
    }
    HRESULT STDMETHODCALLTYPE accLocation(LONG* left, LONG* top, LONG* width, LONG* height, VARIANT child) override
    {
        *left = *top = *width = *height = 0;
        return handleItem(__builtin_return_address(0), child, [&](int index) {
            const Window window(window_);
            const Rect place = index < 0 ? window.getClientRectangle() : items_->getItem(index).place;
            const Point corner = window.toScreen(place.getTopLeft());
            *left = corner.x, *top = corner.y, *width = place.getWidth(), *height = place.getHeight();
            return S_OK;
        });
    }
    HRESULT STDMETHODCALLTYPE accHitTest(LONG left, LONG top, VARIANT* child) override
    {
        *child = VARIANT();
        return handle(__builtin_return_address(0), [&] {
            const Window window(window_);
            const Point point = window.fromScreen(Point(left, top));
            if (!window.getClientRectangle().contains(point))
                return S_FALSE;
            *child = numberOf(CHILDID_SELF);
            for (int i = items_->getItemCount() - 1; i >= 0; --i)
                if (items_->getItem(i).place.contains(point))
                    *child = numberOf(i + 1);
            return S_OK;
        });
    }

    // What such items do not have.
    HRESULT STDMETHODCALLTYPE get_accValue(VARIANT, BSTR* text) override { return none(text); }
    HRESULT STDMETHODCALLTYPE get_accDescription(VARIANT, BSTR* text) override { return none(text); }
    HRESULT STDMETHODCALLTYPE get_accHelp(VARIANT, BSTR* text) override { return none(text); }
    HRESULT STDMETHODCALLTYPE get_accHelpTopic(BSTR* file, VARIANT, LONG*) override { return none(file); }
    HRESULT STDMETHODCALLTYPE get_accKeyboardShortcut(VARIANT, BSTR* text) override { return none(text); }
    HRESULT STDMETHODCALLTYPE accSelect(LONG, VARIANT) override { return DISP_E_MEMBERNOTFOUND; }
    HRESULT STDMETHODCALLTYPE accNavigate(LONG, VARIANT, VARIANT*) override { return DISP_E_MEMBERNOTFOUND; }
    HRESULT STDMETHODCALLTYPE put_accName(VARIANT, BSTR) override { return DISP_E_MEMBERNOTFOUND; }
    HRESULT STDMETHODCALLTYPE put_accValue(VARIANT, BSTR) override { return DISP_E_MEMBERNOTFOUND; }
    HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) override { return *count = 0, S_OK; }
    HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE Invoke(DISPID, REFIID, LCID, WORD, DISPPARAMS*, VARIANT*, EXCEPINFO*, UINT*) override
    {
        return E_NOTIMPL;
    }

protected:
    void* queryInterface(const GUID& iid) override
    {
        const bool isKnown = iid == __uuidof(IAccessible) || iid == __uuidof(IDispatch);
        return isKnown ? static_cast<IAccessible*>(this) : IUnknownImpl::queryInterface(iid);
    }

private:
    static HRESULT none(BSTR* text) { return *text = nullptr, DISP_E_MEMBERNOTFOUND; }

    template <class Call> HRESULT handle(const void* caller, Call call)
    {
        const COMInterfacePointer<IAccessible> alive(this);
        const auto body = [&]() -> HRESULT { return items_ ? call() : CO_E_OBJNOTCONNECTED; };
        return guardedCallback<HRESULT>(E_FAIL, {"a handler of accessible items", nullptr, 0}, body, caller);
    }
    // Gives -1 for the window.
    template <class Call> HRESULT handleItem(const void* caller, const VARIANT& child, Call call)
    {
        return handle(caller, [&]() -> HRESULT {
            const bool isKnown = child.vt == VT_I4 && child.lVal >= 0 && child.lVal <= items_->getItemCount();
            return isKnown ? call(static_cast<int>(child.lVal) - 1) : E_INVALIDARG;
        });
    }
    HRESULT findWith(const void* caller, unsigned long state, VARIANT* child)
    {
        *child = VARIANT();
        return handle(caller, [&] {
            for (int i = items_->getItemCount() - 1; i >= 0; --i)
                if (items_->getItem(i).state & state)
                    *child = numberOf(i + 1);
            return child->vt == VT_EMPTY ? S_FALSE : S_OK;
        });
    }
    BasicString<wchar_t> actionOf(int index) const
    {
        return index < 0 ? BasicString<wchar_t>() : items_->getItem(index).action;
    }
    unsigned long stateOfWindow() const
    {
        return (GetFocus() == window_ ? STATE_SYSTEM_FOCUSED : 0u) | STATE_SYSTEM_FOCUSABLE |
               (IsWindowVisible(window_) ? 0u : STATE_SYSTEM_INVISIBLE);
    }

    AccessibleItems* items_;
    HWND window_;
};
} // namespace

/// Of a window, until it ends.
class AccessibleItems::AccessibleItemsRegistration : private boost::noncopyable {
public:
    AccessibleItemsRegistration(AccessibleItems& items, HWND window)
        : items_(items), object_(new AccessibleObject(items, window)), alive_(object_),
          subclass_(window, onMessage, this, "Can't make window accessible")
    {
    }
    ~AccessibleItemsRegistration() { object_->forget(); }
    HWND getWindow() const { return subclass_.getWindow(); }

private:
    LRESULT answer(WPARAM wParam) const
    {
        const auto resultOf = functionOf<decltype(LresultFromObject)>(accessibilityLibrary(), "LresultFromObject");
        return resultOf ? resultOf(__uuidof(IAccessible), wParam, alive_.get()) : 0;
    }
    static LRESULT CALLBACK onMessage(HWND hwnd, UINT msg, WPARAM wParam, LPARAM lParam, UINT_PTR, DWORD_PTR self)
    {
        auto* const registration = reinterpret_cast<AccessibleItemsRegistration*>(self);
        if (msg == WM_GETOBJECT && static_cast<LONG>(lParam) == OBJID_CLIENT)
            return registration->answer(wParam);
        if (msg == WM_NCDESTROY)
            registration->items_.end();
        return DefSubclassProc(hwnd, msg, wParam, lParam);
    }

    COMApartment com_; // First, so that it ends last.
    AccessibleItems& items_;
    AccessibleObject* object_;
    COMInterfacePointer<IAccessible> alive_;
    Subclass subclass_;
};

AccessibleItems::AccessibleItems() = default;
AccessibleItems::~AccessibleItems() noexcept(false) = default;

void AccessibleItems::begin(HWND window)
{
    end();
    registration_ = std::make_unique<AccessibleItemsRegistration>(*this, window);
}
void AccessibleItems::end() { registration_.reset(); }
void AccessibleItems::tell(unsigned long event, int index) const
{
    if (registration_)
        NotifyWinEvent(event, registration_->getWindow(), OBJID_CLIENT, index + 1);
}

BasicString<wchar_t> AccessibleItems::getName() const
{
    return registration_ ? Window(registration_->getWindow()).getTextW() : BasicString<wchar_t>();
}
long AccessibleItems::getRole() const { return ROLE_SYSTEM_LIST; }
void AccessibleItems::pressItem(int) {}
} // namespace tarn
