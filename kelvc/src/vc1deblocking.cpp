// vc1deblocking.cpp - in-loop deblocking filters of VC-1.

#include "vc1test.h"

// ---- parameters ---------------------------------------------------------------

static rkMapIterator<int> deblocking_conditions; // the mode, an index of deblockingModes
static rkMapIterator<int> step;                  // bytes

// ---- data ---------------------------------------------------------------------

static kmVector pSrcDst(8); // the samples around the edge that a call filters
static Kel8u *pBlock;       // the first one behind the edge
static int quant, EdgeDisableFlag;

namespace {

// The edge of a call is that of two blocks side by side: the first edge and the second one. The filter goes
// along it by four lines, of which it takes the third one first. Then all four may change, or that one alone,
// or none, as it belongs to the picture.
enum EdgePath { Full, FirstPixel, None };

struct DeblockingMode {
    char const *label;
    EdgePath first, second;
};

const DeblockingMode deblockingModes[] = {
    {"mode1_(full_deblocking)", Full, Full},
    {"mode2_(only_first_pixels_deblocking)", FirstPixel, FirstPixel},
    {"mode3_(first_edge:_full-second_edge:_first_pixel)", Full, FirstPixel},
    {"mode4_(first_edge:_full-second_edge:_none)", Full, None},
    {"mode5_(second_edge:_full-first_edge:_first_pixel)", FirstPixel, Full},
    {"mode6_(second_edge:_full-first_edge:_none)", None, Full}};

} // namespace

// ---- class --------------------------------------------------------------------

class rk_VC1Deblocking : public VC1Test {
public:
    using VC1Test::VC1Test;

    bool canStart() override;
    bool initData() override;
    void flushData() override { pSrcDst.deleteVector(); }

private:
    void writeEdges(DeblockingMode const &mode);
    void writeLine(int line, int height);

    bool m_verticalEdge = false;
    int m_lines = 0;   // along the edge
    int m_colours = 0; // interleaved
};

bool rk_VC1Deblocking::canStart() {
    m_verticalEdge = m_func.find("VerEdge") >= 0;
    m_lines = m_func.find("Luma") >= 0 ? 16 : 8;
    m_colours = m_func.find("C2IR") >= 0 ? 2 : 1;
    m_parms.push_back(&deblocking_conditions);
    deblocking_conditions.init("deblocking_conditions");
    for (int mode = 0; mode < 6; ++mode) {
        deblocking_conditions[mode] = deblockingModes[mode].label;
        deblocking_conditions.add(mode);
    }
    addParameter(step, "step", {16, 18});
    makeAutoStatistic(1024);
    return true;
}

bool rk_VC1Deblocking::initData() {
    const int rows = m_verticalEdge ? m_lines : 8, rowBytes = step.value();
    if (!makeDefault(pSrcDst, rows * rowBytes)) return false;
    quant = 8;
    EdgeDisableFlag = 0;
    pBlock = pSrcDst.p8u + (m_verticalEdge ? 4 * m_colours : 4 * rowBytes);
    writeEdges(deblockingModes[deblocking_conditions.value()]);
    return true;
}

// The filter works in place, and all calls but the first one see its results. A step of 5/4 quant is lowered
// once, to one that the filter looks at in the same way and leaves as it is, so that each call takes the path
// of the mode. One of 3 quant is too high for a block's edge.
void rk_VC1Deblocking::writeEdges(DeblockingMode const &mode) {
    const int blockStep = quant + quant / 4, pictureStep = 3 * quant;
    for (int line = 0; line < m_lines; ++line) {
        const EdgePath path = line < m_lines / 2 ? mode.first : mode.second;
        const bool filtered = path == Full || (path == FirstPixel && line % 4 == 2);
        writeLine(line, filtered ? blockStep : pictureStep);
    }
}

// Flat on both sides of the edge.
void rk_VC1Deblocking::writeLine(int line, int height) {
    const int across = m_verticalEdge ? m_colours : step.value();
    const int along = m_verticalEdge ? step.value() : m_colours;
    for (int colour = 0; colour < m_colours; ++colour) {
        for (int i = -4; i < 4; ++i)
            pBlock[line * along + i * across + colour] = static_cast<Kel8u>(i < 0 ? 100 : 100 + height);
    }
}

// ---- registration -------------------------------------------------------------

#define EDGE         pBlock, quant, step.value(), EdgeDisableFlag
#define BOTH_COLOURS EDGE, EdgeDisableFlag

// clang-format off
KM_REG(rk_VC1Deblocking, keliFilterDeblockingLuma_VerEdge_VC1_8u_C1IR,   EDGE);
KM_REG(rk_VC1Deblocking, keliFilterDeblockingLuma_HorEdge_VC1_8u_C1IR,   EDGE);
KM_REG(rk_VC1Deblocking, keliFilterDeblockingChroma_VerEdge_VC1_8u_C1IR, EDGE);
KM_REG(rk_VC1Deblocking, keliFilterDeblockingChroma_HorEdge_VC1_8u_C1IR, EDGE);
KM_REG(rk_VC1Deblocking, keliFilterDeblockingChroma_VerEdge_VC1_8u_C2IR, BOTH_COLOURS);
KM_REG(rk_VC1Deblocking, keliFilterDeblockingChroma_HorEdge_VC1_8u_C2IR, BOTH_COLOURS);
// clang-format on
