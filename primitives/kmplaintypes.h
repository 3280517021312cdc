// kmplaintypes.h - text forms of the library's points and rectangles.

#ifndef RAKOVA_KMPLAINTYPES_H
#define RAKOVA_KMPLAINTYPES_H

#include "keltypes.h"
#include "rkplaintypes.h"

rkString &operator<<(rkString &text, KeliPoint point); // "(%d,%d)"
rkString &operator<<(rkString &text, KeliRect rect);   // "(%d,%d)%dx%d"

// Numbers between any of " {}()," and, for a rectangle, "x". Absent ones are 0 and set failed() of the text,
// as do numbers that are none, and a width or height below 1.
KeliPoint &operator<<(KeliPoint &point, rkString &text);
KeliRect &operator<<(KeliRect &rect, rkString &text);

#endif
