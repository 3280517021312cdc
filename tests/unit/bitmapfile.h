// bitmapfile.h - bitmap files as a writer sees them, and the image that they are loaded into.

#ifndef RAKOVA_TESTS_BITMAPFILE_H
#define RAKOVA_TESTS_BITMAPFILE_H

#include <gtest/gtest.h>

#include <initializer_list>
#include <string>
#include <vector>

#include "capture.h"
#include "km.h"
#include "tempdir.h"

struct Color {
    int blue, green, red;
};

const Color black = {0, 0, 0}, white = {255, 255, 255}, red = {0, 0, 255}, mixed = {1, 2, 3};

// A bitmap file as a writer sees it. The pixels stand directly behind the palette, but for a gap.
struct Bitmap {
    unsigned type = 0x4D42; // "BM"
    int width = 1, height = 1;
    unsigned planes = 1, bits = 8, compression = 0, used = 0;
    std::vector<Color> palette;
    std::string pixels;
    int gap = 0;
    bool reversed = false;

    std::string bytes() const {
        std::string file;
        put(file, type, 2);
        put(file, 0x11111111, 4); // what no reader looks at is spoiled
        put(file, 0x2222, 2);
        put(file, 0x3333, 2);
        put(file, static_cast<unsigned>(54 + 4 * palette.size()) + gap, 4);
        put(file, 0x44444444, 4);
        put(file, static_cast<unsigned>(width), 4);
        put(file, static_cast<unsigned>(height), 4);
        put(file, planes, 2);
        put(file, bits, 2);
        put(file, compression, 4);
        for (unsigned spoiled : {0x55555555u, 0x66666666u, 0x77777777u}) put(file, spoiled, 4);
        put(file, used, 4);
        put(file, 0x88888888u, 4);
        for (Color const &c : palette) {
            for (int v : {c.blue, c.green, c.red, 0xEE}) file += static_cast<char>(v);
        }
        return file + std::string(static_cast<size_t>(gap), '\xDD') + pixels;
    }

private:
    void put(std::string &file, unsigned value, int n) const {
        for (int i = 0; i < n; ++i) {
            file += static_cast<char>(value >> 8 * (reversed ? n - 1 - i : i));
        }
    }
};

inline std::vector<Color> grayRamp(int n) {
    std::vector<Color> palette;
    for (int i = 0; i < n; ++i) palette.push_back({i, i, i});
    return palette;
}

// Blue encodes the index, so that every entry is known by its first byte.
inline std::vector<Color> colorRamp(int n) {
    std::vector<Color> palette;
    for (int i = 0; i < n; ++i) palette.push_back({i, 100, 200});
    return palette;
}

inline std::string raw(std::initializer_list<int> bytes) {
    std::string text;
    for (int b : bytes) text += static_cast<char>(b);
    return text;
}

class KmBmpFile : public testing::Test {
protected:
    bool load(Bitmap const &bitmap) { return load(bitmap.bytes()); }
    bool load(std::string const &bytes) {
        m_name = str(m_dir.write("picture.bmp", bytes));
        return m_image.loadImage(m_name.c_str(), -1);
    }
    std::string said() { return m_log.text(); }
    std::string message(std::string const &text) {
        return "--- Can't load file " + m_name + ": " + text + "\n";
    }
    // The bytes of a row's elements.
    std::vector<int> row(int y) {
        auto *data = static_cast<unsigned char *>(m_image.getRowPointer(y));
        return std::vector<int>(data, data + m_image.getRowLen());
    }
    void expectImage(char const *info) { EXPECT_EQ(str(m_image.objectInfo()), info); }

    TempDir m_dir;
    CaptureLog m_log{MsgError};
    kmImage m_image{544, 2, true};
    kmBmpFile m_file{&m_image};
    std::string m_name;
};

#endif
