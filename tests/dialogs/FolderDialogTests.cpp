#include "../windowing/Windows.h"
#include "Driving.h"
#include "ScratchFolder.h"

#include <tarn/FolderDialog.h>

#include <thread>

namespace {
struct Chooser : FolderDialog {
    explicit Chooser(unsigned flags = 0) : FolderDialog(static_cast<HWND>(nullptr), "Choose", flags) {}
    void onInitialized() override
    {
        if (throws)
            throw std::runtime_error("in a handler");
        enableOk(true);
        if (button == IDCANCEL)
            postMessageW(WM_COMMAND, button);
    }
    void onSelectionChanged(const ItemIDList& selection) override { path = selection.getPathW(); }

    WPARAM button = IDOK;
    bool throws = false;
    BasicString<wchar_t> path;
};
} // namespace

TEST_CASE("FolderDialog: the folder preselected is chosen, or the dialog cancelled")
{
    const ScratchFolder folder;
    const std::wstring wanted = folder.path().wstring();
    // In a fresh profile Wine's first folder dialog selects nothing; all that come later do.
    Chooser cancelled, dialog(BIF_RETURNONLYFSDIRS);
    cancelled.setSelection(wanted.c_str());
    cancelled.button = IDCANCEL;
    CHECK((!cancelled.showModal() && !cancelled.getSelection()));

    SECTION("by its path")
    {
        dialog.setSelection(ItemIDList(ILCreateFromPathW(L"C:\\windows"), true));
        dialog.setRoot(CSIDL_DRIVES);
        dialog.setSelection(folder.path().string().c_str());
    }
    SECTION("by its item list")
    {
        dialog.setSelection(L"C:\\windows");
        LPITEMIDLIST list = nullptr;
        REQUIRE(SHParseDisplayName(wanted.c_str(), nullptr, &list, 0, nullptr) == S_OK);
        dialog.setSelection(ItemIDList(list, true)); // Copied.
    }
    // The selection may come later than the dialog.
    const Driver driver([&] { return dialog.path == wanted && dialog.postMessageW(WM_COMMAND, IDOK); });
    CHECK(dialog.showModal());
    CHECK(dialog.getSelection().getPathW() == wanted);
    CHECK(dialog.getDisplayName().endsWith(folder.path().filename().wstring().c_str())); // Or the whole path.
    dialog.button = IDCANCEL;
    CHECK((!dialog.showModal() && !dialog.getSelection() && dialog.getDisplayName().empty()));
}

TEMPLATE_TEST_CASE("FolderDialog: its title and status texts of both widths are shown over its owner", "", char,
                   wchar_t)
{
    const BasicString<TestType> title("Titl\xE9", 5), status("Stat\xFCs", 6);
    struct Shown : FolderDialog {
        Shown(Window& owner, const BasicString<TestType>& title, const TestType* status)
            : FolderDialog(owner, title.c_str(), BIF_STATUSTEXT), text(status)
        {
        }
        void onInitialized() override
        {
            setStatusText(text);
            EnumChildWindows(*this, appendText, reinterpret_cast<LPARAM>(&texts));
            isOwned = GetWindow(*this, GW_OWNER) != nullptr;
            postMessageW(WM_COMMAND, IDCANCEL);
        }
        static BOOL CALLBACK appendText(HWND child, LPARAM texts)
        {
            reinterpret_cast<std::wstring*>(texts)->append(Window(child).getTextW()).append(1, L'|');
            return TRUE;
        }
        const TestType* text;
        std::wstring texts;
        bool isOwned = false;
    };
    OpenWindow owner;
    Shown dialog(owner, title, status.c_str());
    const Driver watchdog([] { return false; });
    CHECK((!dialog.showModal() && dialog.isOwned));
    for (const auto& shown : {title, status})
        CHECK(dialog.texts.find(BasicString<wchar_t>(shown.c_str())) != std::wstring::npos);
}

TEST_CASE("FolderDialog: what a handler throws closes it and comes out of it")
{
    Chooser dialog;
    dialog.throws = true;
    const Driver watchdog([] { return false; });
    expectError<std::runtime_error>([&] { dialog.showModal(); }, "in a handler");
    CHECK((!dialog.isOpen() && !visibleDialog()));
}

TEST_CASE("FolderDialog: an unknown root is an error, and COM is released in pairs")
{
    std::thread([] { // Under Wine the shell's dialogs leave COM on theirs.
        {
            FolderDialog dialog(static_cast<HWND>(nullptr), L"", 0);
            dialog.setRoot(CSIDL_DESKTOP);
            CHECK_THROWS_AS(dialog.setRoot(0x7F), std::runtime_error);
        }
        // Any other model can be chosen only when nothing holds COM any more.
        CHECK(SUCCEEDED(CoInitializeEx(nullptr, COINIT_MULTITHREADED)));
        CHECK_THROWS_AS(FolderDialog(static_cast<HWND>(nullptr), L"", 0), COMError);
        CoUninitialize();
        CHECK(SUCCEEDED(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED)));
        CoUninitialize();
    })
        .join();
}

TEST_CASE("ItemIDList: frees what it owns, once, and never what it borrows")
{
    const auto made = [] { return ILCreateFromPathW(L"C:\\windows"); };
    const auto useAll = [&] {
        ItemIDList owner(made(), true), other(made(), true), borrowing(owner.get(), false);
        const BasicString<wchar_t> path = owner.getPathW();
        CHECK((!path.empty() && borrowing.getPathW() == path));
        borrowing = ItemIDList(owner.get(), false);
        owner.attach(owner.get());
        ItemIDList& same = owner;
        owner = std::move(same);
        CHECK(owner.getPathW() == path);
        borrowing = std::move(owner);
        owner = std::move(other);
        CHECK((!other && owner.getPathW() == path && borrowing.getPathW() == path));
        other.copy(owner);
        other.copy(other);
        CHECK((other.get() != owner.get() && BasicString<wchar_t>(other.getPathA()) == path));
        other.copy(nullptr);
        CoTaskMemFree(owner.detach());
        CHECK((!owner && owner.getPathW().empty()));
        owner.attach(made());
        owner.close();
        owner.close();
    };
    useAll();
    bool isEven = false;
    for (int i = 0; i < 10 && !isEven; ++i) { // Threads of the dialogs before may still free in one of them.
        const std::size_t before = usedBytes();
        useAll();
        isEven = usedBytes() == before;
    }
    CHECK(isEven);
}
