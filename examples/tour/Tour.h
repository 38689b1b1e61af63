#pragma once

namespace tour {
/// A part of the tour. A static object of it in a section's own file adds the section; they are shown in
/// the order of their numbers.
class Section {
public:
    Section(int number, const char* title, void (*show)());

    const int number;
    const char* const title;
    void (*const show)();
};
} // namespace tour
