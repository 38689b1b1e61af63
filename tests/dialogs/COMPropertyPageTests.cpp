#include "Driving.h"
#include "Expect.h"

#include <tarn/COMPropertyPage.h>
#include <tarn/Factory.h>

#include <olectl.h>

#include <stdexcept>

using namespace tarn;

namespace {
constexpr GUID pageClass = {0x5d1f0a21, 0x33c4, 0x4f1d, {0x9a, 0x11, 0x20, 0x6b, 0x33, 0x41, 0x52, 0x01}};

/// Counts what it is told. Lives on the stack.
class Site : public IPropertyPageSite {
public:
    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID, void**) override { return E_NOINTERFACE; }
    ULONG STDMETHODCALLTYPE AddRef() override { return ++references; }
    ULONG STDMETHODCALLTYPE Release() override { return --references; }
    HRESULT STDMETHODCALLTYPE OnStatusChange(DWORD newStatus) override { return status = newStatus, S_OK; }
    HRESULT STDMETHODCALLTYPE GetLocaleID(LCID*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetPageContainer(IUnknown**) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE TranslateAccelerator(MSG*) override { return S_FALSE; }

    ULONG references = 0;
    DWORD status = 0;
};

class Page : public COMPropertyPage {
public:
    explicit Page(IUnknown* outer) : COMPropertyPage(outer, 11, 2, GetModuleHandleW(nullptr)) { current = this; }
    ~Page() override { current = nullptr; }
    bool onInitDialog(Window&) override
    {
        setText(10, "value");
        return true;
    }
    void onCommand(Window* sender, unsigned short code, unsigned short id) override
    {
        COMPropertyPage::onCommand(sender, code, id);
        if (code == EN_CHANGE && isOpen())
            setDirty(true);
        if (code == EN_KILLFOCUS + 1000)
            throw std::runtime_error("in a handler");
    }
    void onError(const std::exception& error) override { heard = error.what(); }
    void apply() override
    {
        if (failing)
            throw std::bad_alloc();
        ++applied;
    }

    bool failing = false;
    std::string heard;
    static inline Page* current = nullptr;
    static inline int applied = 0;
};

struct Apartment {
    Apartment() { CoInitialize(nullptr); }
    ~Apartment() { CoUninitialize(); }
};
} // namespace

TEST_CASE("COMPropertyPage: serves its size, its window and its values", "[compage]")
{
    const Apartment apartment;
    const COMInterfacePointer<IPropertyPage> page(new Page(nullptr));
    PROPPAGEINFO info{};
    REQUIRE(page->GetPageInfo(&info) == S_OK);
    CHECK((info.size.cx > 100 && std::wstring(info.pszTitle) == L"Title"));
    CoTaskMemFree(info.pszTitle);
    CHECK(page->Deactivate() == E_UNEXPECTED);

    IUnknown* const object = page;
    CHECK(page->SetObjects(1, const_cast<IUnknown**>(&object)) == S_OK);
    CHECK((Page::current->getObjects().size() == 1 && page->SetObjects(0, nullptr) == S_OK));
    Window parent;
    parent.create(L"STATIC", L"", WS_OVERLAPPED, RECT{0, 0, 300, 300}, nullptr, nullptr, nullptr);
    const RECT place{5, 6, 205, 106};
    CHECK(page->Activate(parent, nullptr, FALSE) == E_POINTER);
    REQUIRE(page->Activate(parent, &place, FALSE) == S_OK);
    CHECK((Page::current->getTextA(10) == "value" && Page::current->getWindowSize() == Size(200, 100)));
    CHECK(page->IsPageDirty() == S_FALSE);
    Page::current->setText(10, "other");
    CHECK(page->IsPageDirty() == S_OK);
    Page::current->failing = true;
    CHECK((page->Apply() == E_OUTOFMEMORY && page->IsPageDirty() == S_OK));
    Page::current->failing = false;
    CHECK((page->Apply() == S_OK && page->IsPageDirty() == S_FALSE));
    CHECK(page->Help(L"") == E_NOTIMPL);
    SendMessageW(*Page::current, WM_COMMAND, MAKEWPARAM(10, EN_KILLFOCUS + 1000), 0);
    CHECK(Page::current->heard == "in a handler");
    CHECK((page->Show(SW_SHOW) == S_OK && page->Deactivate() == S_OK));
    CHECK(!Page::current->isOpen());
}

