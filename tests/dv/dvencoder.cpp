// dvencoder.cpp - a coder of DV: transform, quantisation, arrangement of the codes.

#include "dvencoder.h"

#include <algorithm>
#include <cstdlib>

namespace dv {

// ---- transform ---------------------------------------------------------------------------

// Orthonormal weight of sample n in coefficient k of N points.
static double basis(int k, int n, int N) {
    return std::sqrt((k == 0 ? 1.0 : 2.0) / N) * std::cos(M_PI * k * (2 * n + 1) / (2 * N));
}

// Weight of a line in a row of coefficients.
static double vertical(int row, int line, int mode) {
    if (mode == 0) return basis(row, line, 8);
    const double sign = row >= 4 && line % 2 == 1 ? -1 : 1;
    return sign * std::sqrt(0.5) * basis(row % 4, line / 2, 4);
}

Coefficients weighted(Block const &samples, int mode) {
    Coefficients result = {};
    for (int i = 0; i < 64; ++i) {
        double sum = 0;
        for (int s = 0; s < 64; ++s)
            sum += (samples[s] - 128) * vertical(i / 8, s / 8, mode) * basis(i % 8, s % 8, 8);
        result[i] = sum * weightOf(i, mode);
    }
    return result;
}

int modeOf(Block const &samples) {
    int frame = 0, field = 0;
    for (int i = 0; i < 48; ++i) {
        frame += std::abs(samples[i] - samples[i + 8]);
        field += std::abs(samples[i] - samples[i + 16]);
    }
    return frame > field + 256 ? 1 : 0;
}

int classOf(Coefficients const &coefficients, int blockOfMacroblock) {
    double largest = 0;
    for (int i = 1; i < 64; ++i) largest = std::max(largest, std::abs(coefficients[i]));
    const int byActivity = largest < 12 ? 0 : largest < 24 ? 1 : largest < 36 ? 2 : 3;
    return std::min(3, byActivity + std::max(0, blockOfMacroblock - 3));
}

Block quantised(Coefficients const &coefficients, int mode, int classNumber, int quantiser) {
    Block levels = {};
    for (int place = 0; place < 64; ++place) {
        const int index = scans[mode][place], limit = 255;
        const double level = coefficients[index] / stepOf(place, classNumber, quantiser);
        levels[index] = std::clamp(static_cast<int>(std::lround(level)), -limit, limit);
    }
    return levels;
}

// ---- codes ---------------------------------------------------------------------------------

Bits CodedBlock::head() const {
    return bitsOf(levels[0], 9) + bitsOf(mode, 1) + bitsOf(classNumber, 2);
}

Bits CodedBlock::acCodes() const {
    Bits bits;
    int run = 0;
    for (int place = 1; place < 64; ++place) {
        const int level = levels[scans[mode][place]];
        if (level == 0) {
            ++run;
            continue;
        }
        bits += event(run, level);
        run = 0;
    }
    return bits + endOfBlock();
}

// ---- arrangement -----------------------------------------------------------------------------

namespace {

using Areas = std::array<Bits, blocks>;

size_t roomOf(int i) {
    return static_cast<size_t>(8 * areaBytes(i % blocksOfMacroblock));
}

// Moves bits into the room of areas first to last - 1; how many.
int place(Bits &bits, Areas &areas, int first, int last) {
    int count = 0;
    for (int i = first; i < last; ++i) {
        const size_t n = std::min(roomOf(i) - areas[i].size(), bits.size());
        areas[i] += bits.substr(0, n);
        bits.erase(0, n);
        count += static_cast<int>(n);
    }
    return count;
}

std::vector<unsigned char> bytesOf(Bits const &bits) {
    std::vector<unsigned char> bytes;
    for (size_t i = 0; i < bits.size(); i += 8)
        bytes.push_back(static_cast<unsigned char>(std::stoi(bits.substr(i, 8), nullptr, 2)));
    return bytes;
}

// ID of the m-th DIF block of a sequence's video, no error, the quantisation number.
Bits difHead(int m, int quantiser) {
    return bitsOf(0x9f07, 16) + bitsOf(m, 8) + bitsOf(0, 4) + bitsOf(quantiser, 4);
}

std::vector<unsigned char> withHeads(Areas &areas, CodedBlocks const &coded) {
    Bits all;
    for (int i = 0; i < blocks; ++i) {
        if (i % blocksOfMacroblock == 0) all += difHead(i / blocksOfMacroblock, coded[i].quantiser);
        areas[i].resize(roomOf(i), '0');
        all += areas[i];
    }
    return bytesOf(all);
}

} // namespace

Segment arrange(CodedBlocks const &coded) {
    Segment segment;
    Areas areas;
    Bits ofSegment;
    std::array<Bits, macroblocks> ofMacroblock;
    for (int i = 0; i < blocks; ++i) {
        Bits bits = coded[i].acCodes();
        areas[i] = coded[i].head();
        segment.placedBits[0] += place(bits, areas, i, i + 1);
        ofMacroblock[i / blocksOfMacroblock] += bits;
    }
    for (int m = 0; m < macroblocks; ++m) {
        const int first = m * blocksOfMacroblock;
        segment.placedBits[1] += place(ofMacroblock[m], areas, first, first + blocksOfMacroblock);
        ofSegment += ofMacroblock[m];
    }
    segment.placedBits[2] = place(ofSegment, areas, 0, blocks);
    if (ofSegment.empty()) segment.bytes = withHeads(areas, coded);
    return segment;
}

// ---- choices -----------------------------------------------------------------------------------

namespace {

// A picture on its way to its codes.
struct Work {
    std::array<Coefficients, blocks> coefficients;
    CodedBlocks coded;

    void quantise(int macroblock, int quantiser) {
        const int first = macroblock * blocksOfMacroblock;
        for (int i = first; i < first + blocksOfMacroblock; ++i) {
            CodedBlock &block = coded[i];
            block.quantiser = quantiser;
            block.levels = quantised(coefficients[i], block.mode, block.classNumber, quantiser);
        }
    }

    bool fits() const {
        size_t room = 0, bits = 0;
        for (int i = 0; i < blocks; ++i) {
            room += roomOf(i);
            bits += coded[i].head().size() + coded[i].acCodes().size();
        }
        return bits <= room;
    }
};

// `coarser` is added to the class numbers.
Work analysed(Picture const &picture, int coarser) {
    Work work;
    for (int i = 0; i < blocks; ++i) {
        CodedBlock &block = work.coded[i];
        block.mode = modeOf(picture[i]);
        work.coefficients[i] = weighted(picture[i], block.mode);
        block.classNumber = std::min(3, classOf(work.coefficients[i], i % blocksOfMacroblock) + coarser);
    }
    return work;
}

// The finest quantiser of all macroblocks with which the codes fit; the coarsest one if they never do.
int quantiseToFit(Work &work) {
    int quantiser = 16;
    do {
        --quantiser;
        for (int m = 0; m < macroblocks; ++m) work.quantise(m, quantiser);
    } while (quantiser > 0 && !work.fits());
    return quantiser;
}

} // namespace

CodedBlocks encode(Picture const &picture) {
    Work work;
    int quantiser = 0;
    for (int coarser = 0; coarser < 4; ++coarser) {
        work = analysed(picture, coarser);
        quantiser = quantiseToFit(work);
        if (work.fits()) break;
    }
    for (int m = 0; m < macroblocks && quantiser < 15; ++m) {
        Work finer = work;
        finer.quantise(m, quantiser + 1);
        if (finer.fits()) work = finer;
    }
    return work.coded;
}

} // namespace dv
