#include "../windowing/Windows.h"
#include "Driving.h"
#include "Expect.h"

#include <tarn/PropertySheet.h>

#include <stdexcept>
#include <string>

using namespace tarn;

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
    void release() override
    {
        told("release");
        PropertyPage::release();
    }

    bool stay = false;
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
        sheet.addPage(&first);
        sheet.addPage(&second);
    }
    std::string log;
    Page first, second;
    PropertySheet sheet;
};
} // namespace

TEST_CASE("PropertySheet: the start page, the title and the pages are the sheet's; OK ends it", "[sheet]")
{
    Sheet t;
    SECTION("by index") { t.sheet.setStartPageByIndex(1); }
    SECTION("by resource") { t.sheet.setStartPageByResource(12); }
    t.sheet.setTitle("Named");
    CHECK(!t.first.isCreated());
    support::Driver driver([&] {
        CHECK((t.sheet.getTextW() == L"Named" && t.second.isOpen()));
        t.sheet.activate(11);
        CHECK(t.first.isOpen());
        t.sheet.activate(&t.second, 1);
        t.sheet.pressButton(PSBTN_OK);
        return true;
    });
    t.sheet.showModal();
    CHECK((driver.isDone() && !t.sheet.isOpen() && !t.first.isOpen()));
    CHECK(t.log.find("activate12 deactivate12 activate11 deactivate11 activate12 deactivate12") == 0);
    CHECK((!t.first.isCreated() && !t.second.isCreated())); // Released, and ready for another showing.
}

TEST_CASE("PropertySheet: a wizard goes on only as far as its pages let it", "[sheet]")
{
    Sheet t;
    t.sheet.setWizardMode(true);
    t.first.stay = true;
    support::Driver driver([&] {
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
        return true;
    });
    CHECK(t.sheet.showModal() == 1);
    CHECK((driver.isDone() && t.log.find("next11 next11") != std::string::npos));
    CHECK(t.log.find("back12") < t.log.find("finish12"));
}

TEST_CASE("PropertySheet: what a page throws cancels the sheet without asking and comes out", "[sheet]")
{
    Sheet t;
    t.first.stay = true;
    SECTION("when it appears") { t.first.throwing = "activate"; }
    SECTION("when it is left") { t.first.throwing = "deactivate"; }
    support::Driver driver([&] { return t.sheet.postMessageW(PSM_SETCURSELID, 0, 12); });
    support::expectError<std::runtime_error>([&] { t.sheet.showModal(); }, t.first.throwing);
    CHECK((!driver.isLate() && !t.sheet.isOpen() && !support::visibleDialog()));
}

TEST_CASE("PropertySheet: Apply waits until a page says with the platform's macro that it was changed", "[sheet]")
{
    Sheet t;
    support::Driver driver([&] {
        const HWND apply = GetDlgItem(t.sheet, ID_APPLY_NOW);
        CHECK(!IsWindowEnabled(apply));
        PropSheet_Changed(t.sheet.getWindowHandle(), t.first.getWindowHandle());
        CHECK(IsWindowEnabled(apply));
        t.sheet.pressButton(PSBTN_CANCEL);
        return true;
    });
    t.sheet.showModal();
    CHECK(driver.isDone());
}

TEST_CASE("PropertySheet: a page is added to an open sheet", "[sheet]")
{
    Sheet t;
    Page third(12, t.log), missing(99, t.log);
    support::Driver driver([&] {
        t.sheet.addPage(&third);
        CHECK(third.isCreated());
        CHECK(support::thrownBy<WindowsError>([&] { t.sheet.addPage(&missing); }).getDescription() ==
              std::string("Can't create property page"));
        t.sheet.activate(&third, 2);
        CHECK(third.isOpen());
        t.sheet.pressButton(PSBTN_CANCEL);
        return true;
    });
    CHECK(t.sheet.showModal() == 0);
    CHECK((driver.isDone() && !third.isCreated()));
}

