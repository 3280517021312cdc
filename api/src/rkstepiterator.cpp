// rkstepiterator.cpp - stepped families of values.

#include "rkstepiterator.h"

#include <type_traits>

template <class T>
void rkStepIterator<T>::init(rkString name, T first, T last, T step, StepOprtn oprtn, rkString descr) {
    rkIterator<T>::init(name, descr);
    m_first = first;
    m_last = last;
    m_step = step;
    m_oprtn = oprtn;
    validate(m_first, m_last, m_step, m_oprtn, m_descending);
}

template <class T>
void rkStepIterator<T>::init(rkString name, rkString descr) {
    rkIterator<T>::init(name, descr);
    m_oprtn = StepList;
}

template <class T>
rkString rkStepIterator<T>::defaultString() const {
    if (m_oprtn == StepList) return rkIterator<T>::defaultString();
    rkString text;
    text << int(m_first) << "; " << int(m_last) << "; " << char(m_oprtn) << int(m_step);
    return text;
}

// The shape of a loop: for (size = 1; size <= 31; size += 2)
template <class T>
rkString rkStepIterator<T>::description() const {
    if (m_oprtn == StepList) return rkIterator<T>::description();
    rkString const &name = this->m_name;
    rkString text("for (");
    text << name << " = " << int(m_first) << "; ";
    text << name << (m_descending ? " >= " : " <= ") << int(m_last) << "; ";
    text << name << " " << char(m_oprtn) << "= " << int(m_step) << ")";
    return text;
}

template <class T>
rkString rkStepIterator<T>::prompt() const {
    return m_oprtn == StepList ? this->m_name : rkString("for ") + this->m_name;
}

// One step, as the type wraps it. False if the exact result is out of the type's range.
template <class T>
static bool takeStep(T &value, T amount, StepOprtn oprtn) {
    if (oprtn == StepPlus) return !__builtin_add_overflow(value, amount, &value);
    if (oprtn == StepMinus) return !__builtin_sub_overflow(value, amount, &value);
    return !__builtin_mul_overflow(value, amount, &value);
}

// A step out of the type's range ends the walk: whatever the limit is, it has been passed.
template <class T>
bool rkStepIterator<T>::nextValue() {
    if (m_oprtn == StepList) return rkIterator<T>::nextValue();
    T &value = this->m_value;
    bool inRange = true;
    if (this->m_done) {
        inRange = takeStep(value, m_step, m_oprtn);
    } else {
        value = m_first;
    }
    this->m_done = inRange && (m_descending ? value >= m_last : value <= m_last);
    return this->m_done;
}

template <class T>
static bool isNegative([[maybe_unused]] T value) {
    if constexpr (std::is_signed_v<T>) return value < 0;
    return false;
}

template <class T>
static bool timesConflicts(T first, T last, T step) {
    if (step < 1 || step == 1) return true;
    if (first >= 1 && last >= 1) return first > last;
    if (isNegative(first) && isNegative(last)) return first <= last;
    return true;
}

// The two signs are no mirror images: equal limits pass with "+" and conflict with "-".
template <class T>
static bool stepConflicts(T first, T last, T step, StepOprtn oprtn) {
    switch (oprtn) {
        case StepPlus:
            return step >= 1 ? first > last : first <= last;
        case StepMinus:
            return step >= 1 ? first <= last : first > last;
        case StepTimes:
            return timesConflicts(first, last, step);
        case StepList:
            break;
    }
    return false;
}

template <class T>
void rkStepIterator<T>::validate(T first, T last, T &step, StepOprtn &oprtn, bool &descending) {
    descending = first > last;
    if (!stepConflicts(first, last, step, oprtn)) return;
    throw rkException(rkString("Conflict between iterator limits and operation"));
}

static bool isStepOprtn(rkString const &word) {
    char c = word.c_str()[0];
    return c == StepPlus || c == StepMinus || c == StepTimes;
}

// Reads one number of a stepped text; what names it in the message.
template <class T>
static T readNumber(char const *what, rkString word) {
    T value = rkStringToValue<T>(word);
    if (word.failed()) throw rkException(rkString("Invalid ") + what + " = " + word);
    return value;
}

template <class T>
bool rkStepIterator<T>::translateStep(rkString text) {
    rkString firstWord, lastWord, stepWord;
    if (text.parse(firstWord, lastWord, stepWord, "; ") != 3 || !isStepOprtn(stepWord)) return false;
    StepOprtn oprtn = StepOprtn(stepWord[0]);
    T first = readNumber<T>("first value", firstWord);
    T last = readNumber<T>("last value", lastWord);
    T step = readNumber<T>("step", stepWord.substr(1));
    bool descending = false;
    validate(first, last, step, oprtn, descending);
    m_first = first;
    m_last = last;
    m_step = step;
    m_oprtn = oprtn;
    m_descending = descending;
    return true;
}

template <class T>
void rkStepIterator<T>::translate(rkString text) {
    if (translateStep(text)) return;
    rkIterator<T>::translate(text);
    m_oprtn = StepList;
}

template class rkStepIterator<int>;
template class rkStepIterator<unsigned int>;
template class rkStepIterator<signed char>;
