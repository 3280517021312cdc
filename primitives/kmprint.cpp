// kmprint.cpp - texts of test data, element by element, in columns that any value of the type fits in.

#include <stdio.h>

#include "kmfill.h"
#include "kmtext.h"
#include "kmvector.h"

namespace {

rkString int64Format(char const *conversion) {
    return rkString("%24") + rkString::prefixI64() + conversion;
}

rkString formatOf(Kel8u) {
    return "%4u";
}
rkString formatOf(Kel16u) {
    return "%6u";
}
rkString formatOf(Kel32u) {
    return "%11u";
}
rkString formatOf(Kel64u) {
    return int64Format("u");
}
rkString formatOf(Kel8s) {
    return "%5d";
}
rkString formatOf(Kel16s) {
    return "%7d";
}
rkString formatOf(Kel32s) {
    return "%12d";
}
rkString formatOf(Kel64s) {
    return int64Format("d");
}
rkString formatOf(Kel32f) {
    return "%14.6g";
}
rkString formatOf(Kel64f) {
    return "%20.12g";
}

template <class T>
void addComponent(kmText &text, char const *format, void const *data, long long i) {
    char buffer[64];
    snprintf(buffer, sizeof(buffer), format, kmLoad<T>(data, i));
    text.add(buffer);
}

template <class T>
void addElements(kmText &text, void const *data, int n, int parts) {
    rkString format = formatOf(T());
    for (long long i = 0; i < n; ++i) {
        if (parts == 2) text.add(" (");
        addComponent<T>(text, format.c_str(), data, i * parts);
        if (parts == 2) {
            text.add(',');
            addComponent<T>(text, format.c_str(), data, i * 2 + 1);
            text.add(')');
        }
    }
}

} // namespace

rkString kmVector::getDataString(kmType type, void const *data, int n) {
    kmText text;
    if (!data || n < 1) return "";
    kmForType(type, [&](auto component, int parts) {
        addElements<typename decltype(component)::type>(text, data, n, parts);
    });
    return text.text();
}

rkString kmVector::getDataString(void const *data, int n) const {
    return getDataString(m_type, data, n);
}

rkString kmVector::getString() const {
    return getDataString(m_data, m_len);
}

rkString kmVector::getByteString(void const *data, int n) {
    kmText text;
    if (!data) return "";
    for (int i = 0; i < n; ++i) addComponent<Kel8u>(text, " %02X", data, i);
    return text.text();
}
