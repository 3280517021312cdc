// avsmacroblock_test.cpp - AVS macroblocks from coefficients, against the equations of the standard.

#include "avsmodel.h"
#include "kelvara_test.h"
#include "kelvc.h"

#include <gtest/gtest.h>

#include <climits>
#include <string>

namespace {

using namespace avsmodel;

// ---- the four forms ---------------------------------------------------------------------

struct Args {
    Kel16s **coeffs;
    Kel8u *u, *v; // luma is in u
    int step;
    const Kel32s *modes; // chroma: the first one
    Kel32u cbp;
    int qp, availability, bypass;
};

struct Form {
    const char *name;
    bool chroma, intra;
    KelStatus (*call)(const Args &);

    int width() const { return chroma ? 8 : 16; }
    int firstBit() const { return chroma ? 4 : 0; }
    int blocks() const { return chroma ? 2 : 4; }
};

const Form forms[] = {
    {"luma intra", false, true,
     [](const Args &a) {
         return keliReconstructLumaIntra_AVS_16s8u_C1R(a.coeffs, a.u, a.step, a.modes, a.cbp, a.qp,
                                                       a.availability, a.bypass);
     }},
    {"luma inter", false, false,
     [](const Args &a) {
         return keliReconstructLumaInter_AVS_16s8u_C1R(a.coeffs, a.u, a.step, a.cbp, a.qp, a.bypass);
     }},
    {"chroma intra", true, true,
     [](const Args &a) {
         return keliReconstructChromaIntra_AVS_16s8u_C1R(a.coeffs, a.u, a.v, a.step, a.modes[0], a.cbp, a.qp);
     }},
    {"chroma inter", true, false,
     [](const Args &a) {
         return keliReconstructChromaInter_AVS_16s8u_C1R(a.coeffs, a.u, a.v, a.step, a.cbp, a.qp);
     }},
};
const Form &lumaIntra = forms[0], &lumaInter = forms[1], &chromaIntra = forms[2], &chromaInter = forms[3];

// ---- scenes -----------------------------------------------------------------------------

// Two planes with a macroblock in the middle, modes and coefficients, all drawn from a seed.
class Scene {
public:
    Scene(const Form &form, unsigned seed) : m_form(form), m_generator(seed) {
        args = {nullptr, nullptr, nullptr, draw(3) ? 48 + draw(20) : form.width(), modes, 0, 0, 0, 0};
        for (ModelPlane &plane : planes) {
            plane = {args.step, args.step * 20 + (args.step >= 48 ? 16 : 0), {}};
            plane.bytes.resize(static_cast<size_t>(args.step) * 48);
            const int kind = draw(4);
            for (Kel8u &byte : plane.bytes) byte = static_cast<Kel8u>(kind ? draw(256) : 255 * draw(2));
        }
        args.cbp = draw(4) ? m_generator() : draw(2) ? 0 : ~0u;
        args.qp = draw(64);
        args.bypass = !form.chroma && draw(4) == 0 ? 1 + draw(9) : 0;
        args.availability = draw(3) ? draw(256) : 99;
        for (int k = 0; k < 4; ++k) modes[k] = drawMode(k);
    }

    int draw(int below) { return static_cast<int>(m_generator() % static_cast<unsigned>(below)); }

    std::vector<Kel16s> coefficients() {
        const int limit = std::max(2047 >> (args.qp / 8), 3) >> (2 * draw(3)) | 1;
        std::vector<Kel16s> values(256);
        for (Kel16s &value : values) value = static_cast<Kel16s>(draw(3) ? draw(2 * limit + 1) - limit : 0);
        return values;
    }

    bool allows(int k, int mode) const {
        if (m_form.chroma) return mode >= 0 && mode <= 3;
        return lumaAllowed(lumaReferences(planes[0], k, args.availability), mode);
    }

    // What the model makes of the planes; the number of coefficients that it takes.
    int reconstruct(ModelPlane *u, ModelPlane *v, const std::vector<Kel16s> &values) const {
        int used = 0;
        for (int k = 0; k < m_form.blocks(); ++k) {
            ModelPlane &plane = m_form.chroma && k == 1 ? *v : *u;
            Numbers r(64);
            if (args.cbp >> (m_form.firstBit() + k) & 1) {
                std::copy_n(values.begin() + used, 64, r.begin());
                used += 64;
                if (!args.bypass) r = residual(dequantised(r, args.qp));
            }
            store(plane, k, r);
        }
        return used;
    }

