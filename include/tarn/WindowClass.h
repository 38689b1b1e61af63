#pragma once

#include <tarn/BasicString.h>
#include <tarn/Export.h>
#include <tarn/Lock.h>
#include <tarn/Windows.h>

#include <concepts>
#include <map>
#include <memory>

namespace tarn {
/// A window class of the system whose windows are handled by Window objects: give it to Window::create.
///
/// Objects with equal attributes share one registration, which is counted and ends with the last of them.
/// The name is made from the attributes, unless the program gives one. Keep the object as long as its windows live; as
/// a member of a window object it goes first, so there call destroy() in the destructor. May be used from any thread.
/// Failures throw WindowsError, also out of the destructor, unless another exception is on its way. A class that the
/// destructor could not unregister ends with its last window.
class TARN_API WindowClass {
public:
    WindowClass() = default;
    /// As create().
    ///@{
    WindowClass(unsigned int style, int menu, HICON icon, HBRUSH brush, HCURSOR cursor, HINSTANCE instance);
    WindowClass(unsigned int style, int menu, HICON icon, unsigned int colourIndex, HCURSOR cursor, HINSTANCE instance);
    ///@}
    /// The same with a name for others to find the windows by (`FindWindow`).
    ///@{
    WindowClass(const wchar_t* name, unsigned int style, int menu, HICON icon, HBRUSH brush, HCURSOR cursor,
                HINSTANCE instance);
    WindowClass(const wchar_t* name, unsigned int style, int menu, HICON icon, unsigned int colourIndex, HCURSOR cursor,
                HINSTANCE instance);
    ///@}
    WindowClass(const WindowClass&) = delete;
    /// Takes the reference over, and leaves the other object without one.
    WindowClass(WindowClass&& other) noexcept = default;
    /// The target refers to the same registration, without being counted and without releasing what it
    /// referred to before; whichever of the two is closed first ends a registration that nobody else
    /// counts. create() an object with the same attributes where a user of its own is wanted.
    WindowClass& operator=(const WindowClass& other) = default;
    /// Takes the reference over, as `windowClass = WindowClass(...)` needs; what the target referred to before is
    /// released as by the destructor, but a failure is told to the debugger only.
    WindowClass& operator=(WindowClass&& other) noexcept;
    ~WindowClass() noexcept(false);

    /// Releases what the object referred to, and registers or shares the class. `menu` is the number of a
    /// menu resource or 0; neither icon, brush nor cursor are taken over. Throws "Can't create window class".
    void create(unsigned int style, int menu, HICON icon, HBRUSH brush, HCURSOR cursor, HINSTANCE instance);
    /// The same with the background in a colour of the system, `COLOR_WINDOW` for instance.
    void create(unsigned int style, int menu, HICON icon, unsigned int colourIndex, HCURSOR cursor, HINSTANCE instance);
    /// The same with a name of the program's choice, which one class has at a time: with other attributes, or when
    /// somebody else has registered it, this throws "Can't create window class".
    ///@{
    void create(const wchar_t* name, unsigned int style, int menu, HICON icon, HBRUSH brush, HCURSOR cursor,
                HINSTANCE instance);
    void create(const wchar_t* name, unsigned int style, int menu, HICON icon, unsigned int colourIndex, HCURSOR cursor,
                HINSTANCE instance);
    ///@}
    /// Throws "Can't unregister window class" while windows of the class exist, and then still refers to it.
    void close();

    /// Whether it refers to a registered class.
    ///@{
    // A template, which gives no other numbers.
    template <std::same_as<bool> Bool> operator Bool() const { return getAtom() != 0; }
    bool operator!() const { return getAtom() == 0; }
    ///@}
    /// 0 for none.
    ATOM getAtom() const;

private:
    friend class Window;

    struct Data {
        HINSTANCE instance;
        ATOM atom;
        unsigned int count;
    };

    void closeOrAbandon();
    void abandon();
    static void unregisterAbandoned() noexcept;

    static std::map<BasicString<wchar_t>, std::shared_ptr<Data>> Map;
    static tarn::CriticalSection CriticalSection;

    std::shared_ptr<Data> data_; // Shared, because a plain copy may outlive the registration.
};
} // namespace tarn
