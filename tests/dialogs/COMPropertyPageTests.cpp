#include "../windowing/Windows.h"
#include "Apartment.h"
#include "Driving.h"

#include <tarn/COMPropertyPage.h>
#include <tarn/Factory.h>

#include <olectl.h>

namespace {
constexpr GUID pageClass = {0x5d1f0a21, 0x33c4, 0x4f1d, {0x9a, 0x11, 0x20, 0x6b, 0x33, 0x41, 0x52, 0x01}};

/// Counts what it is told. Lives on the stack.
class Site : public IPropertyPageSite {
public:
    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID, void**) override { return E_NOINTERFACE; }
    ULONG STDMETHODCALLTYPE AddRef() override { return ++references; }
    ULONG STDMETHODCALLTYPE Release() override { return --references; }
    HRESULT STDMETHODCALLTYPE OnStatusChange(DWORD value) override { return status = value, S_OK; }
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
        if (isDirtyFromTheStart)
            setDirty(true);
        return true;
    }
    void onCommand(Window* sender, unsigned short code, unsigned short id) override
    {
        COMPropertyPage::onCommand(sender, code, id);
        if (code == EN_CHANGE && isOpen())
            setDirty(true);
        if (code == throwsError)
            throw std::runtime_error("in a handler");
        if (code == throwsNumber)
            throw 5;
    }
    void onError(const std::exception& error) override
    {
        heard = error.what();
        if (failing)
            throw std::runtime_error("in onError");
    }
    void apply() override
    {
        if (failing)
            throw std::bad_alloc();
        ++applied;
    }

    static constexpr unsigned short throwsError = 5001, throwsNumber = 5002; // Codes of commands.
    bool failing = false, isDirtyFromTheStart = false;
    std::string heard;
    static inline Page* current = nullptr;
    static inline int applied = 0;
};

/// A page and where it has to appear.
struct Frame : Apartment {
    Frame() { open(parent, WS_OVERLAPPED | WS_VISIBLE); }

    Window parent;
    RECT place{5, 6, 205, 106};
    COMInterfacePointer<IPropertyPage> page{new Page(nullptr)};
};
} // namespace

TEST_CASE("COMPropertyPage: serves its size, its window and its values")
{
    Frame frame;
    const auto& page = frame.page;
    PROPPAGEINFO info{};
    REQUIRE(page->GetPageInfo(&info) == S_OK);
    CHECK((info.size.cx > 100 && std::wstring(info.pszTitle) == L"Title"));
    CoTaskMemFree(info.pszTitle);
    IUnknown* object = page;
    CHECK((page->SetObjects(1, &object) == S_OK && Page::current->getObjects().size() == 1));
    CHECK((page->SetObjects(0, nullptr) == S_OK && Page::current->getObjects().empty()));

    REQUIRE(page->Activate(frame.parent, &frame.place, FALSE) == S_OK);
    CHECK((Page::current->getTextA(10) == "value" && Page::current->getWindowSize() == Size(200, 100)));
    CHECK(page->IsPageDirty() == S_FALSE);
    Page::current->setText(10, "other");
    Page::current->failing = true;
    CHECK((page->Apply() == E_OUTOFMEMORY && page->IsPageDirty() == S_OK));
    Page::current->failing = false;
    CHECK((page->Apply() == S_OK && page->IsPageDirty() == S_FALSE));
}

TEST_CASE("COMPropertyPage: nothing that a handler throws reaches the host")
{
    Frame frame;
    REQUIRE(frame.page->Activate(frame.parent, &frame.place, FALSE) == S_OK);
    Page::current->failing = GENERATE(false, true);
    const auto heardAfter = [](unsigned short code) {
        SendMessageW(*Page::current, WM_COMMAND, MAKEWPARAM(10, code), 0); // As the host's message loop does.
        return Page::current->heard;
    };
    CHECK(heardAfter(Page::throwsError) == "in a handler");
    CHECK(heardAfter(Page::throwsNumber) == "Unknown exception");
}

