// kmbmppixels.cpp - expands the pixels of a bitmap file through its palette.

#include "kmbmp.h"

namespace {

// A palette and the number of channels that its colors take in the image.
class Painter {
public:
    Painter(kmBmpColor const *palette, int entries, int channels)
        : m_palette(palette), m_last(entries > 0 ? entries - 1 : 0), m_gray(channels == 1) {}

    void paint(int index, unsigned char *row, int x) const {
        kmBmpColor const &color = m_palette[index < m_last ? index : m_last];
        if (m_gray) {
            row[x] = color.blue;
            return;
        }
        unsigned char *pixel = row + 3LL * x;
        pixel[0] = color.blue;
        pixel[1] = color.green;
        pixel[2] = color.red;
    }

private:
    kmBmpColor const *m_palette;
    int m_last;
    bool m_gray;
};

void unpackRow8(Painter const &painter, unsigned char const *data, unsigned char *row, int width) {
    for (int x = 0; x < width; ++x) painter.paint(data[x], row, x);
}

// The high half of a byte comes first.
void unpackRow4(Painter const &painter, unsigned char const *data, unsigned char *row, int width) {
    for (int x = 0; x < width; ++x) {
        painter.paint(x % 2 == 0 ? data[x / 2] >> 4 : data[x / 2] & 15, row, x);
    }
}

// The bits of a whole byte go from the highest down, those of a last part of one from the lowest up.
void unpackRow1(Painter const &painter, unsigned char const *data, unsigned char *row, int width) {
    int whole = width / 8 * 8;
    for (int x = 0; x < whole; ++x) painter.paint((data[x / 8] << x % 8) & 128, row, x);
    for (int x = whole; x < width; ++x) painter.paint((data[x / 8] >> x % 8) & 1, row, x);
}

using UnpackRow = void (*)(Painter const &, unsigned char const *, unsigned char *, int);

bool unpack(kmBmpFile &file, unsigned char const *data, UnpackRow unpackRow) {
    kmImage &image = *file.m_image;
    Painter painter(file.m_palette, file.GetPaletteNum(), kmImage::numChannels(image.m_func));
    for (int y = 0; y < image.m_height; ++y, data += file.GetDataStep()) {
        unpackRow(painter, data, static_cast<unsigned char *>(image.getRowPointer(y)), image.m_width);
    }
    return true;
}

} // namespace

void kmBmpFile::SetPixel(unsigned char index, unsigned char *row, int x) {
    Painter(m_palette, GetPaletteNum(), kmImage::numChannels(m_image->m_func)).paint(index, row, x);
}

bool kmBmpFile::SetImageData(unsigned char *data) {
    switch (m_infoHeader.biBitCount) {
        case 8:
            return SetImageData_8(data);
        case 4:
            return SetImageData_4(data);
        case 1:
            return SetImageData_1(data);
        default:
            return false;
    }
}

bool kmBmpFile::SetImageData_8(unsigned char *data) {
    return unpack(*this, data, unpackRow8);
}

bool kmBmpFile::SetImageData_4(unsigned char *data) {
    return unpack(*this, data, unpackRow4);
}

bool kmBmpFile::SetImageData_1(unsigned char *data) {
    return unpack(*this, data, unpackRow1);
}
