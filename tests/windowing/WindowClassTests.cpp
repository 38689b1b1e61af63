#include "Test.h"

#include <tarn/Window.h>
#include <tarn/WindowClass.h>

#include <locale>
#include <set>
#include <thread>

namespace {
const HINSTANCE program = GetModuleHandleW(nullptr);
constexpr HBRUSH noBrush = nullptr;

WindowClass make(unsigned style) { return WindowClass(style, 0, nullptr, noBrush, nullptr, program); }

void open(Window& window, const WindowClass& windowClass)
{
    window.create(windowClass, L"", 0, Rect(), nullptr, nullptr, program);
}

bool isRegistered(ATOM atom)
{
    WNDCLASSW attributes;
    return GetClassInfoW(program, MAKEINTRESOURCEW(atom), &attributes) != FALSE;
}
} // namespace

TEST_CASE("WindowClass: equal attributes share a registration that ends with the last user")
{
    WindowClass a = make(CS_VREDRAW), b = make(CS_VREDRAW);
    const ATOM atom = a.getAtom();
    CHECK(atom == b.getAtom());
    CHECK(make(CS_HREDRAW).getAtom() != atom);
    a.close();
    CHECK((!a && b && isRegistered(atom)));
    a.close();
    CHECK(isRegistered(atom));
    b.create(CS_HREDRAW, 0, nullptr, noBrush, nullptr, program);
    b.close();
    CHECK(!isRegistered(atom));
}

TEST_CASE("WindowClass: a name of the program's choice is shared by equal classes and kept from others")
{
    const WindowClass one(L"Tarn test name", 0, 0, nullptr, noBrush, nullptr, program);
    const WindowClass same(L"Tarn test name", 0, 0, nullptr, noBrush, nullptr, program);
    CHECK((one.getAtom() == same.getAtom() && one.getAtom() != make(0).getAtom()));
    Window window;
    open(window, one);
    CHECK(window.getClassNameW() == L"Tarn test name");
    expectWindowsError([] { WindowClass(L"Tarn test name", CS_HREDRAW, 0, nullptr, 1u, nullptr, program); },
                       ERROR_CLASS_ALREADY_EXISTS, "Can't create window class");
}

TEST_CASE("WindowClass: each attribute is part of the name, a colour as the brush that stands for it")
{
    const WindowClass menu(0, 7, nullptr, noBrush, nullptr, program);
    const WindowClass cursor(0, 0, nullptr, noBrush, LoadCursorW(nullptr, IDC_CROSS), program);
    const WindowClass icon(0, 0, LoadIconW(nullptr, IDI_ERROR), noBrush, nullptr, program);
    const WindowClass colour(0, 0, nullptr, COLOR_BTNFACE, nullptr, program);
    const WindowClass brush(0, 0, nullptr, reinterpret_cast<HBRUSH>(COLOR_BTNFACE + 1), nullptr, program);
    const std::set<ATOM> atoms{make(0).getAtom(), menu.getAtom(), cursor.getAtom(), icon.getAtom(), colour.getAtom()};
    CHECK(atoms.size() == 5);
    CHECK(colour.getAtom() == brush.getAtom());

    Window window;
    window.create(menu, "", 0, Rect(), nullptr, nullptr, program);
    CHECK(
        window.getClassNameA().startsWith("Tarn++ WindowClass: Style=0, Icon=0, Brush=0, Cursor=0, Menu=7, Instance="));
    CHECK(GetClassLongPtrW(window, GCLP_MENUNAME) == 7);
}

TEST_CASE("WindowClass: closing while a window is open fails and keeps the class")
{
    WindowClass windowClass = make(CS_DBLCLKS);
    Window window;
    open(window, windowClass);
    for (int i = 0; i < 2; ++i)
        expectWindowsError([&] { windowClass.close(); }, ERROR_CLASS_HAS_WINDOWS, "Can't unregister window class");
    CHECK((windowClass && isRegistered(windowClass.getAtom())));
    window.destroy();
    windowClass.close();
    CHECK(!windowClass);
}

