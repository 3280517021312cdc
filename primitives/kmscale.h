// kmscale.h - a parameter that walks the scale factors of a primitive, if it has one.

#ifndef RAKOVA_KMSCALE_H
#define RAKOVA_KMSCALE_H

#include "rkiterator.h"

#include "kmfunc.h"

// For a primitive without a scale factor: one pass at 0 that the user does not see.
class kmScaleIterator : public rkIterator<int> {
public:
    kmScaleIterator() = default;

    int colmIndex() const override; // the last column of the parameters
    virtual bool isScaled(kmFunc func);

    // The factors 0, 1, 2 and -1, or the given ones.
    void init(rkString funcName);
    void init(rkString funcName, int a);
    void init(rkString funcName, int a, int b);
    void init(rkString funcName, int a, int b, int c);
    void init(rkString funcName, int a, int b, int c, int d);
    void init(rkString funcName, int a, int b, int c, int d, int e);
    void init(rkString funcName, int a, int b, int c, int d, int e, int f);

    bool m_scaled = false;

private:
    void replace(rkString const &funcName, int const *factors, int count);
};

#endif
