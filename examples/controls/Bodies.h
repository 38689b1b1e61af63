#pragma once

#include <span>

/// Something that goes round the sun or round a planet.
struct Body {
    enum Kind { star, planet, dwarf, moon }; ///< The order of the pictures.

    const wchar_t* name;
    const wchar_t* centre; ///< What it goes round; null for the sun.
    Kind kind;
    int diameterKm;
    double orbitDays;
};

/// Each body comes behind its centre, and bodies of one centre from the inside to the outside.
std::span<const Body> bodies();