TEST_CASE("WindowClass: a class that dies before its window is unregistered with the window")
{
    struct Failing : Window {
        explicit Failing(ATOM& atom) : windowClass(make(CS_NOCLOSE))
        {
            open(*this, windowClass);
            atom = windowClass.getAtom();
            throw std::logic_error("constructor failed");
        }
        WindowClass windowClass;
    };
    ATOM atom = 0;
    SECTION("also when an exception is on its way, which goes on")
    {
        expectError<std::logic_error>([&] { Failing{atom}; }, "constructor failed");
    }
    Window window;
    SECTION("also when the destructor throws")
    {
        expectWindowsError(
            [&] {
                const WindowClass windowClass = make(CS_NOCLOSE);
                atom = windowClass.getAtom();
                open(window, windowClass);
            },
            ERROR_CLASS_HAS_WINDOWS, "Can't unregister window class");
        const WindowClass again = make(CS_NOCLOSE); // Until then it can be shared again.
        CHECK(again.getAtom() == atom);
        window.destroy();
    }
    CHECK((atom && !isRegistered(atom)));
}

TEST_CASE("WindowClass: the name does not depend on the locale")
{
    struct Grouping : std::numpunct<wchar_t> {
        std::string do_grouping() const override { return "\1"; }
    };
    const WindowClass before = make(CS_OWNDC | CS_DBLCLKS);
    const std::locale former = std::locale::global(std::locale(std::locale(), new Grouping));
    const ATOM atom = make(CS_OWNDC | CS_DBLCLKS).getAtom();
    std::locale::global(former);
    CHECK(atom == before.getAtom());
}

TEST_CASE("WindowClass: an assigned reference is not counted")
{
    WindowClass owner = make(CS_OWNDC), copy;
    copy = owner;
    const ATOM atom = owner.getAtom();
    CHECK(copy.getAtom() == atom);
    copy.close();
    CHECK(!isRegistered(atom));
    CHECK(!owner); // It refers to what is gone, and closing it is harmless.
    owner.close();
}

TEST_CASE("WindowClass: a moved reference is the only one, and what was held is released")
{
    WindowClass target = make(CS_OWNDC), other = make(CS_DBLCLKS);
    const ATOM former = target.getAtom();
    target = make(CS_OWNDC | CS_DBLCLKS);
    CHECK((target && isRegistered(target.getAtom()) && !isRegistered(former)));
    WindowClass& same = target;
    target = std::move(same);
    CHECK((target && isRegistered(target.getAtom())));
    std::swap(target, other);
    std::vector<WindowClass> classes;
    classes.push_back(std::move(target));
    classes.push_back(std::move(other));
    CHECK((!target && classes[0] && classes[1]));

    Window window;
    open(window, classes[0]);
    const ATOM inUse = classes[0].getAtom();
    classes.erase(classes.begin()); // The failure is the debugger's; the class goes with its window.
    CHECK(isRegistered(inUse));
    window.destroy();
    CHECK(!isRegistered(inUse));
}

TEST_CASE("WindowClass: a name that is taken already cannot be registered")
{
    WindowClass windowClass = make(CS_PARENTDC);
    WNDCLASSW taken{};
    Window window;
    open(window, windowClass);
    const BasicString<wchar_t> name = window.getClassNameW();
    window.destroy();
    windowClass.close();
    taken.lpfnWndProc = DefWindowProcW;
    taken.hInstance = program;
    taken.lpszClassName = name;
    REQUIRE(RegisterClassW(&taken));
    expectWindowsError([] { make(CS_PARENTDC); }, ERROR_CLASS_ALREADY_EXISTS, "Can't create window class");
    UnregisterClassW(name, program);
    CHECK(make(CS_PARENTDC)); // The failure has left no entry behind.
    expectWindowsError([&] { open(window, WindowClass()); }, "Can't create window");
}

TEST_CASE("WindowClass: threads may create and close the same class at once")
{
    const auto work = [] {
        for (int i = 0; i < 500; ++i)
            make(CS_SAVEBITS).close();
    };
    std::thread other(work);
    work();
    other.join();
    const WindowClass last = make(CS_SAVEBITS);
    CHECK(isRegistered(last.getAtom()));
}
