// Orders concert tickets in three pages, which let no wrong answer pass.
//   wizard [--script FILE] [--screenshot FILE]
// The script works the wizard (see the commands below); the picture shows it after the script, and the
// wizard is cancelled. Without a picture to make it stays open unless the script has ended it.

#include "Ids.h"
#include "Pages.h"

#include <tarn/PropertySheet.h>

#include <Picture.h>
#include <Script.h>

#include <exception>
#include <initializer_list>
#include <iostream>
#include <stdexcept>

namespace {
/// The wizard with its pages; the script is played inside of the modal loop.
class Wizard : public tarn::PropertySheet {
public:
    explicit Wizard(const support::Options& options)
        : PropertySheet(nullptr, TEXT_CAPTION, 0, GetModuleHandleW(nullptr)), options_(options)
    {
        setWizardMode(true);
    }

    void work()
    {
        if (!options_.script.empty())
            support::playScript(options_.script, commands());
        if (options_.screenshot.empty() || !isOpen())
            return;
        support::handleMessages();
        RedrawWindow(*this, nullptr, nullptr, RDW_INVALIDATE | RDW_ERASE | RDW_FRAME | RDW_ALLCHILDREN | RDW_UPDATENOW);
        support::savePicture(*this, true, tarn::BasicString<wchar_t>(options_.screenshot.c_str()));
        std::cout << "The picture is in " << options_.screenshot << '\n';
        pressButton(PSBTN_CANCEL);
    }

private:
    support::Commands commands()
    {
        return {// name TEXT
                {"name", [this](support::Arguments& arguments) { fill(ID_NAME, arguments); }},
                // tickets TEXT
                {"tickets", [this](support::Arguments& arguments) { fill(ID_TICKETS, arguments); }},
                {"next", [this](support::Arguments&) { press(PSBTN_NEXT); }},
                {"back", [this](support::Arguments&) { press(PSBTN_BACK); }},
                {"finish", [this](support::Arguments&) { press(PSBTN_FINISH); }},
                {"cancel", [this](support::Arguments&) { press(PSBTN_CANCEL); }}};
    }

    void fill(int id, support::Arguments& arguments) const
    {
        const HWND page = reinterpret_cast<HWND>(sendMessageA(PSM_GETCURRENTPAGEHWND));
        const HWND field = GetDlgItem(page, id);
        if (!field)
            throw std::runtime_error("this page does not ask for it");
        const tarn::EditControl edit(field);
        edit.setFocus();
        edit.selectAll();
        for (const wchar_t c : tarn::BasicString<wchar_t>(arguments.rest().c_str()))
            PostMessageW(field, WM_CHAR, c, 1);
        support::handleMessages();
    }

    void press(int button)
    {
        pressButton(button);
        support::handleMessages();
    }

    const support::Options& options_;
};

/// The first page plays the script as soon as the wizard's loop runs.
class FirstPage : public NamePage {
public:
    FirstPage(Order& order, Wizard& wizard) : NamePage(order), wizard_(wizard) {}

    bool onInitDialog(tarn::Window&) override
    {
        startTimer(1, 50);
        return true;
    }
    void onTimer(UINT_PTR id) override
    {
        stopTimer(id);
        wizard_.work();
    }

private:
    Wizard& wizard_;
};
} // namespace

int main(int argc, char** argv)
{
    try {
        const support::Options options = support::parseOptions("wizard", argc, argv);
        Order order;
        Wizard wizard(options);
        FirstPage first(order, wizard);
        TicketsPage second(order);
        SummaryPage third(order);
        for (tarn::PropertyPage* page : std::initializer_list<tarn::PropertyPage*>{&first, &second, &third})
            wizard.addPage(page);
        if (wizard.showModal() > 0)
            std::cout << "Ordered: " << order.tickets << " for " << tarn::BasicString<char>(order.name.c_str()) << '\n';
        else
            std::cout << "Nothing was ordered\n";
        return 0;
    } catch (const std::exception& e) {
        std::cerr << "wizard: " << e.what() << '\n';
        return 1;
    }
}
