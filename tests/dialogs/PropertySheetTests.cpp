#include "../windowing/Windows.h"
#include "Driving.h"

#include <tarn/PropertySheet.h>

namespace {
constexpr int ID_APPLY_NOW = 0x3021; // Of the sheet's own template; the platform's headers do not have it.
const HINSTANCE module = GetModuleHandleW(nullptr);

/// Writes down what it is told, and answers as the test says.
class Page : public PropertyPage {
public:
    Page(unsigned short resource, std::string& log) : PropertyPage(resource, module), log_(log) {}
    int onNext() override { return told("next"), stay ? -1 : 0; }
    int onBack() override { return told("back"), 0; }
    bool onFinish() override { return told("finish"), stay; }
    int onActivate() override { return told("activate"), 0; }
    bool onDeactivate() override { return told("deactivate"), false; }
    bool onCancel() override { return told("cancel"), stay; }
    bool onApply() override { return told("apply"), invalid; }
    void onReset() override { told("reset"); }
    void onHelp() override { told("help"); }
    bool stay = false, invalid = false;
    std::string throwing;

private:
    void told(const std::string& what)
    {
        log_ += what + std::to_string(reinterpret_cast<ULONG_PTR>(getInitData().pszTemplate)) + ' ';
        if (what == throwing)
            throw std::runtime_error(what);
    }
    std::string& log_;
};

struct Sheet {
    Sheet() : first(11, log), second(12, log), sheet(nullptr, 1, 0, module)
    {
        for (Page* const page : {&first, &second})
            sheet.addPage(page);
    }
    /// Shows the sheet and does `step`, which has to end it, as soon as it is open.
    unsigned short showAnd(const std::function<void()>& step)
    {
        Driver driver([&] { return step(), true; });
        const unsigned short result = sheet.showModal();
        CHECK((driver.isDone() && !sheet.isOpen()));
        return result;
    }
    bool wasTold(const char* what) const { return log.find(what) != std::string::npos; }

    std::string log;
    Page first, second;
    PropertySheet sheet;
};
} // namespace

TEST_CASE("PropertySheet: the start page, the title and the pages are the sheet's; OK ends it")
{
    Sheet t;
    const bool isIndex = GENERATE(false, true);
    t.sheet.setStartPageByIndex(0);
    t.sheet.setStartPageByResource(isIndex ? 11 : 12); // The last one counts.
    if (isIndex)
        t.sheet.setStartPageByIndex(1);
    t.sheet.setTitle("Named");
    t.showAnd([&] {
        CHECK(t.sheet.getTextW() == L"Named");
        t.sheet.setTitle(L"Renamed");
        CHECK(t.sheet.getTextW() == L"Renamed");
        t.sheet.activate(11);
        CHECK(t.first.isOpen());
        t.sheet.activate(&t.second, 1);
        t.sheet.pressButton(PSBTN_OK);
    });
    CHECK(t.log.find("activate12 deactivate12 activate11 deactivate11 activate12 deactivate12") == 0);
    CHECK((!t.first.isCreated() && !t.second.isCreated())); // Released, and ready for another showing.
}

TEST_CASE("PropertySheet: a wizard goes on only as far as its pages let it")
{
    Sheet t;
    t.sheet.setWizardMode(true);
    t.first.stay = true;
    const auto step = [&] {
        t.sheet.pressButton(PSBTN_NEXT);
        CHECK(!t.second.isOpen());
        t.first.stay = false;
        t.sheet.pressButton(PSBTN_NEXT);
        t.sheet.setWizardButtons(PSWIZB_FINISH, false);
        CHECK((GetWindowLongPtrW(GetDlgItem(t.sheet, 0x3023), GWL_STYLE) & WS_VISIBLE) == 0);
        t.sheet.setWizardButtons(PSWIZB_BACK | PSWIZB_FINISH);
        t.sheet.pressButton(PSBTN_BACK);
        t.sheet.pressButton(PSBTN_NEXT);
        t.sheet.setFinishText("Do it");
        t.sheet.pressButton(PSBTN_FINISH);
    };
    CHECK(t.showAnd(step) == 1);
    CHECK((t.wasTold("next11 next11") && t.log.find("back12") < t.log.find("finish12")));
}

TEST_CASE("PropertyPage: Apply, Help and Cancel come to it, and it reaches its sheet")
{
    Sheet t;
    t.first.enableHelp(true);
    t.first.setChanged();
    CHECK((!t.first.getSheet() && (t.first.getInitData().dwFlags & PSP_HASHELP) != 0));
    const auto step = [&] {
        PropertySheet* const sheet = t.first.getSheet();
        REQUIRE(sheet == &t.sheet);
        t.first.setChanged();
        t.first.invalid = true;
        sheet->pressButton(PSBTN_OK); // The page is not content after all.
        CHECK((sheet->isOpen() && t.log == "activate11 deactivate11 apply11 "));
        sheet->pressButton(PSBTN_HELP);
        sheet->pressButton(PSBTN_CANCEL);
    };
    t.showAnd(step);
    CHECK(t.log.substr(32) == "help11 cancel11 reset11 ");
}