    Args args;
    ModelPlane planes[2];
    Kel32s modes[4];

private:
    int drawMode(int k) {
        std::vector<int> allowed;
        for (int mode = 0; mode < 5; ++mode) {
            if (allows(k, mode)) allowed.push_back(mode);
        }
        return allowed[static_cast<size_t>(draw(static_cast<int>(allowed.size())))];
    }
    void store(ModelPlane &plane, int k, const Numbers &r) const {
        const int x0 = m_form.chroma ? 0 : k % 2 * 8, y0 = m_form.chroma ? 0 : k / 2 * 8;
        const References p =
            m_form.chroma ? chromaReferences(plane) : lumaReferences(plane, k, args.availability);
        for (int i = 0; i < 64; ++i) {
            const int x = i % 8, y = i / 8;
            const int predicted = !m_form.intra   ? plane.at(x0 + x, y0 + y)
                                  : m_form.chroma ? chromaSample(p, modes[0], x, y)
                                                  : lumaSample(p, modes[k], x, y);
            plane.set(x0 + x, y0 + y, predicted + r[static_cast<size_t>(i)]);
        }
    }

    const Form &m_form;
    std::mt19937 m_generator;
};

// Calls the form on copies of the scene's planes.
struct Outcome {
    Outcome(const Form &form, const Scene &scene, Kel16s *coeffs)
        : planes{scene.planes[0], scene.planes[1]}, pointer(coeffs) {
        Args args = scene.args;
        args.coeffs = &pointer;
        args.u = planes[0].macroblock();
        args.v = planes[1].macroblock();
        status = form.call(args);
    }

    ModelPlane planes[2];
    Kel16s *pointer;
    KelStatus status;
};

// The coefficients that are used, and no more, in front of a forbidden page.
void expectReconstruction(const Form &form, const Scene &scene, const std::vector<Kel16s> &values,
                          int slack = 0) {
    ModelPlane expected[2] = {scene.planes[0], scene.planes[1]};
    const int used = scene.reconstruct(&expected[0], &expected[1], values);
    Source<Kel16s> coeffs(1, std::max(used, 1), 2 * std::max(used, 1), slack);
    coeffs.fill([&](int, int i) { return values[static_cast<size_t>(i)]; });
    const Outcome outcome(form, scene, const_cast<Kel16s *>(coeffs.data()));
    EXPECT_EQ(kelStsNoErr, outcome.status);
    EXPECT_EQ(coeffs.data() + used, outcome.pointer);
    for (int c = 0; c < 2; ++c) EXPECT_EQ(expected[c].bytes, outcome.planes[c].bytes) << "plane " << c;
}

// Nothing has been written, and the pointer is where it was.
void expectRefused(KelStatus status, const Form &form, const Scene &scene) {
    std::vector<Kel16s> values(256, 1);
    const Outcome outcome(form, scene, values.data());
    EXPECT_EQ(status, outcome.status) << form.name;
    EXPECT_EQ(values.data(), outcome.pointer);
    for (int c = 0; c < 2; ++c) EXPECT_EQ(scene.planes[c].bytes, outcome.planes[c].bytes);
}

int taken(const Form &form, Kel32u cbp) {
    Scene scene(form, 11);
    scene.args.cbp = cbp;
    std::vector<Kel16s> values(256, 1);
    const Outcome outcome(form, scene, values.data());
    EXPECT_EQ(kelStsNoErr, outcome.status);
    return static_cast<int>(outcome.pointer - values.data());
}

// A scene whose macroblock and neighbours are all 100.
Scene flat(const Form &form) {
    Scene scene(form, 4);
    for (ModelPlane &plane : scene.planes) std::fill(plane.bytes.begin(), plane.bytes.end(), Kel8u(100));
    scene.args.bypass = 0;
    return scene;
}

} // namespace

// ---- values ----------------------------------------------------------------------------

