// kmfill.h - the generators of test data, one template each, and the dispatch on the element type.

#ifndef RAKOVA_KMFILL_H
#define RAKOVA_KMFILL_H

#include <math.h>
#include <string.h>

#include <type_traits>

#include "kmtype.h"

extern double const MAXABS_32F; // half the square root of the largest value of the type
extern double const MAXABS_64F;

// Low bits of the conversion to a signed 64-bit integer, the smallest one if value is out of its range.
long long kmToInt64(double value);
unsigned long long kmToUInt64(double value);

// Truncates towards zero and never saturates.
template <class T>
T kmConvert(double value) {
    if constexpr (std::is_floating_point_v<T>) {
        return static_cast<T>(value);
    } else if constexpr (std::is_same_v<T, Kel64u>) {
        return kmToUInt64(value);
    } else {
        return static_cast<T>(kmToInt64(value));
    }
}

// Component i of a row, which need not be aligned: misaligned data are a thing that is measured.
template <class T>
void kmStore(void *data, long long i, T value) {
    memcpy(static_cast<unsigned char *>(data) + i * static_cast<long long>(sizeof(T)), &value, sizeof(T));
}
template <class T>
T kmLoad(void const *data, long long i) {
    T value;
    memcpy(&value, static_cast<unsigned char const *>(data) + i * static_cast<long long>(sizeof(T)),
           sizeof(T));
    return value;
}

template <class T>
struct kmComponent {
    using type = T;
};

// Calls work(kmComponent<T>(), parts) for a type of components T, parts of them in an element. False, and no
// call, for an undefined type.
template <class Work>
bool kmForType(kmType type, Work work) {
    switch (type) {
        case 8:
            work(kmComponent<Kel8u>(), 1);
            return true;
        case 16:
            work(kmComponent<Kel16u>(), 1);
            return true;
        case 32:
            work(kmComponent<Kel32u>(), 1);
            return true;
        case 64:
            work(kmComponent<Kel64u>(), 1);
            return true;
        case 264:
            work(kmComponent<Kel8s>(), 1);
            return true;
        case 272:
            work(kmComponent<Kel16s>(), 1);
            return true;
        case 288:
            work(kmComponent<Kel32s>(), 1);
            return true;
        case 320:
            work(kmComponent<Kel64s>(), 1);
            return true;
        case 544:
            work(kmComponent<Kel32f>(), 1);
            return true;
        case 576:
            work(kmComponent<Kel64f>(), 1);
            return true;
        case 1040:
            work(kmComponent<Kel16u>(), 2);
            return true;
        case 1288:
            work(kmComponent<Kel8s>(), 2);
            return true;
        case 1296:
            work(kmComponent<Kel16s>(), 2);
            return true;
        case 1312:
            work(kmComponent<Kel32s>(), 2);
            return true;
        case 1344:
            work(kmComponent<Kel64s>(), 2);
            return true;
        case 1568:
            work(kmComponent<Kel32f>(), 2);
            return true;
        case 1600:
            work(kmComponent<Kel64f>(), 2);
            return true;
        default:
            return false;
    }
}

template <class T>
double kmMinOf() {
    if constexpr (std::is_same_v<T, float>) return -MAXABS_32F;
    if constexpr (std::is_same_v<T, double>) return -MAXABS_64F;
    if constexpr (std::is_unsigned_v<T>) return 0.0;
    return -ldexp(1.0, 8 * static_cast<int>(sizeof(T)) - 1);
}

// 2 to the 63rd for both 64-bit integers.
template <class T>
double kmMaxOf() {
    if constexpr (std::is_same_v<T, float>) return MAXABS_32F;
    if constexpr (std::is_same_v<T, double>) return MAXABS_64F;
    if constexpr (sizeof(T) == 8) return ldexp(1.0, 63);
    return ldexp(1.0, 8 * static_cast<int>(sizeof(T)) - (std::is_unsigned_v<T> ? 0 : 1)) - 1.0;
}

template <class T>
void kmLimit(double &low, double &high) {
    if (low < kmMinOf<T>()) low = kmMinOf<T>();
    if (high > kmMaxOf<T>()) high = kmMaxOf<T>();
}

// All generators write n elements of parts components.
template <class T>
void kmSetElement(void *data, long long i, int parts, double re, double im) {
    kmStore(data, i * parts, kmConvert<T>(re));
    if (parts == 2) kmStore(data, i * 2 + 1, kmConvert<T>(im));
}

// Doubles what is there: pictures of megabytes are made anew for each set of parameters.
template <class T>
void kmSetConst(void *data, int n, int parts, double re, double im) {
    if (n < 1) return;
    kmSetElement<T>(data, 0, parts, re, im);
    size_t bytes = sizeof(T) * parts * n;
    unsigned char *begin = static_cast<unsigned char *>(data);
    for (size_t done = sizeof(T) * parts; done < bytes; done *= 2)
        memcpy(begin + done, begin, done < bytes - done ? done : bytes - done);
}

// A chirp: the phase grows with the square of the index.
template <class T>
void kmSetJaehne(void *data, int n, int parts, double magn, double offset) {
    for (int i = 0; i < n; ++i) {
        double v = sin((1.5707963267948966 / n) * i * i) * magn + offset;
        kmSetElement<T>(data, i, parts, v, v);
    }
}

// From low on by step; above high it begins again at low, or stays at high without wrap.
template <class T>
void kmSetSequence(void *data, int n, int parts, double low, double high, double step, bool wrap) {
    kmLimit<T>(low, high);
    double v = low;
    for (int i = 0; i < n; ++i) {
        kmSetElement<T>(data, i, parts, v, v);
        v += step;
        if (v > high) v = wrap ? low : high;
    }
}

// The sum of a congruential generator and a lagged subtraction with borrow, both 32 bits wide.
class kmRandom {
public:
    explicit kmRandom(unsigned int seed);
    int next();
    unsigned int state() const { return m_x0; } // the seed if nothing was drawn

private:
    unsigned int m_x0, m_x1, m_x2;
    unsigned int m_carry;
    unsigned int m_lcg;
};

// count components; the seed becomes the generator's state.
template <class T>
void setRandUniform(void *data, long long count, double low, double high, unsigned int *seed) {
    kmLimit<T>(low, high);
    double scale = (high - low) * 2.3283064365387e-10;
    double mid = (high + low) * 0.5;
    kmRandom random(*seed);
    for (long long i = 0; i < count; ++i) kmStore(data, i, kmConvert<T>(random.next() * scale + mid));
    *seed = random.state();
}

#endif
