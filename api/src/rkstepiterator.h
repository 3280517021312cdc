// rkstepiterator.h - a family of values from first to last by steps, or a list.

#ifndef RAKOVA_RKSTEPITERATOR_H
#define RAKOVA_RKSTEPITERATOR_H

#include "rkiterator.h"

enum StepOprtn { StepPlus = '+', StepMinus = '-', StepTimes = '*', StepList = '?' };

// Exists for int, unsigned int and signed char. The stepped text is "first; last; +step", with "-" or "*" as
// well. The walk overshoots: on leaving, the value is the first one beyond the limit. A step of 0 never ends.
template <class T>
class rkStepIterator : public rkIterator<T> {
public:
    rkStepIterator() = default;

    // The stepped form. Throws rkException on a conflict of limits and operation.
    void init(rkString name, T first, T last, T step, StepOprtn oprtn, rkString descr = "");
    // The list form; the values follow by add.
    void init(rkString name, rkString descr = "");

    rkString defaultString() const override;
    rkString description() const override;
    rkString prompt() const override;
    bool nextValue() override;
    void translate(rkString text) override;

    // Sets descending, and throws rkException where limits, step and operation contradict.
    void validate(T first, T last, T &step, StepOprtn &oprtn, bool &descending);
    bool translateStep(rkString text); // false if the text has not the stepped form

    T m_first = 0;
    T m_last = 0; // included if a step meets it
    T m_step = 0;
    StepOprtn m_oprtn = StepList;
    bool m_descending = false;
};

extern template class rkStepIterator<int>;
extern template class rkStepIterator<unsigned int>;
extern template class rkStepIterator<signed char>;

#endif
