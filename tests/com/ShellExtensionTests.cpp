#include "Test.h"

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
        return {{L"&Count", [this](HWND) { invoked = Text::fromInt(static_cast<int>(getItems().size())); }, L"count",
                 L"Counts the files"},
                {L"", nullptr, L"", L""},
                {L"&Fail", [](HWND) { throw WindowsError(ERROR_ACCESS_DENIED); }, L"fail", L""}};
    }
    Text invoked;
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

BOOL CALLBACK takePage(HPROPSHEETPAGE, LPARAM) { return TRUE; }

struct Pages : PropertySheetHandler {
    Pages() : PropertySheetHandler(nullptr) {}
    std::vector<HPROPSHEETPAGE> createPages() override { throw std::bad_alloc(); }
};
} // namespace

TEST_CASE("ShellExtension: reads the selected files, long paths included")
{
    auto* const handler = new Commands;
    const COMInterfacePointer<IContextMenu> menu(handler);
    const auto init = menu.require<IShellExtInit>();
    CHECK(init->Initialize(nullptr, twoFiles(), nullptr) == S_OK);
    CHECK((handler->getItems() == ShellExtension::Items{L"C:\\one.txt", longPath.c_str()}));
    CHECK((init->Initialize(nullptr, nullptr, nullptr) == S_OK && handler->getItems().empty()));
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
    const COMInterfacePointer<IContextMenu> handler(new Commands);
    wchar_t wide[20] = {};
    auto* const narrow = reinterpret_cast<char*>(wide);
    const auto get = [&](UINT_PTR command, UINT what, UINT size = 20) {
        return handler->GetCommandString(command, what, nullptr, narrow, size);
    };
    CHECK((get(0, GCS_VERBA) == S_OK && narrow == "count"s));
    CHECK((get(0, GCS_HELPTEXTW) == S_OK && Text(wide) == L"Counts the files"));
    CHECK(FAILED(get(0, GCS_VERBA, 5)));
    CHECK((get(2, GCS_HELPTEXTA) == E_NOTIMPL && get(3, GCS_VERBA) == E_INVALIDARG));
    CHECK((get(2, GCS_VALIDATEW) == S_OK && get(3, GCS_VALIDATEW) == S_FALSE));
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

    DWORD effect = DROPEFFECT_COPY | DROPEFFECT_MOVE;
    CHECK((target->DragEnter(twoFiles(), 0, {}, &effect) == S_OK && effect == DROPEFFECT_COPY));
    effect = DROPEFFECT_MOVE;
    CHECK((target->DragOver(0, {}, &effect) == S_OK && effect == DROPEFFECT_NONE));
    effect = DROPEFFECT_COPY;
    CHECK((target->Drop(twoFiles(), 0, {}, &effect) == S_OK && drops->dropped.size() == 2));
    CHECK((target->Drop(nullptr, 0, {}, &effect) == S_OK && effect == DROPEFFECT_NONE));
    CHECK(drops->dropped.size() == 2); // The handler was not called.

    effect = DROPEFFECT_COPY;
    CHECK(target->Drop(twoFiles(), 0, {}, &effect) == HRESULT_FROM_WIN32(ERROR_ACCESS_DENIED));
    CHECK(effect == DROPEFFECT_NONE);
    effect = DROPEFFECT_COPY;
    CHECK((target->DragEnter(twoFiles(), MK_CONTROL, {}, &effect) == E_OUTOFMEMORY && effect == DROPEFFECT_NONE));
}

TEST_CASE("PropertySheetHandler: what its pages throw is the result")
{
    const COMInterfacePointer<IShellPropSheetExt> handler(new Pages);
    CHECK(handler->AddPages(&takePage, 0) == E_OUTOFMEMORY);
    CHECK(handler.as<IShellExtInit>());
}
