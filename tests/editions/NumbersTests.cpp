#include <tarn/tarn.h>

// What docs/stable.md promises of numbers and macros. There is nothing to run: it compiles, or a promise is broken.
namespace tarn {
static_assert(WINVER == 0x0601);

static_assert(LittleEndian == 0 && BigEndian == 1);
static_assert(Seekable::begin == 0 && Seekable::current == 1 && Seekable::end == 2);
static_assert(WindowsHandle::timeout == 0 && WindowsHandle::abandoned == 1 && WindowsHandle::signaled == 2);

using Base = GregorianCalendarBase;
static_assert(Base::BC == 0 && Base::AD == 1 && Base::January == 0 && Base::December == 11);
static_assert(Base::Sunday == 1 && Base::Saturday == 7);
static_assert(Calendar::FieldEra == 0 && Calendar::FieldYear == 1 && Calendar::FieldMonth == 2 &&
              Calendar::FieldWeekOfYear == 3 && Calendar::FieldWeekOfMonth == 4 && Calendar::FieldDayOfMonth == 5 &&
              Calendar::FieldDayOfYear == 6 && Calendar::FieldDayOfWeek == 7 && Calendar::FieldDayOfWeekInMonth == 8 &&
              Calendar::FieldAmPm == 9 && Calendar::FieldHour == 10 && Calendar::FieldHourOfDay == 11 &&
              Calendar::FieldMinute == 12 && Calendar::FieldSecond == 13 && Calendar::FieldMillisecond == 14 &&
              Calendar::FieldZoneOffset == 15 && Calendar::FieldDstOffset == 16 && Calendar::FieldCount == 17);

static_assert(Atom::local == 0 && Atom::global == 1);
static_assert(RegistryKey::infoClassName == 1 && RegistryKey::infoSecurityDescriptorSize == 0x100);
static_assert(Window::unchecked == 0 && Window::checked == 1 && Window::indeterminate == 2);
static_assert(Window::small_icon == 0 && Window::big_icon == 1);
static_assert(Window::horizontal == 0 && Window::vertical == 1 && Window::control == 2);
static_assert(OwnerDrawable::less == -1 && OwnerDrawable::equal == 0 && OwnerDrawable::greater == 1);
static_assert(Menu::enabled == 0 && Menu::grayed == 1 && Menu::disabled == 2);
static_assert(Menu::unchecked == 0 && Menu::checked == 8);
static_assert(ImageList::bitmap == 0 && ImageList::icon == 1 && ImageList::cursor == 2);
static_assert(ListView::normal == 0 && ListView::small_images == 1 && ListView::state == 2);
static_assert(TreeView::normal == 0 && TreeView::state == 2);
} // namespace tarn