TEST_CASE("COMPropertyPage: takes its own keys and leaves the frame its own")
{
    Frame frame;
    const auto takes = [&](HWND target, WPARAM key) {
        MSG msg{target, WM_KEYDOWN, key, 1, 0, {}};
        return frame.page->TranslateAccelerator(&msg) == S_OK;
    };
    CHECK_FALSE(takes(nullptr, VK_TAB));
    REQUIRE(frame.page->Activate(frame.parent, &frame.place, FALSE) == S_OK);
    CHECK(frame.page->Show(SW_SHOW) == S_OK);
    const HWND field = GetDlgItem(*Page::current, 10);
    CHECK((takes(field, VK_TAB) && !takes(frame.parent, VK_TAB)));
    CHECK_FALSE((takes(field, VK_RETURN) || takes(field, VK_ESCAPE)));
    for (const WPARAM button : {IDOK, IDCANCEL}) // Sent by some controls.
        SendMessageW(*Page::current, WM_COMMAND, button, 0);
    CHECK(IsWindowVisible(*Page::current));
}

TEST_CASE("COMPropertyPage: tells a wrong order of calls, and its site what changes")
{
    Site site;
    Frame frame;
    const auto& page = frame.page;
    CHECK((page->SetPageSite(&site) == S_OK && page->SetPageSite(&site) == E_UNEXPECTED && site.references == 1));
    CHECK((page->Show(SW_SHOW) == E_UNEXPECTED && page->Move(&frame.place) == E_UNEXPECTED));
    CHECK((page->Deactivate() == E_UNEXPECTED && page->Activate(nullptr, nullptr, FALSE) == E_POINTER));
    CHECK((page->Apply() == E_UNEXPECTED && page->Help(L"") == E_NOTIMPL && page->SetObjects(1, nullptr) == E_POINTER));
    Page::current->isDirtyFromTheStart = true;
    REQUIRE(page->Activate(frame.parent, &frame.place, FALSE) == S_OK);
    CHECK((page->IsPageDirty() == S_OK && site.status == PROPPAGESTATUS_DIRTY));
    CHECK((page->Apply() == S_OK && page->IsPageDirty() == S_FALSE));
    site.status = 0;
    CHECK(page->Show(SW_MINIMIZE) == E_INVALIDARG);
    SetWindowTextW(GetDlgItem(*Page::current, 10), L"other");
    CHECK(site.status == PROPPAGESTATUS_DIRTY);
    frame.place.right = 150;
    CHECK((page->Move(&frame.place) == S_OK && Page::current->getWindowSize() == Size(145, 100)));
    CHECK((page->Deactivate() == S_OK && !Page::current->isOpen() && page->IsPageDirty() == S_FALSE));
    CHECK((page->SetPageSite(nullptr) == S_OK && site.references == 0));
}

TEST_CASE("COMPropertyPage: a property frame shows, applies and releases it")
{
    const Apartment apartment;
    const COMInterfacePointer<IUnknown> factory(
        static_cast<IClassFactory*>(new Factory([](IUnknown* outer) -> IUnknownImpl* { return new Page(outer); })));
    DWORD cookie = 0;
    REQUIRE(CoRegisterClassObject(pageClass, factory, CLSCTX_INPROC_SERVER, REGCLS_MULTIPLEUSE, &cookie) == S_OK);
    Page::applied = 0;
    Driver driver([&] {
        if (!Page::current || !Page::current->isOpen())
            return false;
        Page::current->setText(10, "changed");
        return PostMessageW(visibleDialog(), WM_COMMAND, IDOK, 0) != FALSE;
    });
    IUnknown* object = factory;
    CLSID page = pageClass;
    CHECK(OleCreatePropertyFrame(nullptr, 0, 0, L"Frame", 1, &object, 1, &page, 0, 0, nullptr) == S_OK);
    CHECK(driver.isDone());
    // Wine's frame shows pages, but does not apply them.
    if (!isWine())
        CHECK(Page::applied >= 1);
    CHECK(!Page::current);
    CoRevokeClassObject(cookie);
}