TEST(KelvaraAvsReconstruct, EveryFormFollowsTheEquations) {
    for (const Form &form : forms) {
        for (unsigned seed = 0; seed < 300; ++seed) {
            SCOPED_TRACE(std::string(form.name) + ", seed " + std::to_string(seed));
            Scene scene(form, seed);
            const std::vector<Kel16s> values = scene.coefficients();
            expectReconstruction(form, scene, values, static_cast<int>(seed % 3));
        }
    }
}

TEST(KelvaraAvsReconstruct, EveryLumaModeIsFollowedWithEveryNeighbourhoodThatPermitsIt) {
    const std::vector<Kel16s> values(256);
    int tried = 0;
    for (int bits = 0; bits < 128; ++bits) {
        for (int mode = 0; mode < 5; ++mode) {
            for (int k = 0; k < 4; ++k) {
                Scene scene(lumaIntra, static_cast<unsigned>(1000 + bits));
                scene.args.availability = bits;
                std::fill(scene.modes, scene.modes + 4, 2);
                if (!scene.allows(k, mode)) continue;
                scene.modes[k] = mode;
                SCOPED_TRACE(testing::Message()
                             << "neighbours " << bits << ", mode " << mode << ", block " << k);
                expectReconstruction(lumaIntra, scene, values);
                ++tried;
            }
        }
    }
    EXPECT_GT(tried, 1000);
}

TEST(KelvaraAvsReconstruct, CoefficientsOfNoStreamAreTaken) {
    for (const Form &form : forms) {
        for (int qp = 0; qp < 64; ++qp) {
            for (int value : {INT16_MIN, INT16_MAX, -1}) {
                SCOPED_TRACE(std::string(form.name) + ", QP " + std::to_string(qp));
                Scene scene(form, static_cast<unsigned>(qp));
                scene.args.qp = qp;
                scene.args.cbp = ~0u;
                std::vector<Kel16s> values(256, static_cast<Kel16s>(value));
                for (size_t i = 0; value == -1 && i < 256; ++i) values[i] = i * 7 % 3 ? INT16_MIN : INT16_MAX;
                expectReconstruction(form, scene, values);
            }
        }
    }
}

// Level 64 at QP 0 is the coefficient 128; 16 of these are one step of a sample.
TEST(KelvaraAvsReconstruct, OneDcLevelRaisesItsBlock) {
    Scene scene = flat(lumaInter);
    scene.args.cbp = 1u << 2; // the third block: row 8, column 0
    scene.args.qp = 0;
    Kel16s coeffs[64] = {64};
    const Outcome outcome(lumaInter, scene, coeffs);
    EXPECT_EQ(coeffs + 64, outcome.pointer);
    for (int y = 0; y < 16; ++y) {
        for (int x = 0; x < 16; ++x)
            EXPECT_EQ(x < 8 && y >= 8 ? 108 : 100, outcome.planes[0].at(x, y)) << x << ", " << y;
    }
}

// An eighth of a step, which doubles with every eighth quantiser, is one of a sample.
TEST(KelvaraAvsReconstruct, TheStepDoublesWithEightQuantisers) {
    for (int qp = 0; qp < 64; ++qp) {
        const double step = std::pow(2.0, qp / 8.0);
        Scene scene = flat(lumaInter);
        scene.args.cbp = 1;
        scene.args.qp = qp;
        Kel16s coeffs[64] = {static_cast<Kel16s>(std::lround(800 / step))};
        const Outcome outcome(lumaInter, scene, coeffs);
        EXPECT_NEAR(100 + coeffs[0] * step / 8, outcome.planes[0].at(0, 0), 2) << qp;
    }
}

// Coefficients as large as their type: most residuals are far beyond the range of samples, but the few within
// it show even the last bit of the factors.
TEST(KelvaraAvsReconstruct, LevelsOfFullRangeFollowTheEquations) {
    for (int qp = 0; qp < 64; ++qp) {
        for (unsigned round = 0; round < 20; ++round) {
            SCOPED_TRACE("QP " + std::to_string(qp));
            Scene scene(lumaInter, 20 * static_cast<unsigned>(qp) + round);
            scene.args.qp = qp;
            scene.args.cbp = 15;
            scene.args.bypass = 0;
            const int limit = 16383 >> ((qp + 7) / 8);
            std::vector<Kel16s> values(256);
            for (Kel16s &value : values) value = static_cast<Kel16s>(scene.draw(2 * limit + 1) - limit);
            expectReconstruction(lumaInter, scene, values);
        }
    }
}

