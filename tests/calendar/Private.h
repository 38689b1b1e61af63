#pragma once

// Reaches private members by name, for what has to be right but no caller sees directly: access rules
// do not apply to the arguments of an explicit instantiation.

template <class Tag, typename Tag::Type member> struct Grant {
    friend typename Tag::Type memberOf(Tag) { return member; }
};

#define TEST_PRIVATE(Name, Signature, Member)                                                                          \
    struct Name {                                                                                                      \
        using Type = Signature;                                                                                        \
        friend Type memberOf(Name);                                                                                    \
    };                                                                                                                 \
    template struct Grant<Name, Member>
