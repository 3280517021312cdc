// reconstructiontest.h - all forms of macroblock reconstruction behind one list of arguments.

#ifndef KELVARA_RECONSTRUCTIONTEST_H
#define KELVARA_RECONSTRUCTIONTEST_H

#include "kelvara_test.h"
#include "kelvc.h"
#include "macroblockmodel.h"

struct Args {
    Kel16s **coeffs;
    Kel8u *u, *v; // luma is in u
    int step;
    int mode;
    const Kel32s *modes;
    Kel32u cbp;
    int qp[2];
    int availability, lowerAvailability;
    const Kel16s *tables[2];
    int bypass;
};

enum Kind { Whole, Blocks4, Blocks8, Inter4, Inter8, ChromaIntra, ChromaInter };
// How a form takes the neighbours.
enum Sides { NoSides, OneLeft, TwoLefts, TwoSets, Missing, AllThere };

struct Form {
    const char *name;
    Kind kind;
    Sides sides;
    bool tables; // and bypass
    KelStatus (*call)(const Args &);

    bool isChroma() const { return kind == ChromaIntra || kind == ChromaInter; }
    bool isIntra() const { return kind != Inter4 && kind != Inter8 && kind != ChromaInter; }
    bool hasBlockModes() const { return kind == Blocks4 || kind == Blocks8; }
    int block() const { return kind == Blocks8 || kind == Inter8 ? 8 : 4; }
    int width() const { return isChroma() ? 8 : 16; }

    // The bits of the model.
    int bits(const Args &a) const {
        const int given = sides == Missing ? ~a.availability : a.availability;
        const int others = given & (hasUpper | hasCorner | hasUpperRight);
        const int top = given & hasLeftTop;
        switch (sides) {
            case NoSides:
                return 0;
            case AllThere:
                return hasUpper | hasLeft | hasCorner | hasUpperRight;
            case TwoLefts:
                return others | top | (given & hasLeftBottom);
            case TwoSets:
                return others | top | (a.lowerAvailability & hasLeftTop ? hasLeftBottom : 0);
            default:
                return others | (top ? hasLeft : 0);
        }
    }
};

#define KEL_FORM(function, kind, sides, tables, ...)                                                  \
    {                                                                                                 \
#function, kind, sides, tables, [](const Args &a) { return function(a.coeffs, __VA_ARGS__); } \
    }

inline const std::vector<Form> &forms() {
#define LUMA   a.u, a.step
#define CHROMA a.u, a.v, a.step
#define TABLE  a.tables[0], a.bypass
#define TABLES a.tables[0], a.tables[1], a.bypass
#define QPS    a.qp[0], a.qp[1]
    static const std::vector<Form> list = {
        KEL_FORM(keliReconstructLumaIntra_16x16MB_H264_16s8u_C1R, Whole, OneLeft, true, LUMA, a.mode, a.cbp,
                 a.qp[0], a.availability, TABLE),
        KEL_FORM(keliReconstructLumaIntra4x4MB_H264_16s8u_C1R, Blocks4, OneLeft, true, LUMA, a.modes, a.cbp,
                 a.qp[0], a.availability, TABLE),
        KEL_FORM(keliReconstructLumaIntraHalf4x4MB_H264_16s8u_C1R, Blocks4, TwoLefts, true, LUMA, a.modes,
                 a.cbp, a.qp[0], a.availability, TABLE),
        KEL_FORM(keliReconstructLumaIntra8x8MB_H264_16s8u_C1R, Blocks8, OneLeft, true, LUMA, a.modes, a.cbp,
                 a.qp[0], a.availability, TABLE),
        KEL_FORM(keliReconstructLumaIntraHalf8x8MB_H264_16s8u_C1R, Blocks8, TwoLefts, true, LUMA, a.modes,
                 a.cbp, a.qp[0], a.availability, TABLE),
        KEL_FORM(keliReconstructLumaInter4x4MB_H264_16s8u_C1R, Inter4, NoSides, true, LUMA, a.cbp, a.qp[0],
                 TABLE),
        KEL_FORM(keliReconstructLumaInter8x8MB_H264_16s8u_C1R, Inter8, NoSides, true, LUMA, a.cbp, a.qp[0],
                 TABLE),
        KEL_FORM(keliReconstructChromaInter4x4MB_H264_16s8u_P2R, ChromaInter, NoSides, true, CHROMA, a.cbp,
                 QPS, TABLES),
        KEL_FORM(keliReconstructChromaIntra4x4MB_H264_16s8u_P2R, ChromaIntra, OneLeft, true, CHROMA, a.mode,
                 a.cbp, QPS, a.availability, TABLES),
        KEL_FORM(keliReconstructChromaIntraHalfs4x4MB_H264_16s8u_P2R, ChromaIntra, TwoSets, true, CHROMA,
                 a.mode, a.cbp, QPS, a.availability, a.lowerAvailability, TABLES),
        KEL_FORM(keliReconstructLumaIntra16x16MB_H264_16s8u_C1R, Whole, Missing, false, LUMA, a.mode, a.cbp,
                 a.qp[0], a.availability),
        KEL_FORM(keliReconstructLumaIntraMB_H264_16s8u_C1R, Blocks4, Missing, false, LUMA, a.modes, a.cbp,
                 a.qp[0], a.availability),
        KEL_FORM(keliReconstructLumaInterMB_H264_16s8u_C1R, Inter4, NoSides, false, LUMA, a.cbp, a.qp[0]),
        KEL_FORM(keliReconstructLumaIntraHalfMB_H264_16s8u_C1R, Blocks4, TwoLefts, false, LUMA, a.modes,
                 a.cbp, a.qp[0], a.availability),
        KEL_FORM(keliReconstructChromaIntraHalfsMB_H264_16s8u_P2R, ChromaIntra, TwoSets, false, CHROMA,
                 a.mode, a.cbp, a.qp[0], a.availability, a.lowerAvailability),
        KEL_FORM(keliReconstructChromaIntraMB_H264_16s8u_P2R, ChromaIntra, AllThere, false, CHROMA, a.mode,
                 a.cbp, a.qp[0]),
    };
    return list;
#undef LUMA
#undef CHROMA
#undef TABLE
#undef TABLES
#undef QPS
}

