// reconstruction_test.cpp - H.264 macroblocks from coefficients, against the equations of the standard.

#include "reconstructiontest.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace {

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
void expectReconstruction(const Form &form, unsigned seed) {
    SCOPED_TRACE(std::string(form.name) + ", seed " + std::to_string(seed));
    Scene scene(form, seed);
    const std::vector<Kel16s> values = scene.coefficients();
    ModelPlane expected[2] = {scene.planes[0], scene.planes[1]};
    const int used = scene.reconstruct(expected, values);
    Source<Kel16s> coeffs(1, std::max(used, 1), 2 * std::max(used, 1), static_cast<int>(seed % 3));
    coeffs.fill([&](int, int i) { return values[static_cast<size_t>(i)]; });
    const Outcome outcome(form, scene, const_cast<Kel16s *>(coeffs.data()));
    EXPECT_EQ(kelStsNoErr, outcome.status);
    EXPECT_EQ(coeffs.data() + used, outcome.pointer);
    for (int c = 0; c < 2; ++c) {
        EXPECT_EQ(expected[c].bytes, outcome.planes[c].bytes) << "plane " << c;
    }
}

// Nothing has been written, and the pointer is where it was.
void expectRefused(KelStatus status, const Form &form, const Scene &scene) {
    std::vector<Kel16s> values(272, 1);
    const Outcome outcome(form, scene, values.data());
    EXPECT_EQ(status, outcome.status);
    EXPECT_EQ(values.data(), outcome.pointer);
    EXPECT_EQ(scene.planes[0].bytes, outcome.planes[0].bytes);
    EXPECT_EQ(scene.planes[1].bytes, outcome.planes[1].bytes);
}

const Form &formOf(const std::string &name) {
    for (const Form &form : forms()) {
        if (form.name == name) return form;
    }
    throw std::runtime_error(name);
}

int taken(const Form &form, Kel32u cbp) {
    Scene scene(form, 1);
    scene.args.cbp = cbp;
    std::vector<Kel16s> values(272, 1);
    const Outcome outcome(form, scene, values.data());
    EXPECT_EQ(kelStsNoErr, outcome.status) << form.name;
    return static_cast<int>(outcome.pointer - values.data());
}

} // namespace

// ---- values ----------------------------------------------------------------------------

TEST(KelvaraReconstruct, EveryFormFollowsTheEquations) {
    for (const Form &form : forms()) {
        for (unsigned seed = 0; seed < 150; ++seed) expectReconstruction(form, seed);
    }
}

TEST(KelvaraReconstruct, CoefficientsAndTablesOfNoStreamAreTaken) {
    std::mt19937 generator(1);
    for (const Form &form : forms()) {
        for (int qp : {0, 17, 35, 51}) {
            for (int value : {INT16_MIN, INT16_MAX, 0}) {
                Scene scene(form, static_cast<unsigned>(qp));
                Kel16s table[64];
                std::fill(table, table + 64, static_cast<Kel16s>(value ? value : 999));
                scene.args.cbp = ~0u;
                scene.args.qp[0] = scene.args.qp[1] = qp;
                if (form.tables) scene.args.tables[0] = scene.args.tables[1] = table;
                std::vector<Kel16s> values(272);
                for (Kel16s &coeff : values) coeff = static_cast<Kel16s>(value ? value : generator());
                EXPECT_EQ(kelStsNoErr, Outcome(form, scene, values.data()).status) << form.name;
            }
        }
    }
}

// ---- patterns and coefficients --------------------------------------------------------------

TEST(KelvaraReconstruct, PatternsTellHowManyCoefficientsAreTaken) {
    const Form &whole = formOf("keliReconstructLumaIntra16x16MB_H264_16s8u_C1R");
    EXPECT_EQ(0, taken(whole, 0));
    EXPECT_EQ(16, taken(whole, 1));
    EXPECT_EQ(16 + 8 * 16, taken(whole, 103591)); // nine bits, one of them DC
    EXPECT_EQ(272, taken(whole, 131071));
    const Form &blocks = formOf("keliReconstructLumaIntraMB_H264_16s8u_C1R");
    EXPECT_EQ(0, taken(blocks, 0));
    EXPECT_EQ(0, taken(blocks, 1));
    EXPECT_EQ(8 * 16, taken(blocks, 103591));
    EXPECT_EQ(256, taken(blocks, 131071));
    const Form &eights = formOf("keliReconstructLumaInter8x8MB_H264_16s8u_C1R");
    EXPECT_EQ(256, taken(eights, 30));
    EXPECT_EQ(64, taken(eights, 16));
    const Form &chroma = formOf("keliReconstructChromaIntraMB_H264_16s8u_P2R");
    EXPECT_EQ(4, taken(chroma, 1));
    EXPECT_EQ(8, taken(chroma, 3));
    EXPECT_EQ(8 + 3 * 16, taken(chroma, 103591)); // bits 0, 1, 2, 5 and 7
    EXPECT_EQ(136, taken(chroma, 131071));
}

