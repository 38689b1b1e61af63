#include "Test.h"

#include <tarn/ItemIDList.h>
#include <tarn/ShellExtension.h>

#include <shellapi.h>

using Text = BasicString<wchar_t>;
using namespace std::string_literals;

namespace {
// Files as Explorer hands them over; only GetData counts.
class FileData : public IDataObject, public IUnknownImpl {
public:
    explicit FileData(std::wstring paths) : IUnknownImpl(nullptr), paths_(std::move(paths)) {}

    TARN_IUNKNOWN_METHODS
    HRESULT STDMETHODCALLTYPE GetData(FORMATETC* format, STGMEDIUM* medium) override
    {
        if (format->cfFormat != CF_HDROP)
            return DV_E_FORMATETC;
        medium->tymed = TYMED_HGLOBAL;
        medium->hGlobal = GlobalAlloc(GPTR, sizeof(DROPFILES) + (paths_.size() + 2) * sizeof(wchar_t));
        auto* const files = static_cast<DROPFILES*>(medium->hGlobal);
        *files = {sizeof(DROPFILES), {}, FALSE, TRUE};
        paths_.copy(reinterpret_cast<wchar_t*>(files + 1), paths_.size());
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE GetDataHere(FORMATETC*, STGMEDIUM*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE QueryGetData(FORMATETC*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetCanonicalFormatEtc(FORMATETC*, FORMATETC*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE SetData(FORMATETC*, STGMEDIUM*, BOOL) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE EnumFormatEtc(DWORD, IEnumFORMATETC**) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE DAdvise(FORMATETC*, DWORD, IAdviseSink*, DWORD*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE DUnadvise(DWORD) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE EnumDAdvise(IEnumSTATDATA**) override { return E_NOTIMPL; }

private:
    std::wstring paths_;
};

const std::wstring longPath = L"C:\\" + std::wstring(300, L'x');

COMInterfacePointer<IDataObject> twoFiles() { return new FileData(L"C:\\one.txt" + std::wstring(1, L'\0') + longPath); }

struct Commands : ContextMenuHandler {
    Commands() : ContextMenuHandler(nullptr) {}
    std::vector<Command> getCommands() override
    {
        ++asked;
        return {{L"&Count", [this](HWND) { invoked = Text::fromInt(static_cast<int>(getItems().size())); }, L"count",
                 L"Counts \u20AC"},
                {L"", nullptr, L"", L""},
                {L"&Fail", [](HWND) { throw WindowsError(ERROR_ACCESS_DENIED); }, L"fail", L""}};
    }
    Text invoked;
    int asked = 0;
};

struct Drops : DropHandler {
    Drops() : DropHandler(nullptr, IID_IDropTarget) {}
    unsigned long getEffect(const Items& items, unsigned long keys, unsigned long allowed) const override
    {
        if (keys == MK_CONTROL)
            throw std::bad_alloc();
        return DropHandler::getEffect(items, keys, allowed);
    }
    void drop(const Items& items, unsigned long) override
    {
        if (!dropped.empty())
            throw WindowsError(ERROR_ACCESS_DENIED);
        dropped = items;
    }
    Items dropped;
};

BOOL CALLBACK refusePage(HPROPSHEETPAGE, LPARAM) { return FALSE; }

UINT CALLBACK countReleased(HWND, UINT msg, PROPSHEETPAGEW* page)
{
    if (msg == PSPCB_RELEASE)
        ++*reinterpret_cast<int*>(page->lParam);
    return 1;
}

struct Pages : PropertySheetHandler {
    Pages() : PropertySheetHandler(nullptr) {}
    std::vector<HPROPSHEETPAGE> createPages() override
    {
        if (fails)
            throw std::bad_alloc();
        static const DLGTEMPLATE bare[2]{};
        PROPSHEETPAGEW page{};
        page.dwSize = sizeof page;
        page.dwFlags = PSP_DLGINDIRECT | PSP_USECALLBACK;
        page.pResource = bare;
        page.pfnCallback = countReleased;
        page.lParam = reinterpret_cast<LPARAM>(&released);
        return {CreatePropertySheetPageW(&page), CreatePropertySheetPageW(&page)};
    }
    bool fails = false;
    int released = 0;
};
} // namespace

TEST_CASE("ShellExtension: reads the selected files, long paths included")
{
    auto* const handler = new Commands;
    const COMInterfacePointer<IContextMenu> menu(handler);
    const auto init = menu.require<IShellExtInit>();
    ItemIDList folder;
    LPITEMIDLIST list = nullptr;
    REQUIRE(SHGetSpecialFolderLocation(nullptr, CSIDL_WINDOWS, &list) == S_OK);
    folder.attach(list);
    CHECK(init->Initialize(list, twoFiles(), nullptr) == S_OK);
    CHECK((handler->getItems() == ShellExtension::Items{L"C:\\one.txt", longPath.c_str()}));
    CHECK((!folder.getPathW().empty() && handler->getFolder() == folder.getPathW()));
    CHECK((init->Initialize(nullptr, nullptr, nullptr) == S_OK && handler->getItems().empty()));
    CHECK(handler->getFolder().empty());
}

TEST_CASE("ContextMenuHandler: adds its commands to the menu")
{
    const COMInterfacePointer<IContextMenu> handler(new Commands);
    const HMENU menu = CreatePopupMenu();
    AppendMenuW(menu, MF_STRING, 1, L"before");
    CHECK((handler->QueryContextMenu(menu, 1, 100, 200, CMF_DEFAULTONLY) == 0 && GetMenuItemCount(menu) == 1));
    CHECK(handler->QueryContextMenu(menu, 1, 100, 200, CMF_NORMAL) == 3);
    CHECK((GetMenuItemID(menu, 1) == 100 && GetMenuItemID(menu, 3) == 102));
    wchar_t text[20];
    GetMenuStringW(menu, 102, text, 20, MF_BYCOMMAND);
    CHECK(Text(text) == L"&Fail");
    // There may be fewer identifiers than commands.
    CHECK(handler->QueryContextMenu(menu, 0, 300, 300, CMF_NORMAL) == 1);
    CHECK(FAILED(handler->QueryContextMenu(nullptr, 0, 100, 200, CMF_NORMAL)));
    DestroyMenu(menu);
}

TEST_CASE("ContextMenuHandler: commands run by number and by verb")
{
    auto* const commands = new Commands;
    const COMInterfacePointer<IContextMenu> handler(commands);
    commands->Initialize(nullptr, twoFiles(), nullptr);
    const auto& [verb, wideVerb, expected] = GENERATE(table<const char*, const wchar_t*, HRESULT>({
        {MAKEINTRESOURCEA(0), nullptr, S_OK},
        {"COUNT", nullptr, S_OK},
        {"other", L"count", S_OK},
        {"other", nullptr, E_FAIL},
        {"", nullptr, E_FAIL},
        {MAKEINTRESOURCEA(1), nullptr, E_FAIL},
        {MAKEINTRESOURCEA(3), nullptr, E_FAIL},
        {"fail", nullptr, HRESULT_FROM_WIN32(ERROR_ACCESS_DENIED)},
    }));
    CMINVOKECOMMANDINFOEX info = {};
    info.cbSize = sizeof info;
    info.lpVerb = verb;
    info.fMask = wideVerb ? CMIC_MASK_UNICODE : 0;
    info.lpVerbW = wideVerb;
    CHECK(handler->InvokeCommand(reinterpret_cast<CMINVOKECOMMANDINFO*>(&info)) == expected);
    CHECK(commands->invoked == (expected == S_OK ? L"2" : L""));
    CHECK(handler->InvokeCommand(nullptr) == E_POINTER);
}

TEST_CASE("ContextMenuHandler: tells verbs and help in both widths")
{
    auto* const commands = new Commands;
    const COMInterfacePointer<IContextMenu> handler(commands);
    wchar_t wide[20] = {};
    auto* const narrow = reinterpret_cast<char*>(wide);
    const auto get = [&](UINT_PTR command, UINT what, UINT size = 20) {
        return handler->GetCommandString(command, what, nullptr, narrow, size);
    };
    CHECK((get(0, GCS_VERBA) == S_OK && narrow == "count"s));
    CHECK((get(0, GCS_HELPTEXTW) == S_OK && Text(wide) == L"Counts \u20AC"));
    CHECK((get(0, GCS_HELPTEXTA) == S_OK && w2a(L"Counts \u20AC", CP_ACP) == narrow));
    CHECK((FAILED(get(0, GCS_VERBA, 5)) && FAILED(get(0, GCS_VERBW, 5)) && get(0, GCS_VERBW, 6) == S_OK));
    CHECK((get(2, GCS_HELPTEXTA) == E_NOTIMPL && get(3, GCS_VERBA) == E_INVALIDARG));
    CHECK((get(2, GCS_VALIDATEW) == S_OK && get(3, GCS_VALIDATEW) == S_FALSE));
    CHECK(commands->asked == 1);
}

TEST_CASE("DropHandler: takes files onto its file and refuses the rest")
{
    auto* const drops = new Drops;
    const COMInterfacePointer<IDropTarget> target(drops);
    const auto file = target.require<IPersistFile>();
    CHECK(file->Load(L"C:\\target.zip", STGM_READ) == S_OK);
    LPOLESTR name = nullptr;
    REQUIRE(file->GetCurFile(&name) == S_OK);
    CHECK(Text(name) == L"C:\\target.zip");
    CoTaskMemFree(name);
    CLSID clsid;
    CHECK((target.require<IPersist>()->GetClassID(&clsid) == S_OK && clsid == IID_IDropTarget));

    DWORD effect = DROPEFFECT_COPY | DROPEFFECT_MOVE;
    CHECK((target->DragEnter(twoFiles(), 0, {}, &effect) == S_OK && effect == DROPEFFECT_COPY));
    effect = DROPEFFECT_MOVE;
    CHECK((target->DragOver(0, {}, &effect) == S_OK && effect == DROPEFFECT_NONE));
    effect = DROPEFFECT_COPY;
    CHECK((target->DragOver(0, {}, &effect) == S_OK && effect == DROPEFFECT_COPY));
    CHECK((target->DragLeave() == S_OK && target->DragOver(0, {}, &effect) == S_OK && effect == DROPEFFECT_NONE));
    effect = DROPEFFECT_COPY;
    CHECK((target->Drop(twoFiles(), 0, {}, &effect) == S_OK && drops->dropped.size() == 2));
    CHECK((target->DragOver(0, {}, &effect) == S_OK && effect == DROPEFFECT_NONE));
    effect = DROPEFFECT_COPY;
    CHECK((target->Drop(nullptr, 0, {}, &effect) == S_OK && effect == DROPEFFECT_NONE));
    CHECK(drops->dropped.size() == 2); // The handler was not called.

    effect = DROPEFFECT_COPY;
    CHECK(target->Drop(twoFiles(), 0, {}, &effect) == HRESULT_FROM_WIN32(ERROR_ACCESS_DENIED));
    CHECK(effect == DROPEFFECT_NONE);
    effect = DROPEFFECT_COPY;
    CHECK((target->DragEnter(twoFiles(), MK_CONTROL, {}, &effect) == E_OUTOFMEMORY && effect == DROPEFFECT_NONE));
}

TEST_CASE("PropertySheetHandler: pages that are refused are destroyed, and what they throw is the result")
{
    auto* const pages = new Pages;
    const COMInterfacePointer<IShellPropSheetExt> handler(pages);
    CHECK((handler->AddPages(&refusePage, 0) == S_OK && pages->released == 2));
    pages->fails = true;
    CHECK(handler->AddPages(&refusePage, 0) == E_OUTOFMEMORY);
    CHECK(handler.as<IShellExtInit>());
}