// Two planes with a macroblock in the middle, the modes and coefficients, all drawn from a seed.
class Scene {
public:
    Scene(const Form &form, unsigned seed) : m_form(form), m_generator(seed) {
        args.step = draw(3) ? 48 + draw(20) : form.width();
        for (ModelPlane &plane : planes) {
            plane = {args.step, args.step * 20 + (args.step >= 48 ? 16 : 0), {}};
            plane.bytes.resize(static_cast<size_t>(args.step) * 48);
            const int kind = draw(4);
            for (Kel8u &byte : plane.bytes) byte = static_cast<Kel8u>(kind ? draw(256) : 255 * draw(2));
        }
        args.u = args.v = nullptr;
        args.coeffs = nullptr;
        args.modes = modes;
        args.cbp = draw(4) ? m_generator() : draw(2) ? 0 : ~0u;
        for (int &qp : args.qp) qp = draw(52);
        if (!form.tables) args.qp[1] = args.qp[0];
        args.bypass = form.tables && draw(4) == 0 ? 1 + draw(9) : 0;
        args.availability = draw(3) ? draw(128) : form.sides == Missing ? 0 : 127;
        args.lowerAvailability = draw(128);
        drawTables();
        drawModes();
    }

    int draw(int below) { return static_cast<int>(m_generator() % static_cast<unsigned>(below)); }
    int bits() const { return m_form.bits(args); }

    // Coefficients that a stream of these quantisers may hold, so that no sum of the model leaves 32 bits.
    std::vector<Kel16s> coefficients() {
        const int qp = std::max(args.qp[0], args.qp[1]);
        const int limit = args.bypass ? 300 : std::min(2047, 60000 >> (qp / 6)) >> (2 * draw(4)) | 1;
        std::vector<Kel16s> values(272);
        for (Kel16s &value : values) value = static_cast<Kel16s>(draw(3) ? draw(2 * limit + 1) - limit : 0);
        return values;
    }

    // The modes that each block or the macroblock is allowed.
    std::vector<int> allowedModes(int k) const {
        std::vector<int> result;
        for (int mode = 0; mode < 9; ++mode) {
            if (allows(k, mode)) result.push_back(mode);
        }
        return result;
    }
    bool allows(int k, int mode) const {
        if (m_form.hasBlockModes())
            return blockModeAllowed(neighboursOfBlock(planes[0], m_form.block(), k, bits()), m_form.block(),
                                    mode);
        const Neighbours p = neighboursBy(bits(), m_form.width(), planes[0].macroblock(), args.step);
        return m_form.isChroma() ? chromaModeAllowed(p, mode) : lumaModeAllowed(p, mode);
    }

    // What the model makes of the planes; the number of coefficients that it takes.
    int reconstruct(ModelPlane (&result)[2], const std::vector<Kel16s> &values) const {
        ModelCoeffs coeffs{values, 0};
        const ModelScaling s[2] = {{args.qp[0], args.tables[0], args.bypass != 0},
                                   {args.qp[1], args.tables[1], args.bypass != 0}};
        switch (m_form.kind) {
            case Whole:
                modelWhole(result[0], coeffs, args.mode, args.cbp, bits(), s[0]);
                break;
            case Blocks4:
            case Blocks8:
                modelIntraBlocks(result[0], coeffs, m_form.block(), modes, args.cbp, bits(), s[0]);
                break;
            case Inter4:
            case Inter8:
                modelInterBlocks(result[0], coeffs, m_form.block(), args.cbp, s[0]);
                break;
            default:
                Numbers r[2];
                modelChroma(coeffs, args.cbp, s, r);
                for (int c = 0; c < 2; ++c)
                    modelChromaPlane(result[c], r[c], m_form.kind == ChromaIntra ? args.mode : -1, bits(),
                                     m_form.kind == ChromaIntra && args.bypass);
        }
        return coeffs.used;
    }

    Args args;
    ModelPlane planes[2];
    Kel32s modes[16];

private:
    void drawTables() {
        for (int c = 0; c < 2; ++c) {
            args.tables[c] = m_form.tables && draw(2) ? m_tables[c] : nullptr;
            for (Kel16s &level : m_tables[c]) level = static_cast<Kel16s>(1 + draw(7395));
        }
    }
    int drawMode(int k) {
        if (!m_form.isIntra()) return 0;
        const std::vector<int> allowed = allowedModes(k);
        return allowed[static_cast<size_t>(draw(static_cast<int>(allowed.size())))];
    }
    void drawModes() {
        args.mode = drawMode(0);
        const int blocks = m_form.hasBlockModes() ? 256 / (m_form.block() * m_form.block()) : 0;
        for (int k = 0; k < 16; ++k) modes[k] = k < blocks ? drawMode(k) : 99;
    }

    const Form &m_form;
    std::mt19937 m_generator;
    Kel16s m_tables[2][64];
};

#endif
