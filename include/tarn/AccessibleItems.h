#pragma once

#include <tarn/BasicString.h>
#include <tarn/Export.h>
#include <tarn/Rect.h>
#include <tarn/Windows.h>

#include <oleacc.h>

#include <boost/noncopyable.hpp>

#include <memory>

namespace tarn {
/// What a window that draws itself tells screen readers and test tools of what is to be seen there; the system's
/// controls do so by themselves. Derive the window's class from it, too, and call begin() when there is a window:
///
///     struct Dice : Window, AccessibleItems {
///         int getItemCount() const override { return 2; }
///         Item getItem(int index) const override
///         {
///             return {L"6", ROLE_SYSTEM_STATICTEXT, 0, Rect(Point(100 * index, 0), Size(100, 100))};
///         }
///     };
///
/// What the handlers throw fails the question, and comes out of the loop of the window's thread. Uses COM on that
/// thread, as a single-threaded apartment, and on no other thread. Failures throw COMError or WindowsError as
/// HRESULTHolder::throwOnError does.
class TARN_API AccessibleItems : private boost::noncopyable {
public:
    /// A part of the window.
    struct Item {
        /// What a screen reader says.
        BasicString<wchar_t> name;
        /// `ROLE_SYSTEM_...`.
        long role = ROLE_SYSTEM_LISTITEM;
        /// Made of `STATE_SYSTEM_...`: `STATE_SYSTEM_FOCUSED` for the one that gets the keys, and so on.
        unsigned long state = 0;
        /// In client coordinates.
        Rect place{};
        /// What pressItem() does, in a word, or empty when nothing.
        BasicString<wchar_t> action{};
    };

    AccessibleItems();
    /// It throws nothing itself, but stands beside Window as a base.
    virtual ~AccessibleItems() noexcept(false);

    /// Until the window or the object ends. Throws "Can't initialize COM", "Can't make window accessible".
    void begin(HWND window);
    /// The window is as any other again.
    void end();
    /// Tells those who listen what has happened: `EVENT_OBJECT_FOCUS` to an item that gets the keys now,
    /// `EVENT_OBJECT_REORDER` to the window, with an index of -1, when there are other items.
    void tell(unsigned long event, int index = -1) const;

    /// Of the window: the text of the window, unless overridden.
    virtual BasicString<wchar_t> getName() const;
    /// Of the window: `ROLE_SYSTEM_LIST`, unless overridden.
    virtual long getRole() const;
    /// Items count from 0.
    virtual int getItemCount() const = 0;
    /// Is asked for those that there are.
    virtual Item getItem(int index) const = 0;
    /// The user wants what `action` says.
    virtual void pressItem(int index);

private:
    class AccessibleItemsRegistration; // Derived classes see private names, and should see none that a program has.

    std::unique_ptr<AccessibleItemsRegistration> registration_;
};
} // namespace tarn
