#pragma once

// The requests of the extension XKEYBOARD. Their header is C, and has members that are called `explicit`.

#include <xcb/xcb.h>

#ifdef __clang__
#pragma clang diagnostic push
#pragma clang diagnostic ignored "-Wkeyword-macro"
#endif
// A word of C++ can't be a member's name, so it is another word while the header is read; the warning of that is for
// those who do so by mistake.
#define explicit isExplicit
#include <xcb/xkb.h>
#undef explicit
#ifdef __clang__
#pragma clang diagnostic pop
#endif
