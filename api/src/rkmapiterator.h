// rkmapiterator.h - families of values out of a valid set, and with a name for each value.

#ifndef RAKOVA_RKMAPITERATOR_H
#define RAKOVA_RKMAPITERATOR_H

#include "rkiterator.h"

template <class T>
class rkEnumIterator_NCS : public rkIterator_NSC<T> {
public:
    using rkIterator_NSC<T>::rkIterator_NSC;

    rkString validString() const override; // the valid set, or "" if none is in force
    void add(T value) override;
    virtual void initValidation(); // what is in the list is what is valid
    virtual void resetValidation();
    virtual bool addValidation(T value); // false if it is valid already
    virtual void addValidation(rkList<T> const *list);

    rkList<T> m_validValues;
    bool m_validation = false; // a valid set is in force
};

// A user may type any leading part of a name, in any case; the earlier entry wins.
template <class T>
class rkMapIterator : public rkEnumIterator_NCS<T> {
public:
    using rkEnumIterator_NCS<T>::rkEnumIterator_NCS;

    void init(rkString name, rkString descr = ""); // forgets values and names
    void reset() override;
    rkString valueToString(T value) const override; // "" for a value without a name
    T stringToValue(rkString &text) const override;
    void initValidation() override;
    void resetValidation() override;
    virtual void resetMap();

    // map[value] = name. A second name for a value is thrown away.
    rkString &operator[](T value);

    rkList<rkString> m_names; // parallel to m_validValues
    rkString m_extraName;     // takes the thrown-away names
};

template <class T>
rkString rkEnumIterator_NCS<T>::validString() const {
    return m_validation ? this->listDescr(m_validValues, "|") : rkString();
}

template <class T>
void rkEnumIterator_NCS<T>::add(T value) {
    rkIterator_NSC<T>::add(value);
    if (m_validation) addValidation(value);
}

template <class T>
void rkEnumIterator_NCS<T>::initValidation() {
    resetValidation();
    m_validation = true;
    for (auto i = this->begin(); i != this->end(); ++i) addValidation(*i);
}

template <class T>
void rkEnumIterator_NCS<T>::resetValidation() {
    m_validation = false;
    m_validValues.clear();
}

template <class T>
bool rkEnumIterator_NCS<T>::addValidation(T value) {
    if (!m_validation) initValidation();
    for (auto i = m_validValues.begin(); i != m_validValues.end(); ++i) {
        if (*i == value) return false;
    }
    m_validValues.push_back(value);
    return true;
}

template <class T>
void rkEnumIterator_NCS<T>::addValidation(rkList<T> const *list) {
    for (auto i = list->begin(); i != list->end(); ++i) addValidation(*i);
}

template <class T>
void rkMapIterator<T>::init(rkString name, rkString descr) {
    resetMap();
    rkIterator_NSC<T>::init(name, descr);
}

template <class T>
void rkMapIterator<T>::reset() {
    rkIterator_NSC<T>::reset();
}

template <class T>
rkString rkMapIterator<T>::valueToString(T value) const {
    auto name = m_names.begin();
    for (auto i = this->m_validValues.begin(); i != this->m_validValues.end() && name != m_names.end();
         ++i, ++name) {
        if (*i == value) return *name;
    }
    return "";
}

template <class T>
T rkMapIterator<T>::stringToValue(rkString &text) const {
    text.m_failed = false;
    auto name = m_names.begin();
    for (auto i = this->m_validValues.begin(); i != this->m_validValues.end() && name != m_names.end();
         ++i, ++name) {
        if (fitString(text, *name, 0)) return *i;
    }
    text.m_failed = true;
    return T();
}

template <class T>
void rkMapIterator<T>::initValidation() {
    resetValidation();
    this->m_validation = true;
}

template <class T>
void rkMapIterator<T>::resetValidation() {
    rkEnumIterator_NCS<T>::resetValidation();
    m_names.clear();
}

template <class T>
void rkMapIterator<T>::resetMap() {
    this->reset();
    resetValidation();
}

template <class T>
rkString &rkMapIterator<T>::operator[](T value) {
    if (!this->addValidation(value)) return m_extraName;
    m_names.push_back(rkString());
    return *--m_names.end();
}

#endif
