#include "Campaign.h"

#include "../dialogs/Driving.h"

#include <tarn/Dialog.h>
#include <tarn/Event.h>
#include <tarn/Lock.h>
#include <tarn/MemoryStream.h>
#include <tarn/Menu.h>
#include <tarn/PaintDeviceContext.h>
#include <tarn/Pen.h>
#include <tarn/Rect.h>
#include <tarn/RegistryKey.h>
#include <tarn/Service.h>
#include <tarn/TemporaryFile.h>
#include <tarn/Window.h>
#include <tarn/WindowClass.h>
#include <tarn/WindowsFile.h>
#include <tarn/WindowsModule.h>

#include <exception>

// What fails here fails as the second: an exception is on its way already, and goes on.

namespace failures {
namespace {
const HINSTANCE program = GetModuleHandleW(nullptr);
const tarn::Rect place(900, 700, 1000, 800); // Where no test beside this one has its windows.

struct UnderWay : std::exception {};

// The scenario passes when the first failure arrives.
template <class Action> void expectUnderWay(Action action)
{
    drainMessages();
    try {
        action();
    } catch (const UnderWay&) {
        return;
    }
    expect(false, "the first failure is lost");
}

struct Thrower : tarn::Window {
    explicit Thrower(UINT at = WM_APP) : at_(at) {}
    LRESULT onMessage(UINT msg, WPARAM wParam, LPARAM lParam) override
    {
        if (msg == at_)
            throw UnderWay();
        return Window::onMessage(msg, wParam, lParam);
    }

private:
    UINT at_;
};

struct Owners {
    explicit Owners(const WorkPlace& work)
        : file(work.file(L"owned.txt").c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, 0, nullptr),
          key(tarn::RegistryKey::createOwned(work.key(), L"owned", KEY_ALL_ACCESS)),
          windowClass(0, 0, nullptr, COLOR_WINDOW, nullptr, program)
    {
        memory.select(pen.getHandle());
        window.create(windowClass, L"Owned", WS_OVERLAPPEDWINDOW, place, nullptr, nullptr, program);
        throw UnderWay();
    }

    tarn::WindowsFile file;
    tarn::Event event{true, false};
    tarn::Mutex mutex{true};
    tarn::AutoLock lock{mutex};
    tarn::RegistryKey key;
    tarn::WindowsModule module{"version.dll", true};
    tarn::TemporaryFile temporary{"owned"};
    tarn::ServiceManager manager{static_cast<const char*>(nullptr), SC_MANAGER_CONNECT};
    tarn::Pen pen{RGB(1, 2, 3), PS_SOLID, 1};
    tarn::DeviceContext memory;
    tarn::WindowClass windowClass;
    Thrower window;
};

void endOwners(const WorkPlace& work)
{
    expectUnderWay([&] { const Owners owners(work); });
}

struct FailingPainter : Thrower {
    void onPaint() override
    {
        const tarn::PaintDeviceContext context(*this);
        throw UnderWay();
    }
};

void failInPainting(const WorkPlace&)
{
    expectUnderWay([] {
        const tarn::WindowClass windowClass(0, 0, nullptr, COLOR_WINDOW, nullptr, program);
        FailingPainter window;
        window.create(windowClass, L"Painted", WS_OVERLAPPEDWINDOW, place, nullptr, nullptr, program);
        window.show(SW_SHOW);
        window.update();
    });
}

struct FailingDialog : tarn::Dialog {
    FailingDialog() : Dialog(100, program) {}
    bool onInitDialog(tarn::Window&) override { throw UnderWay(); }
};

void failInDialog(const WorkPlace&)
{
    expectUnderWay([] { FailingDialog().showModal(); });
}

void failInMessageBox(const WorkPlace&)
{
    expectUnderWay([] {
        const tarn::WindowClass windowClass(0, 0, nullptr, COLOR_WINDOW, nullptr, program);
        Thrower window;
        window.create(windowClass, L"Owner", WS_OVERLAPPEDWINDOW, place, nullptr, nullptr, program);
        const DWORD start = GetTickCount();
        const support::Driver user([start] { // Where nothing finds the box any more, its user ends it.
            constexpr DWORD patienceMs = 300;
            const HWND box = support::visibleDialog();
            return box && GetTickCount() - start > patienceMs && PostMessageW(box, WM_COMMAND, IDOK, 0);
        });
        PostMessageW(window, WM_APP, 0, 0);
        window.messageBox(L"Text", L"Caption", MB_OK);
    });
}

void failInMenu(const WorkPlace&)
{
    expectUnderWay([] {
        const tarn::WindowClass windowClass(0, 0, nullptr, COLOR_WINDOW, nullptr, program);
        Thrower window(WM_ENTERMENULOOP);
        window.create(windowClass, L"Owner", WS_OVERLAPPEDWINDOW, place, nullptr, nullptr, program);
        tarn::Menu menu(true);
        menu.insert(L"Item", 0, MF_BYPOSITION, 1);
        window.trackPopupMenu(menu, place.left, place.top, TPM_RETURNCMD);
    });
}
} // namespace

std::vector<Scenario> underWayScenarios()
{
    return {{"owners that end early", endOwners},
            {"failure in painting", failInPainting},
            {"failure in a dialog", failInDialog},
            {"failure in a message box", failInMessageBox},
            {"failure in a menu", failInMenu}};
}
} // namespace failures
