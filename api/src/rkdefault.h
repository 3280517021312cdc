// rkdefault.h - parameters with one stored value.

#ifndef RAKOVA_RKDEFAULT_H
#define RAKOVA_RKDEFAULT_H

#include "rkconversion.h"
#include "rkexception.h"
#include "rkparameter.h"

// Stores a T but does not know its text form.
template <class T>
class rkDefault_NSC : public rkParameter {
public:
    rkDefault_NSC() : rkDefault_NSC(T(), "", "") {}
    rkDefault_NSC(T value, rkString name, rkString descr = "") : rkParameter(name, descr), m_value(value) {}

    void init(T value, rkString name, rkString descr = "") {
        this->reset();
        rkParameter::init(name, descr);
        m_value = value;
    }

    void reset() override;
    rkString valueString() const override { return valueToString(value()); }
    bool isDeprecatedParm() override { return !m_deprecatedValues.empty(); }
    bool setDeprecatedFlag(bool on) override;
    void translate(rkString text) override { m_value = this->validItem(text); }

    virtual T value() const { return m_value; }
    virtual rkString valueToString(T) const { return ""; }
    virtual T stringToValue(rkString &) const { return T(); }
    virtual T validItem(rkString text); // throws rkException on a text that is no value

    void addDeprecated(T value,
                       rkString text); // value no longer counts as current; text stands for it in tables

    T m_value;
    rkList<T> m_deprecatedValues;
    rkList<rkString> m_deprecatedTexts; // parallel to the values
};

template <class T>
class rkDefault : public rkDefault_NSC<T> {
public:
    using rkDefault_NSC<T>::rkDefault_NSC;
    rkString valueToString(T value) const override { return rkValueToString(value); }
    T stringToValue(rkString &text) const override { return rkStringToValue<T>(text); }
};

template <class T>
void rkDefault_NSC<T>::reset() {
    rkParameter::reset();
    m_value = T();
}

template <class T>
T rkDefault_NSC<T>::validItem(rkString text) {
    T value = stringToValue(text);
    if (text.failed()) {
        rkString info("Invalid value of ");
        info << m_name << " = " << text;
        throw rkException(info);
    }
    return value;
}

template <class T>
void rkDefault_NSC<T>::addDeprecated(T value, rkString text) {
    m_deprecatedValues.push_back(value);
    m_deprecatedTexts.push_back(text);
}

template <class T>
bool rkDefault_NSC<T>::setDeprecatedFlag(bool on) {
    m_deprecated = false;
    if (!on) return false;
    auto text = m_deprecatedTexts.begin();
    for (auto entry = m_deprecatedValues.begin(); entry != m_deprecatedValues.end(); ++entry, ++text) {
        if (valueToString(*entry) == valueToString(m_value)) {
            m_deprecatedText = *text;
            m_deprecated = true;
            return true;
        }
    }
    return false;
}

#endif
