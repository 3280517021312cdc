// quantspec.cpp - the quantiser of MPEG-4 coefficients.

#include "quantspec.h"

// The functions that make one; the library may lack them.
struct Maker {
    KelStatus (*getSize)(int *);
    char const *getSizeName;
    KelStatus (*init)(Kel8u const *, KeliQuantSpec_MPEG4 *, int);
    char const *initName;
};

// clang-format off
static Maker inverseMaker(bool intra) {
    if (intra) return {keliQuantInvIntraGetSize_MPEG4, "keliQuantInvIntraGetSize_MPEG4",
                       keliQuantInvIntraInit_MPEG4, "keliQuantInvIntraInit_MPEG4"};
    return {keliQuantInvInterGetSize_MPEG4, "keliQuantInvInterGetSize_MPEG4",
            keliQuantInvInterInit_MPEG4, "keliQuantInvInterInit_MPEG4"};
}

static Maker forwardMaker(bool intra) {
    if (intra) return {keliQuantIntraGetSize_MPEG4, "keliQuantIntraGetSize_MPEG4",
                       keliQuantIntraInit_MPEG4, "keliQuantIntraInit_MPEG4"};
    return {keliQuantInterGetSize_MPEG4, "keliQuantInterGetSize_MPEG4",
            keliQuantInterInit_MPEG4, "keliQuantInterInit_MPEG4"};
}
// clang-format on

static bool passes(KelStatus status, char const *function) {
    return !rkIsError(kmTest::checkStatus(status, function));
}

bool createQuantSpec(KeliQuantSpec_MPEG4 *&spec, QuantForm form, Kel8u const *weights, int bitsPerPixel) {
    spec = nullptr;
    const Maker maker = form.inverse ? inverseMaker(form.intra) : forwardMaker(form.intra);
    if (!maker.getSize || !maker.init) return false;
    int size = 0;
    if (!passes(maker.getSize(&size), maker.getSizeName)) return false;
    spec = static_cast<KeliQuantSpec_MPEG4 *>(rkMalloc(size, 0, 0, nullptr));
    return spec && passes(maker.init(weights, spec, bitsPerPixel), maker.initName);
}

void deleteQuantSpec(KeliQuantSpec_MPEG4 *&spec) {
    rkFree(spec);
    spec = nullptr;
}