TEST(KelvaraReconstruct, BitsBehindTheBlocksAreNotLookedAt) {
    for (const Form &form : forms()) {
        const Kel32u known = form.isChroma() ? 0x3FF : form.block() == 8 ? 0x1E : 0x1FFFF;
        EXPECT_EQ(0, taken(form, ~known)) << form.name;
    }
}

TEST(KelvaraReconstruct, AnEmptyInterMacroblockStaysAsItIs) {
    for (const Form &form : forms()) {
        if (form.isIntra()) continue;
        Scene scene(form, 3);
        scene.args.cbp = 0;
        Kel16s coeff = 1;
        const Outcome outcome(form, scene, &coeff);
        EXPECT_EQ(kelStsNoErr, outcome.status);
        EXPECT_EQ(&coeff, outcome.pointer);
        EXPECT_EQ(scene.planes[0].bytes, outcome.planes[0].bytes) << form.name;
    }
}

// The flat list makes a DC level 160 times as large at QP 24, and 64 of that are one step of a sample.
TEST(KelvaraReconstruct, OneDcLevelRaisesItsBlock) {
    const Form &form = formOf("keliReconstructLumaInterMB_H264_16s8u_C1R");
    Scene scene(form, 4);
    for (Kel8u &byte : scene.planes[0].bytes) byte = 100;
    scene.args.cbp = 1u << 3; // the third block: row 4, column 0
    scene.args.qp[0] = 24;
    Kel16s coeffs[16] = {4};
    const Outcome outcome(form, scene, coeffs);
    EXPECT_EQ(coeffs + 16, outcome.pointer);
    for (int y = 0; y < 16; ++y) {
        for (int x = 0; x < 16; ++x) {
            const bool inside = x < 4 && y >= 4 && y < 8;
            EXPECT_EQ(inside ? 110 : 100, outcome.planes[0].at(x, y)) << x << ", " << y;
        }
    }
}

TEST(KelvaraReconstruct, WithBypassCoefficientsAreDifferences) {
    const Form &form = formOf("keliReconstructLumaInter8x8MB_H264_16s8u_C1R");
    Scene scene(form, 5);
    for (Kel8u &byte : scene.planes[0].bytes) byte = 100;
    scene.args.cbp = 2;
    scene.args.bypass = 1;
    std::vector<Kel16s> coeffs(64);
    for (int i = 0; i < 64; ++i) coeffs[static_cast<size_t>(i)] = static_cast<Kel16s>(i - 32);
    const Outcome outcome(form, scene, coeffs.data());
    for (int i = 0; i < 64; ++i) EXPECT_EQ(100 + i - 32, outcome.planes[0].at(i % 8, i / 8));
}

TEST(KelvaraReconstruct, BothColoursMayLieInOnePlane) {
    const Form &form = formOf("keliReconstructChromaIntra4x4MB_H264_16s8u_P2R");
    for (unsigned seed = 0; seed < 40; ++seed) {
        Scene scene(form, seed);
        std::vector<Kel16s> values = scene.coefficients();
        ModelPlane expected[2] = {scene.planes[0], scene.planes[1]};
        ModelPlane &plane = scene.planes[0];
        Args args = scene.args;
        Kel16s *pointer = values.data();
        args.coeffs = &pointer;
        args.u = args.v = plane.macroblock();
        expected[1] = expected[0]; // the neighbours of V, beside what U writes
        scene.reconstruct(expected, values);
        if (args.step == 8) continue;
        EXPECT_EQ(kelStsNoErr, form.call(args));
        EXPECT_EQ(expected[1].bytes, plane.bytes) << seed;
    }
}

// ---- neighbours ----------------------------------------------------------------------------