TEST_CASE("PropertySheet: what a page throws cancels the sheet without asking and comes out")
{
    Sheet t;
    t.first.stay = true;
    t.first.throwing = GENERATE("activate", "deactivate");
    const auto step = [&] { t.sheet.postMessageW(PSM_SETCURSELID, 0, 12); };
    expectError<std::runtime_error>([&] { t.showAnd(step); }, t.first.throwing);
    CHECK((!t.sheet.isOpen() && !visibleDialog()));
}

TEST_CASE("PropertySheet: Apply waits until a page tells of a change; an open sheet takes more pages")
{
    Sheet t;
    Page third(12, t.log), missing(99, t.log);
    const auto step = [&] {
        const HWND apply = GetDlgItem(t.sheet, ID_APPLY_NOW);
        for (const bool changed : {false, true, false}) {
            t.first.setChanged(changed);
            CHECK((IsWindowEnabled(apply) != 0) == changed);
        }
        t.sheet.addPage(&third);
        expectWindowsError([&] { t.sheet.addPage(&missing); }, "Can't create property page");
        t.sheet.activate(&third, 2);
        CHECK(third.isOpen());
        t.sheet.pressButton(PSBTN_CANCEL);
    };
    CHECK(t.showAnd(step) == 0);
    CHECK(!third.isCreated());
    t.showAnd([&] { t.sheet.pressButton(PSBTN_CANCEL); }); // Without the one that could not be added.
}

TEST_CASE("PropertySheet: a page that dies while the sheet is up takes its tab along")
{
    Sheet t;
    auto dying = std::make_unique<Page>(12, t.log);
    t.sheet.addPage(dying.get());
    const bool wasShown = GENERATE(false, true);
    const auto step = [&] {
        const auto tabs = [&] { return SendMessageW(PropSheet_GetTabControl(HWND(t.sheet)), TCM_GETITEMCOUNT, 0, 0); };
        if (wasShown)
            t.sheet.activate(dying.get(), 2);
        CHECK((dying->isOpen() == wasShown && tabs() == 3));
        dying.reset();
        CHECK(tabs() == 2);
        t.sheet.activate(&t.second, 1);
        CHECK(t.second.isOpen());
        t.sheet.pressButton(PSBTN_OK);
    };
    t.showAnd(step);
    t.showAnd([&] { t.sheet.pressButton(PSBTN_CANCEL); }); // Without it.
}

TEST_CASE("PropertySheet: a page belongs to one sheet at a time, and only once")
{
    Sheet t;
    PropertySheet other(nullptr);
    other.addPage(&t.second);
    const auto step = [&] {
        expectWindowsError([&] { t.sheet.showModal(); }, ERROR_BUSY, "Error in showing property sheet");
        expectWindowsError([&] { other.showModal(); }, ERROR_BUSY, "Error in showing property sheet");
        expectWindowsError([&] { t.sheet.addPage(&t.first); }, ERROR_BUSY, "Can't add property page");
        t.sheet.pressButton(PSBTN_CANCEL);
    };
    t.showAnd(step);
    other.addPage(&t.second);
    expectWindowsError([&] { other.showModal(); }, ERROR_INVALID_PARAMETER, "Error in showing property sheet");
}

TEST_CASE("PropertySheet: a page's end can show another sheet, but not one with a page that is still in use")
{
    Sheet t, later;
    int answer = -1;
    struct Ending : Page {
        using Page::Page;
        void onDestroy() override { atEnd(); }
        std::function<void()> atEnd;
    } ending(12, t.log);
    t.sheet.addPage(&ending);
    t.sheet.setStartPageByIndex(2);
    later.first.stay = true;
    ending.atEnd = [&] {
        expectWindowsError([&] { t.sheet.showModal(); }, ERROR_BUSY, "Error in showing property sheet");
        answer = later.showAnd([&] {
            later.sheet.pressButton(PSBTN_CANCEL); // The page refuses, whatever ended the other sheet.
            later.first.stay = false;
            later.sheet.pressButton(PSBTN_CANCEL);
        });
    };
    const bool fails = GENERATE(false, true);
    ending.throwing = fails ? "deactivate" : "";
    const auto show = [&] { t.showAnd([&] { t.sheet.postMessageW(PSM_PRESSBUTTON, PSBTN_OK); }); };
    if (fails)
        expectError<std::runtime_error>(show, "deactivate");
    else
        show();
    CHECK((answer == 0 && later.log.find("cancel11 cancel11") != std::string::npos));
    CHECK((!t.first.isCreated() && !ending.isCreated() && !later.first.isCreated()));
}

