// rkmapdefault.h - one value out of a few that have names.

#ifndef RAKOVA_RKMAPDEFAULT_H
#define RAKOVA_RKMAPDEFAULT_H

#include "rkdefault.h"

// Exists for int and bool. Any leading part of a name, in any case, reads as its value; the earlier entry
// wins.
template <class T>
class rkMapDefault : public rkDefault<T> {
public:
    using rkDefault<T>::rkDefault;

    rkString validString() const override; // the names joined by "|"
    rkString valueToString(T value) const override;
    T stringToValue(rkString &text) const override;

    rkString &operator[](T value); // the name of a value; a new value gets an empty one

    rkList<T> m_values;
    rkList<rkString> m_texts; // parallel to the values
};

template <class T>
rkString rkMapDefault<T>::validString() const {
    rkString valid;
    for (auto text = m_texts.begin(); text != m_texts.end(); ++text) {
        if (text != m_texts.begin()) valid << "|";
        valid << *text;
    }
    return valid;
}

template <class T>
rkString rkMapDefault<T>::valueToString(T value) const {
    auto text = m_texts.begin();
    for (auto i = m_values.begin(); i != m_values.end(); ++i, ++text) {
        if (*i == value) return *text;
    }
    return "";
}

template <class T>
T rkMapDefault<T>::stringToValue(rkString &input) const {
    input.m_failed = false;
    auto text = m_texts.begin();
    for (auto i = m_values.begin(); i != m_values.end(); ++i, ++text) {
        if (fitString(input, *text, 0)) return *i;
    }
    input.m_failed = true;
    return T();
}

template <class T>
rkString &rkMapDefault<T>::operator[](T value) {
    auto text = m_texts.begin();
    for (auto i = m_values.begin(); i != m_values.end(); ++i, ++text) {
        if (*i == value) return *text;
    }
    m_values.push_back(value);
    m_texts.push_back(rkString());
    return *--m_texts.end();
}

#endif
