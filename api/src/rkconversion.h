// rkconversion.h - text forms of the types that parameters hold.

#ifndef RAKOVA_RKCONVERSION_H
#define RAKOVA_RKCONVERSION_H

#include "rkplaintypes.h"

// Small integers go through the widest one and are cut without a range check.
template <class T>
rkString rkValueToString(T value) {
    rkString text;
    text << static_cast<long long>(value);
    return text;
}
template <>
inline rkString rkValueToString<int>(int value) {
    rkString text;
    text << value;
    return text;
}
template <>
inline rkString rkValueToString<bool>(bool value) {
    rkString text;
    text << value;
    return text;
}
template <>
inline rkString rkValueToString<KeliSize>(KeliSize value) {
    rkString text;
    text << value;
    return text;
}

// text.failed() tells whether there was a value. A blank text reads as 0.
template <class T>
T rkStringToValue(rkString &text) {
    long long value = 0;
    value << text;
    return static_cast<T>(value);
}
template <>
inline int rkStringToValue<int>(rkString &text) {
    int value = 0;
    value << text;
    return value;
}
template <>
inline bool rkStringToValue<bool>(rkString &text) {
    bool value = false;
    value << text;
    return value;
}
template <>
inline KeliSize rkStringToValue<KeliSize>(rkString &text) {
    KeliSize value = {0, 0};
    value << text;
    return value;
}

#endif
