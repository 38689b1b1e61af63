#include "Driving.h"
#include "Expect.h"

#include <tarn/PropertySheet.h>

#include <stdexcept>
#include <string>

using namespace tarn;

namespace {
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
