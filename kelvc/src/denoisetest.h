// denoisetest.h - what the tests of the denoising filters share.

#ifndef RAKOVA_DENOISETEST_H
#define RAKOVA_DENOISETEST_H

#include <initializer_list>

#include "kmvc.h"

// The user sets the place of a size in this table, and the row shows the size.
inline KeliSize const imgSize[] = {{352, 288}, {704, 576}, {1408, 1152}};

// A user may ask for any place; there is no image of the size behind the table.
inline KeliSize imageSizeAt(int i) {
    return i >= 0 && i < 3 ? imgSize[i] : KeliSize{0, 0};
}

class DenoiseTest : public kmTest {
public:
    using kmTest::kmTest;

    rkString getUnit() override { return "e"; }

protected:
    static bool makeRandom(std::initializer_list<kmImage *> images, KeliSize size) {
        for (kmImage *image : images) {
            image->init(8, 1, false);
            if (!image->createVectorExt(size, rkGetVectorShift(), SetRandom, 0, 0)) return false;
        }
        return true;
    }

    // What is read here is asked once: the walk over the parameters behind canStart only shows it.
    static void readAtOnce(rkParameter &parm) {
        parm.fromIStream(g_istrm);
        parm.m_readable = false;
    }

    static void initThreshold(rkIterator<int> &threshold) {
        threshold.init("threshold");
        for (int value : {1, 7, 14, 32, 128, 224}) threshold.add(value);
    }

    static void toTable(int value) {
        rkString text;
        text << value;
        g_cstrm << text;
    }
    static void toTable(KeliSize size) {
        toTable(size.width);
        toTable(size.height);
    }
};

#endif
