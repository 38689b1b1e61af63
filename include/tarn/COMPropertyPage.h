#pragma once

#include <tarn/COMInterfacePointer.h>
#include <tarn/Dialog.h>
#include <tarn/Export.h>
#include <tarn/IUnknownImpl.h>
#include <tarn/Windows.h>

#include <ocidl.h>

#include <exception>
#include <vector>

namespace tarn {
/// A property page that other programs show, with `OleCreatePropertyFrame` for instance: a dialog served as
/// `IPropertyPage`.
///
/// Derive from it, fill the controls in onInitDialog() from getObjects(), call setDirty() when the user
/// changes something, and write the values back in apply(). Its template is that of a child dialog. The
/// methods of the interface are a COM border: failures are results, never exceptions. What a handler of
/// the dialog throws goes to onError(), because the message loop is the other program's.
class TARN_API COMPropertyPage : public Dialog, public IPropertyPage, public IUnknownImpl {
public:
    /// `title` is a string resource, the text on the page's tab.
    COMPropertyPage(IUnknown* outer, unsigned short resource, unsigned short title, HINSTANCE instance);
    ~COMPropertyPage() noexcept override = default;

    TARN_IUNKNOWN_METHODS
    /// The methods of `IPropertyPage`, which the frame calls: `E_POINTER` for a null pointer, and `E_UNEXPECTED` for
    /// what needs an open page and finds none.
    ///@{
    HRESULT STDMETHODCALLTYPE SetPageSite(IPropertyPageSite* site) override;
    HRESULT STDMETHODCALLTYPE Activate(HWND parent, LPCRECT rect, BOOL modal) override;
    HRESULT STDMETHODCALLTYPE Deactivate() override;
    HRESULT STDMETHODCALLTYPE GetPageInfo(PROPPAGEINFO* info) override;
    HRESULT STDMETHODCALLTYPE SetObjects(ULONG count, IUnknown** objects) override;
    HRESULT STDMETHODCALLTYPE Show(UINT command) override;
    HRESULT STDMETHODCALLTYPE Move(LPCRECT rect) override;
    HRESULT STDMETHODCALLTYPE IsPageDirty() override;
    HRESULT STDMETHODCALLTYPE Apply() override;
    HRESULT STDMETHODCALLTYPE Help(LPCOLESTR folder) override;
    HRESULT STDMETHODCALLTYPE TranslateAccelerator(MSG* msg) override;
    ///@}

    /// Drops `IDOK` and `IDCANCEL`, with which Enter and Esc would end any other dialog.
    void onCommand(Window* sender, unsigned short code, unsigned short id) override;
    LRESULT onMessage(UINT msg, WPARAM wParam, LPARAM lParam) override;

    /// One or more: the frame may show the properties of several objects at once.
    using Objects = std::vector<COMInterfacePointer<IUnknown>>;
    /// Whose properties the page shows.
    const Objects& getObjects() const { return objects_; }

protected:
    void* queryInterface(const GUID& iid) override;
    /// Writes the page's values to the objects. What it throws becomes the result, and the page stays dirty.
    virtual void apply();
    /// False when the page has no help of its own.
    virtual bool help(const wchar_t* folder);
    /// Gets what a handler threw, and a `std::runtime_error` "Unknown exception" for what is no
    /// `std::exception`. By default a message box tells the text. What this function throws itself is dropped, and
    /// the debugger hears of it.
    virtual void onError(const std::exception& error);
    /// Tells the frame too, which enables its Apply button. Called by onInitDialog() it counts; called by a handler
    /// of what the controls tell while onInitDialog() fills them it does nothing.
    void setDirty(bool dirty);

private:
    LRESULT handleAndTell(UINT msg, WPARAM wParam, LPARAM lParam) noexcept;

    unsigned short title_;
    bool dirty_ = false;
    bool isActivating_ = false;
    COMInterfacePointer<IPropertyPageSite> site_;
    Objects objects_;
};
} // namespace tarn