TEST(KelvaraAvsReconstruct, WithBypassCoefficientsAreDifferences) {
    for (const Form *form : {&lumaIntra, &lumaInter}) {
        Scene scene = flat(*form);
        scene.args.availability = 99;
        std::fill(scene.modes, scene.modes + 4, 0);
        scene.args.cbp = 1;
        scene.args.bypass = 1;
        std::vector<Kel16s> coeffs(64);
        for (int i = 0; i < 64; ++i) coeffs[static_cast<size_t>(i)] = static_cast<Kel16s>(i - 32);
        const Outcome outcome(*form, scene, coeffs.data());
        for (int i = 0; i < 64; ++i)
            EXPECT_EQ(100 + i - 32, outcome.planes[0].at(i % 8, i / 8)) << form->name;
    }
}

TEST(KelvaraAvsReconstruct, BothColoursMayLieInOnePlane) {
    for (unsigned seed = 0; seed < 40; ++seed) {
        Scene scene(chromaIntra, seed);
        if (scene.args.step == 8) continue;
        std::vector<Kel16s> values = scene.coefficients();
        ModelPlane expected = scene.planes[0], plane = expected;
        scene.reconstruct(&expected, &expected, values);
        Args args = scene.args;
        Kel16s *pointer = values.data();
        args.coeffs = &pointer;
        args.u = args.v = plane.macroblock();
        EXPECT_EQ(kelStsNoErr, chromaIntra.call(args));
        EXPECT_EQ(expected.bytes, plane.bytes) << seed;
    }
}

// ---- patterns and coefficients --------------------------------------------------------------

TEST(KelvaraAvsReconstruct, PatternsTellHowManyCoefficientsAreTaken) {
    for (const Form *luma : {&lumaIntra, &lumaInter}) {
        EXPECT_EQ(0, taken(*luma, 0));
        EXPECT_EQ(64, taken(*luma, 1));
        EXPECT_EQ(3 * 64, taken(*luma, 103591)); // ends in 100111
        EXPECT_EQ(256, taken(*luma, 131071));
        EXPECT_EQ(0, taken(*luma, ~15u));
    }
    for (const Form *chroma : {&chromaIntra, &chromaInter}) {
        EXPECT_EQ(0, taken(*chroma, 1));
        EXPECT_EQ(64, taken(*chroma, 16));
        EXPECT_EQ(64, taken(*chroma, 103591));
        EXPECT_EQ(128, taken(*chroma, 131071));
        EXPECT_EQ(0, taken(*chroma, ~48u));
    }
}

TEST(KelvaraAvsReconstruct, AnEmptyInterMacroblockStaysAsItIs) {
    for (const Form *form : {&lumaInter, &chromaInter}) {
        Scene scene(*form, 3);
        scene.args.cbp = 0;
        Kel16s coeff = 1;
        const Outcome outcome(*form, scene, &coeff);
        EXPECT_EQ(kelStsNoErr, outcome.status);
        EXPECT_EQ(&coeff, outcome.pointer);
        for (int c = 0; c < 2; ++c) EXPECT_EQ(scene.planes[c].bytes, outcome.planes[c].bytes) << form->name;
    }
}

TEST(KelvaraAvsReconstruct, CoefficientsStayAsTheyAre) {
    for (const Form &form : forms) {
        Scene scene(form, 12);
        scene.args.cbp = ~0u;
        const std::vector<Kel16s> before = scene.coefficients();
        std::vector<Kel16s> values = before;
        EXPECT_EQ(kelStsNoErr, Outcome(form, scene, values.data()).status);
        EXPECT_EQ(before, values) << form.name;
    }
}

// ---- neighbours ----------------------------------------------------------------------------