TEST_CASE("COMPropertyPage: takes its own keys, and tells a wrong order of calls", "[compage]")
{
    const Apartment apartment;
    Site site;
    const COMInterfacePointer<IPropertyPage> page(new Page(nullptr));
    CHECK((page->SetPageSite(&site) == S_OK && page->SetPageSite(&site) == E_UNEXPECTED && site.references == 1));
    RECT place{0, 0, 200, 100};
    MSG tab{};
    CHECK((page->Move(nullptr) == E_POINTER && page->Move(&place) == E_UNEXPECTED));
    CHECK((page->Show(SW_SHOW) == E_UNEXPECTED && page->TranslateAccelerator(nullptr) == E_POINTER));
    CHECK((page->GetPageInfo(nullptr) == E_POINTER && page->SetObjects(1, nullptr) == E_POINTER));
    CHECK(page->TranslateAccelerator(&tab) == S_FALSE);

    Window parent;
    parent.create(L"STATIC", L"", WS_OVERLAPPED | WS_VISIBLE, RECT{0, 0, 300, 300}, nullptr, nullptr, nullptr);
    REQUIRE((page->Activate(parent, &place, FALSE) == S_OK && page->Show(SW_SHOW) == S_OK));
    CHECK(page->Show(SW_MINIMIZE) == E_INVALIDARG);
    const HWND field = GetDlgItem(*Page::current, 10);
    tab = MSG{field, WM_KEYDOWN, VK_TAB, 1, 0, {}};
    CHECK(page->TranslateAccelerator(&tab) == S_OK);
    tab.wParam = static_cast<WPARAM>(GENERATE(VK_RETURN, VK_ESCAPE)); // The frame's buttons.
    CHECK(page->TranslateAccelerator(&tab) == S_FALSE);
    tab = MSG{parent, WM_KEYDOWN, VK_TAB, 1, 0, {}};
    CHECK(page->TranslateAccelerator(&tab) == S_FALSE);
    SetWindowTextW(field, L"other");
    CHECK(site.status == PROPPAGESTATUS_DIRTY);
    SendMessageW(*Page::current, WM_COMMAND, GENERATE(IDOK, IDCANCEL), 0); // Sent by some controls.
    CHECK(IsWindowVisible(*Page::current));
    place.right = 150;
    CHECK((page->Move(&place) == S_OK && Page::current->getWindowSize() == Size(150, 100)));
    CHECK((page->Deactivate() == S_OK && page->SetPageSite(nullptr) == S_OK && site.references == 0));
}

TEST_CASE("COMPropertyPage: a property frame shows, applies and releases it", "[compage]")
{
    const Apartment apartment;
    const COMInterfacePointer<IUnknown> factory(
        static_cast<IClassFactory*>(new Factory([](IUnknown* outer) -> IUnknownImpl* { return new Page(outer); })));
    DWORD cookie = 0;
    REQUIRE(CoRegisterClassObject(pageClass, factory, CLSCTX_INPROC_SERVER, REGCLS_MULTIPLEUSE, &cookie) == S_OK);
    Page::applied = 0;
    const COMInterfacePointer<IUnknown> object(factory);
    IUnknown* objects[] = {object};
    bool wasChanged = false;
    support::Driver driver([&] {
        if (!Page::current || !Page::current->isOpen())
            return false;
        Page::current->setText(10, "changed");
        wasChanged = true;
        return PostMessageW(support::visibleDialog(), WM_COMMAND, IDOK, 0) != FALSE;
    });
    CLSID page = pageClass;
    CHECK(OleCreatePropertyFrame(nullptr, 0, 0, L"Frame", 1, objects, 1, &page, 0, 0, nullptr) == S_OK);
    CHECK(wasChanged);
    CHECK(!driver.isLate());
    // Wine's frame shows pages, but does not apply them.
    if (!support::isWine())
        CHECK(Page::applied >= 1);
    CHECK(!Page::current);
    CoRevokeClassObject(cookie);
}