TEST_CASE("PropertySheet: a page can refuse Cancel, and pages can ask for a restart", "[sheet]")
{
    Sheet t;
    const bool reboots = GENERATE(true, false);
    t.first.stay = true;
    support::Driver driver([&] {
        t.sheet.pressButton(PSBTN_CANCEL);
        CHECK((t.sheet.isOpen() && t.log.find("cancel11") != std::string::npos));
        reboots ? t.sheet.rebootSystem() : t.sheet.restartWindows();
        t.sheet.pressButton(PSBTN_OK);
        return true;
    });
    CHECK(t.sheet.showModal() == (reboots ? ID_PSREBOOTSYSTEM : ID_PSRESTARTWINDOWS));
    CHECK(driver.isDone());
}

TEST_CASE("PropertySheet: Esc in a page's field is the sheet's Cancel, Enter its OK", "[sheet]")
{
    Sheet t;
    const int id = GENERATE(IDOK, IDCANCEL);
    support::Driver driver([&] { return t.first.postMessageW(WM_COMMAND, static_cast<WPARAM>(id)); });
    t.sheet.showModal();
    CHECK((!driver.isLate() && t.log.find(id == IDOK ? "deactivate11" : "cancel11") != std::string::npos));
}

TEST_CASE("PropertySheet: a sheet that cannot be shown or take a page is an error", "[sheet]")
{
    Sheet t;
    struct : PropertySheet {
        using PropertySheet::PropertySheet;
        using Window::attach;
    } empty(nullptr);
    PropertySheet orphan(reinterpret_cast<HWND>(0x7001));
    support::expectFailure([&] { empty.showModal(); }, "Error in showing property sheet");
    orphan.addPage(&t.first);
    support::expectFailure([&] { orphan.showModal(); }, "Error in showing property sheet");
    Window other;
    other.create(L"STATIC", L"", WS_OVERLAPPED, RECT{0, 0, 50, 50}, nullptr, nullptr, nullptr);
    const HWND noSheet = other.getWindowHandle();
    empty.attach(noSheet, false);
    support::expectFailure([&] { empty.addPage(&t.second); }, "Can't add property page");
    empty.attach(nullptr, false);
    support::expectFailure([&] { empty.showModal(); }, "Error in showing property sheet"); // The page is not in it.
    support::expectFailure([] { PropertySheet(nullptr, 1, 99, module); }, "Can't load icon");
}

TEST_CASE("PropertySheet: a missing caption is an empty one", "[sheet]")
{
    std::string log;
    Page page(11, log);
    PropertySheet sheet(nullptr, 99, 0, module);
    sheet.addPage(&page);
    support::Driver driver([&] {
        CHECK(sheet.getTextW().empty());
        sheet.pressButton(PSBTN_CANCEL);
        return true;
    });
    CHECK(sheet.showModal() == 0);
    CHECK(driver.isDone());
}

TEST_CASE("PropertySheet: missing resources are errors before anything appears", "[sheet]")
{
    std::string log;
    Page missing(99, log);
    PropertySheet sheet(nullptr);
    sheet.addPage(&missing);
    CHECK(support::thrownBy<WindowsError>([&] { sheet.showModal(); }).getDescription() ==
          std::string("Can't create property page"));
    CHECK(support::thrownBy<WindowsError>([&] { sheet.setIcon(99, module); }).getDescription() ==
          std::string("Can't load icon"));
}

TEST_CASE("PropertyPage: the header and the watermark stand in the page's data", "[sheet]")
{
    std::string log;
    Page page(11, log);
    page.setHeader(1, 2);
    page.enableWatermark(true);
    CHECK((page.isWatermarkEnabled() && !(page.getInitData().dwFlags & PSP_USEHEADERSUBTITLE)));
    page.enableWatermark(false);
    CHECK((!page.isWatermarkEnabled() && (page.getInitData().dwFlags & PSP_USEHEADERSUBTITLE)));
    page.clearHeader();
    CHECK(!(page.getInitData().dwFlags & (PSP_USEHEADERTITLE | PSP_USEHEADERSUBTITLE)));
    const HPROPSHEETPAGE handle = page.create();
    CHECK((page.create() == handle && page.isCreated()));
}
