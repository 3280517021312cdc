// dvpictures.cpp - white noise, and a landscape out of formulas.

#include "dvpictures.h"

#include <algorithm>
#include <cmath>
#include <random>

namespace dv {

Picture whiteNoise() {
    const int strength = 40;
    std::mt19937 generator(314);
    Picture picture;
    for (Block &block : picture) {
        for (int &sample : block)
            sample = 128 - strength + static_cast<int>(generator() % (2 * strength + 1));
    }
    return picture;
}

// ---- the landscape -------------------------------------------------------------------------

namespace {

// Luma, CR or CB.
enum Plane { Luma, Red, Blue };

// A number of its own for each point, 0 to 1.
double grain(int x, int y) {
    unsigned int n = static_cast<unsigned int>(x) * 374761393u + static_cast<unsigned int>(y) * 668265263u;
    n = (n ^ n >> 13) * 1274126177u;
    return (n >> 8 & 65535) / 65535.0;
}

double mix(double a, double b, double t) {
    return a + (b - a) * t * t * (3 - 2 * t);
}

// Smooth between points `scale` apart.
double softGrain(double x, double y, double scale) {
    const double left = std::floor(x / scale), top = std::floor(y / scale);
    const double u = x / scale - left, v = y / scale - top;
    const int i = static_cast<int>(left), j = static_cast<int>(top);
    return mix(mix(grain(i, j), grain(i + 1, j), u), mix(grain(i, j + 1), grain(i + 1, j + 1), u), v);
}

double ridge(double x) {
    return 200 + 40 * std::sin(x / 90) + 8 * softGrain(x, 0, 12);
}

// The trunk moves by 6 samples from field to field.
bool isTrunk(double x, int y) {
    const double left = 470 + 6 * (y % 2);
    return y > 150 && x >= left && x < left + 24;
}

double colourOf(Plane plane, double luma, double red, double blue) {
    return plane == Luma ? luma : plane == Red ? red : blue;
}

double leaves(Plane plane, double x, int y) {
    const double light = softGrain(x, y, 3) + 0.6 * softGrain(x, y, 7);
    return colourOf(plane, 20 + 60 * light + 60 * grain(static_cast<int>(x), y), 112, 108 + 4 * light);
}

double landscape(Plane plane, double x, int y) {
    if (isTrunk(x, y)) return colourOf(plane, 50 + 30 * softGrain(x, y, 4), 140, 116);
    if (y < ridge(x)) return colourOf(plane, 190 - y / 4.0 + 20 * softGrain(x, y, 40), 116, 152 - y / 16.0);
    if (y < 400) return leaves(plane, x, y);
    return colourOf(plane, 110 + 40 * softGrain(x, y, 2.5), 136, 118);
}

int sampleAt(Plane plane, double x, int y) {
    return static_cast<int>(std::lround(std::clamp(landscape(plane, x, y), 16.0, 240.0)));
}

Block lumaBlock(int left, int top) {
    Block block;
    for (int i = 0; i < 64; ++i) block[i] = sampleAt(Luma, left + i % 8, top + i / 8);
    return block;
}

// A line of colour for two of luma, of the same field.
Block colourBlock(Plane plane, int left, int top) {
    Block block;
    for (int i = 0; i < 64; ++i) {
        const int line = i / 8, y = top + line / 2 * 4 + line % 2;
        block[i] = sampleAt(plane, left + i % 8 * 2 + 0.5, y);
    }
    return block;
}

void addMacroblock(Picture &picture, int macroblock, int left, int top) {
    Block *first = &picture[macroblock * blocksOfMacroblock];
    for (int i = 0; i < 4; ++i) first[i] = lumaBlock(left + i % 2 * 8, top + i / 2 * 8);
    first[4] = colourBlock(Red, left, top);
    first[5] = colourBlock(Blue, left, top);
}

} // namespace

Picture nature() {
    const int places[macroblocks][2] = {{96, 48}, {208, 224}, {320, 304}, {464, 352}, {640, 480}};
    Picture picture;
    for (int m = 0; m < macroblocks; ++m) addMacroblock(picture, m, places[m][0], places[m][1]);
    return picture;
}

} // namespace dv