TEST(KelvaraAvsReconstruct, AModeWithoutItsNeighboursIsRefused) {
    int refused = 0;
    for (int bits : {0, 1, 2, 3, 32, 33, 34, 35, 64, 99, -1}) {
        for (int k = 0; k < 4; ++k) {
            for (int mode = -1; mode <= 5; ++mode) {
                Scene scene(lumaIntra, static_cast<unsigned>(k));
                scene.args.availability = bits;
                std::fill(scene.modes, scene.modes + 4, 2);
                if (scene.allows(k, mode)) continue;
                scene.modes[k] = mode;
                expectRefused(kelStsRangeErr, lumaIntra, scene);
                ++refused;
            }
        }
    }
    EXPECT_GT(refused, 100);
}

TEST(KelvaraAvsReconstruct, ChromaHasFourModes) {
    for (int mode : {-1, 4, INT_MIN, INT_MAX}) {
        Scene scene(chromaIntra, 5);
        scene.modes[0] = mode;
        expectRefused(kelStsRangeErr, chromaIntra, scene);
    }
}

TEST(KelvaraAvsReconstruct, DcWithoutNeighboursIsMidGrey) {
    Scene scene(lumaIntra, 6);
    scene.args.availability = 0;
    scene.args.cbp = 0;
    std::fill(scene.modes, scene.modes + 4, 2);
    Kel16s coeff = 1;
    const Outcome outcome(lumaIntra, scene, &coeff);
    for (int i = 0; i < 256; ++i) EXPECT_EQ(128, outcome.planes[0].at(i % 16, i / 16));
}

// A macroblock alone in its memory, so that a sanitizer sees each read beside it.
TEST(KelvaraAvsReconstruct, WithoutNeighboursNothingBesideTheMacroblockIsRead) {
    const std::unique_ptr<Kel8u[]> plane(new Kel8u[256]());
    std::vector<Kel16s> values(256, 1);
    Kel16s *pointer = values.data();
    const Kel32s dc[4] = {2, 2, 2, 2};
    EXPECT_EQ(kelStsNoErr,
              keliReconstructLumaIntra_AVS_16s8u_C1R(&pointer, plane.get(), 16, dc, 15, 20, 0, 0));
    EXPECT_EQ(kelStsNoErr, keliReconstructLumaInter_AVS_16s8u_C1R(&pointer, plane.get(), 16, 0, 20, 0));
}

// ---- arguments ------------------------------------------------------------------------------

TEST(KelvaraAvsReconstruct, NullPointersAreRefusedFirst) {
    for (const Form &form : forms) {
        Scene scene(form, 8);
        std::vector<Kel16s> values(256, 1);
        Kel16s *pointer = values.data(), *none = nullptr;
        Args good = scene.args;
        good.coeffs = &pointer;
        good.u = scene.planes[0].macroblock();
        good.v = scene.planes[1].macroblock();
        good.step = 0;
        good.qp = 99;
        std::vector<Args> bad(3, good);
        bad[0].coeffs = nullptr;
        bad[1].coeffs = &none;
        bad[2].u = nullptr;
        if (form.chroma) bad.push_back(good), bad.back().v = nullptr;
        if (&form == &lumaIntra) bad.push_back(good), bad.back().modes = nullptr;
        for (const Args &args : bad) EXPECT_EQ(kelStsNullPtrErr, form.call(args)) << form.name;
        EXPECT_EQ(values.data(), pointer);
    }
}

TEST(KelvaraAvsReconstruct, StepsNarrowerThanTheMacroblockAreRefused) {
    for (const Form &form : forms) {
        for (int step : {form.width() - 1, 0, -16, INT_MIN}) {
            Scene scene(form, 9);
            scene.args.step = step;
            scene.args.qp = -1;
            expectRefused(kelStsStepErr, form, scene);
        }
    }
}

TEST(KelvaraAvsReconstruct, QuantisersOutOfRangeAreRefusedWithBypassToo) {
    for (const Form &form : forms) {
        for (int qp : {-1, 64, INT_MIN, INT_MAX}) {
            for (int bypass : {0, 1}) {
                Scene scene(form, 10);
                scene.args.qp = qp;
                scene.args.bypass = bypass;
                expectRefused(kelStsRangeErr, form, scene);
            }
        }
    }
}