TEST_CASE("PropertySheet: the icon is the title bar's and the task list's, before and after the start")
{
    Sheet t;
    t.sheet.setIcon(32512, nullptr);
    const auto icon = [&](WPARAM which) {
        return reinterpret_cast<HICON>(SendMessageW(t.sheet, WM_GETICON, which, 0));
    };
    t.showAnd([&] {
        const HICON first = icon(ICON_BIG);
        CHECK((first && icon(ICON_SMALL) == first));
        t.sheet.setIcon(32514, nullptr);
        CHECK((icon(ICON_BIG) != first && icon(ICON_SMALL) == icon(ICON_BIG)));
        expectWindowsError([&] { t.sheet.setIcon(99, module); }, "Can't load icon");
        CHECK((icon(ICON_BIG) && icon(ICON_SMALL) == icon(ICON_BIG))); // As it was.
        t.sheet.pressButton(PSBTN_CANCEL);
    });
}

TEST_CASE("PropertySheet: a page can refuse Cancel, and pages can ask for a restart")
{
    Sheet t;
    const bool reboots = GENERATE(true, false);
    t.first.stay = true;
    const auto step = [&] {
        t.sheet.pressButton(PSBTN_CANCEL);
        CHECK((t.sheet.isOpen() && t.wasTold("cancel11")));
        reboots ? t.sheet.rebootSystem() : t.sheet.restartWindows();
        t.sheet.pressButton(PSBTN_OK);
    };
    CHECK(t.showAnd(step) == (reboots ? ID_PSREBOOTSYSTEM : ID_PSRESTARTWINDOWS));
}

TEST_CASE("PropertySheet: Esc in a page's field is the sheet's Cancel, Enter its OK")
{
    Sheet t;
    const auto& [id, answer] = GENERATE(table<WPARAM, const char*>({{IDOK, "deactivate11"}, {IDCANCEL, "cancel11"}}));
    t.showAnd([&t, id = id] { t.first.postMessageW(WM_COMMAND, id); });
    CHECK(t.wasTold(answer));
}

TEST_CASE("PropertySheet: a sheet that cannot be shown or take a page or an icon is an error")
{
    Sheet t;
    Page missing(99, t.log);
    struct : PropertySheet {
        using PropertySheet::PropertySheet;
        using Window::attach;
    } empty(nullptr);
    Window other;
    open(other);
    empty.attach(other.getWindowHandle(), false);
    expectWindowsError([&] { empty.addPage(&t.second); }, "Can't add property page");
    empty.attach(nullptr, false);
    expectWindowsError([&] { empty.showModal(); }, "Error in showing property sheet"); // The page is not in it.
    PropertySheet orphan(reinterpret_cast<HWND>(0x7001));
    orphan.addPage(&t.first);
    expectWindowsError([&] { orphan.showModal(); }, "Error in showing property sheet");
    t.sheet.addPage(&missing);
    expectWindowsError([&] { t.sheet.showModal(); }, "Can't create property page");
    expectWindowsError([] { PropertySheet(nullptr, 99, 99, module); }, "Can't load icon"); // A caption may be missing.
}

TEST_CASE("PropertyPage: what it does not answer lets the user go on")
{
    PropertyPage first(11, module), second(12, module);
    PropertySheet sheet(nullptr);
    sheet.addPage(&first);
    sheet.addPage(&second);
    const auto& [isWizard, last, result] =
        GENERATE(table<bool, int, int>({{true, PSBTN_FINISH, 1}, {false, PSBTN_OK, 1}, {false, PSBTN_CANCEL, 0}}));
    sheet.setWizardMode(isWizard);
    const Driver driver([&, isWizard = isWizard, last = last] {
        if (isWizard) {
            for (const int button : {PSBTN_NEXT, PSBTN_BACK, PSBTN_NEXT})
                sheet.pressButton(button);
        }
        CHECK(second.isOpen() == isWizard);
        sheet.pressButton(last);
        return true;
    });
    CHECK(sheet.showModal() == result);
}

TEST_CASE("PropertyPage: a watermark takes the subtitle's place until it goes")
{
    std::string log;
    Page page(11, log);
    const auto has = [&](DWORD flag) { return (page.getInitData().dwFlags & flag) != 0; };
    page.setHeader(1, 2);
    page.enableWatermark(true);
    CHECK((page.isWatermarkEnabled() && has(PSP_USEHEADERTITLE) && !has(PSP_USEHEADERSUBTITLE)));
    page.enableWatermark(false);
    CHECK((!page.isWatermarkEnabled() && has(PSP_USEHEADERSUBTITLE)));
    page.clearHeader();
    CHECK_FALSE((has(PSP_USEHEADERTITLE) || has(PSP_USEHEADERSUBTITLE)));
    const HPROPSHEETPAGE handle = page.create();
    CHECK(page.create() == handle);
}
