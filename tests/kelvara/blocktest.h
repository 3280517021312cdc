// blocktest.h - blocks of coefficients for the golden tests.

#ifndef KELVARA_BLOCKTEST_H
#define KELVARA_BLOCKTEST_H

#include "kelvara_test.h"

#include <array>
#include <cmath>

template <class T>
using Values = std::array<T, 64>;

// Uniform between low and high.
template <class T>
Values<T> randomBlock(std::mt19937 &generator, int low, int high) {
    Values<T> values;
    for (T &value : values) {
        value = static_cast<T>(low + static_cast<int>(generator() % static_cast<unsigned>(high - low + 1)));
    }
    return values;
}

// A block that a function changes in place, between marks, `offset` bytes behind a multiple of 64.
class InPlace : public Destination<Kel16s> {
public:
    explicit InPlace(const Values<Kel16s> &values, int offset = 0) : Destination(64, offset) {
        std::memcpy(static_cast<void *>(data()), values.data(), sizeof values);
    }
    Values<Kel16s> values() const {
        Values<Kel16s> result;
        for (int i = 0; i < 64; ++i) result[i] = (*this)[i];
        return result;
    }
};

// A read-only block that ends `slack` bytes before a forbidden page.
template <class T>
class SourceBlock : public Source<T> {
public:
    explicit SourceBlock(const Values<T> &values, int slack = 0) : Source<T>(1, 64, 64 * sizeof(T), slack) {
        this->fill([&](int, int col) { return values[col]; });
    }
};

#endif