// One mode of one block that its neighbours do not permit is enough.
TEST(KelvaraReconstruct, AModeWithoutItsNeighboursIsRefused) {
    int refused = 0;
    for (const Form &form : forms()) {
        if (!form.isIntra() || form.sides == AllThere) continue;
        for (unsigned seed = 0; seed < 25; ++seed) {
            Scene scene(form, seed);
            const int blocks = form.hasBlockModes() ? 256 / (form.block() * form.block()) : 1;
            for (int k = 0; k < blocks; ++k) {
                Kel32s &mode = form.hasBlockModes() ? scene.modes[k] : scene.args.mode;
                const Kel32s legal = mode;
                for (mode = -1; mode <= 9; ++mode) {
                    if (scene.allows(k, mode)) continue;
                    expectRefused(kelStsRangeErr, form, scene);
                    ++refused;
                }
                mode = legal;
            }
        }
    }
    EXPECT_GT(refused, 3000);
}

TEST(KelvaraReconstruct, HalvesOfTheLeftNeighbourAreJudgedOneByOne) {
    const Form &form = formOf("keliReconstructLumaIntraHalfMB_H264_16s8u_C1R");
    Scene scene(form, 6);
    std::vector<Kel16s> values(272, 1);
    std::fill(scene.modes, scene.modes + 16, 2);
    scene.args.availability = 4;
    scene.modes[10] = 1; // row 12, column 0
    EXPECT_EQ(kelStsNoErr, Outcome(form, scene, values.data()).status);
    scene.modes[2] = 1; // row 4, column 0
    expectRefused(kelStsRangeErr, form, scene);
    scene.args.availability = 6;
    EXPECT_EQ(kelStsNoErr, Outcome(form, scene, values.data()).status);
    scene.args.availability = 2;
    expectRefused(kelStsRangeErr, form, scene);
}

TEST(KelvaraReconstruct, WithoutNeighboursNothingBesideTheMacroblockIsRead) {
    for (const Form &form : forms()) {
        if (form.sides == AllThere) continue;
        const int size = form.width() * form.width();
        const std::unique_ptr<Kel8u[]> u(new Kel8u[size]()), v(new Kel8u[size]());
        Scene scene(form, 7);
        std::vector<Kel16s> values(272, 1);
        Kel16s *pointer = values.data();
        Args args = scene.args;
        args.availability = form.sides == Missing ? 127 : 0;
        args.lowerAvailability = 0;
        args.coeffs = &pointer;
        args.u = u.get();
        args.v = v.get();
        args.step = form.width();
        args.mode = form.isChroma() ? 0 : 2;
        const Kel32s dc[16] = {2, 2, 2, 2, 2, 2, 2, 2, 2, 2, 2, 2, 2, 2, 2, 2};
        args.modes = dc;
        EXPECT_EQ(kelStsNoErr, form.call(args)) << form.name;
    }
}

// ---- arguments ------------------------------------------------------------------------------

TEST(KelvaraReconstruct, NullPointersAreRefusedFirst) {
    for (const Form &form : forms()) {
        Scene scene(form, 8);
        std::vector<Kel16s> values(272, 1);
        Kel16s *pointer = values.data(), *none = nullptr;
        Args good = scene.args;
        good.coeffs = &pointer;
        good.u = scene.planes[0].macroblock();
        good.v = scene.planes[1].macroblock();
        good.step = 0;
        good.qp[0] = 99;
        std::vector<Args> bad(3, good);
        bad[0].coeffs = nullptr;
        bad[1].coeffs = &none;
        bad[2].u = nullptr;
        if (form.isChroma()) bad.push_back(good), bad.back().v = nullptr;
        if (form.hasBlockModes()) bad.push_back(good), bad.back().modes = nullptr;
        for (const Args &args : bad) EXPECT_EQ(kelStsNullPtrErr, form.call(args)) << form.name;
        EXPECT_EQ(values.data(), pointer);
    }
}

TEST(KelvaraReconstruct, StepsNarrowerThanTheMacroblockAreRefused) {
    for (const Form &form : forms()) {
        for (int step : {form.width() - 1, 0, -16}) {
            Scene scene(form, 9);
            scene.args.step = step;
            scene.args.qp[0] = -1;
            expectRefused(kelStsStepErr, form, scene);
        }
    }
}

TEST(KelvaraReconstruct, QuantisersOutOfRangeAreRefused) {
    for (const Form &form : forms()) {
        for (int qp : {-1, 52, INT32_MIN, INT32_MAX}) {
            for (int c = 0; c < (form.isChroma() && form.tables ? 2 : 1); ++c) {
                Scene scene(form, 10);
                scene.args.qp[c] = qp;
                expectRefused(kelStsRangeErr, form, scene);
            }
        }
    }
}
