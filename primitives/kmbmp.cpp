// kmbmp.cpp - the headers, the palette and the data of a bitmap file.

#include "kmbmp.h"

#include <limits.h>
#include <stdlib.h>
#include <string.h>

#include "rkstream.h"

// ---- headers as bytes --------------------------------------------------------

namespace {

const int fileHeaderSize = 14, infoHeaderSize = 40;

// Takes the fields of a header one by one.
class Fields {
public:
    explicit Fields(unsigned char const *bytes) : m_bytes(bytes) {}
    void take(Kel16u &field) { field = static_cast<Kel16u>(next(2)); }
    void take(Kel32u &field) { field = next(4); }
    void take(Kel32s &field) { field = static_cast<Kel32s>(next(4)); }

private:
    Kel32u next(int n) {
        Kel32u value = 0;
        for (int i = 0; i < n; ++i) value |= static_cast<Kel32u>(*m_bytes++) << (8 * i);
        return value;
    }
    unsigned char const *m_bytes;
};

// Reverses the bytes of each field.
class Reversal {
public:
    void take(Kel16u &field) { field = __builtin_bswap16(field); }
    void take(Kel32u &field) { field = __builtin_bswap32(field); }
    void take(Kel32s &field) { field = static_cast<Kel32s>(__builtin_bswap32(field)); }
};

template <class Taker>
void takeFileHeader(Taker taker, tagBITMAPFILEHEADER &header) {
    taker.take(header.bfType);
    taker.take(header.bfSize);
    taker.take(header.bfReserved1);
    taker.take(header.bfReserved2);
    taker.take(header.bfOffBits);
}

template <class Taker>
void takeInfoHeader(Taker taker, tagBITMAPINFOHEADER &header) {
    taker.take(header.biSize);
    taker.take(header.biWidth);
    taker.take(header.biHeight);
    taker.take(header.biPlanes);
    taker.take(header.biBitCount);
    taker.take(header.biCompression);
    taker.take(header.biSizeImage);
    taker.take(header.biXPelsPerMeter);
    taker.take(header.biYPelsPerMeter);
    taker.take(header.biClrUsed);
    taker.take(header.biClrImportant);
}

void reverseFileHeader(tagBITMAPFILEHEADER &header) {
    takeFileHeader(Reversal(), header);
}

void reverseInfoHeader(tagBITMAPINFOHEADER &header) {
    takeInfoHeader(Reversal(), header);
}

bool readBytes(FILE *file, void *bytes, int n) {
    return fread(bytes, 1, static_cast<size_t>(n), file) == static_cast<size_t>(n);
}

int cutToInt(double value) {
    if (value >= INT_MAX) return INT_MAX;
    return value <= INT_MIN ? INT_MIN : static_cast<int>(value);
}

} // namespace

// ---- reading -----------------------------------------------------------------

kmBmpFile::kmBmpFile(kmImage *image) : m_image(image) {}

bool kmBmpFile::error(rkString text) {
    g_ostrm << MsgError << "--- Can't load file " << m_name << ": " << text << "\n" << EndMessage;
    return false;
}

bool kmBmpFile::load(rkString name, int align) {
    m_name = name;
    i_stream stream(name, io_stream::Read | io_stream::Binary, false);
    if (!stream.m_file) return error("Open error");
    bool whole = false;
    if (!readHeaders(stream.m_file, whole)) return false;
    if (!readPalette(stream.m_file)) whole = false;
    if (!whole) { // no image for data that are not there, but what is wrong is said
        ImageForm unused;
        checkHeaders(unused);
        return false;
    }
    if (!CreateImage(align)) return false;
    if (fseek(stream.m_file, static_cast<long>(m_fileHeader.bfOffBits), SEEK_SET) != 0) return false;
    return readData(stream.m_file);
}

bool kmBmpFile::readInfoHeader(rkString name) {
    m_name = name;
    i_stream stream(name, io_stream::Read | io_stream::Binary, false);
    if (!stream.m_file) return error("Open error");
    bool whole = false;
    return readHeaders(stream.m_file, whole) && whole;
}

// What the file does not hold is 0, and whole tells of it: the checks come first.
bool kmBmpFile::readHeaders(FILE *file, bool &whole) {
    unsigned char fileBytes[fileHeaderSize] = {}, infoBytes[infoHeaderSize] = {};
    bool swap = false;
    whole = readBytes(file, fileBytes, fileHeaderSize);
    takeFileHeader(Fields(fileBytes), m_fileHeader);
    if (!ValidFileHeader(swap)) return false;
    if (swap) reverseFileHeader(m_fileHeader);
    if (!readBytes(file, infoBytes, infoHeaderSize)) whole = false;
    takeInfoHeader(Fields(infoBytes), m_infoHeader);
    if (swap) reverseInfoHeader(m_infoHeader);
    return true;
}

bool kmBmpFile::readPalette(FILE *file) {
    memset(m_palette, 0, sizeof m_palette);
    return readBytes(file, m_palette, GetPaletteNum() * static_cast<int>(sizeof m_palette[0]));
}

// Pixels that are no indexes go into the image as they lie, however many there are.
bool kmBmpFile::readData(FILE *file) {
    if (!IsCompressed()) {
        readBytes(file, m_image->m_data, m_image->size());
        return true;
    }
    unsigned char *data = static_cast<unsigned char *>(malloc(static_cast<size_t>(GetDataSize())));
    if (!data) {
        kmVector::memError(GetDataSize());
        return false;
    }
    bool good = readBytes(file, data, GetDataSize()) && SetImageData(data);
    free(data);
    return good;
}

// ---- checks ------------------------------------------------------------------

bool kmBmpFile::ValidFileHeader(bool &swap) {
    if (m_fileHeader.bfType != 19778 && m_fileHeader.bfType != 16973) {
        return error("Bitmap files are valid only");
    }
    swap = m_fileHeader.bfType == 16973;
    return true;
}

bool kmBmpFile::ValidCompression() {
    return m_infoHeader.biCompression == 0 || error("Compression is not valid");
}

bool kmBmpFile::SetImageWidth(int &width) {
    if (m_infoHeader.biWidth <= 0) return error("Bitmap header is corrupted: biWidth is invalid");
    width = m_infoHeader.biWidth;
    return true;
}

bool kmBmpFile::SetImageHeight(int &height) {
    if (m_infoHeader.biHeight <= 0) return error("Bitmap header is corrupted: biHeight is invalid");
    height = m_infoHeader.biHeight;
    return true;
}

bool kmBmpFile::SetImageType(kmType &type) {
    static const int bitCounts[] = {1, 4, 8, 16, 24, 32};
    for (int bits : bitCounts) {
        if (m_infoHeader.biCompression == 0 && m_infoHeader.biBitCount == bits) {
            type = 8;
            return true;
        }
    }
    return error("Bitmap header is corrupted: biBitCount is invalid");
}

bool kmBmpFile::SetImagePlane(bool &plane) {
    if (m_infoHeader.biCompression != 0 || m_infoHeader.biPlanes != 1) {
        return error("Bitmap header is corrupted: biPlanes is invalid");
    }
    plane = false;
    return true;
}

bool kmBmpFile::SetImageChannels(int &channels) {
    switch (m_infoHeader.biBitCount) {
        case 1:
        case 4:
        case 8:
            channels = IsGrayPalette() ? 1 : 3;
            return true;
        case 16:
        case 24:
        case 32:
            channels = m_infoHeader.biBitCount / 8;
            return true;
        default:
            return error("Bitmap header is corrupted: biBitCount is invalid");
    }
}

bool kmBmpFile::checkHeaders(ImageForm &form) {
    return ValidCompression() && SetImageWidth(form.width) && SetImageHeight(form.height) &&
           SetImageType(form.type) && SetImagePlane(form.plane) && SetImageChannels(form.channels);
}

bool kmBmpFile::CreateImage(int align) {
    ImageForm form;
    if (!checkHeaders(form)) return false;
    m_image->init(form.type, form.channels, form.plane);
    return m_image->createImage(form.width, form.height, -1, align, false);
}

// ---- what the headers tell ---------------------------------------------------

int kmBmpFile::GetPaletteNum() {
    if (m_infoHeader.biCompression != 0 || m_infoHeader.biBitCount > 8) return 0;
    Kel32u n = 1u << m_infoHeader.biBitCount, used = m_infoHeader.biClrUsed;
    return static_cast<int>(used != 0 && used < n ? used : n);
}

bool kmBmpFile::IsGrayPalette() {
    for (int i = 0; i < GetPaletteNum(); ++i) {
        kmBmpColor const &color = m_palette[i];
        if (color.blue != color.green || color.green != color.red) return false;
    }
    return true;
}

int kmBmpFile::GetDataStep() {
    long long bits = static_cast<long long>(m_infoHeader.biBitCount) * m_infoHeader.biWidth;
    long long wholeWords = (bits + 31) / 32 * 4;
    return cutToInt(static_cast<double>(wholeWords));
}

int kmBmpFile::GetDataSize() {
    return cutToInt(static_cast<double>(GetDataStep()) * m_infoHeader.biHeight * m_infoHeader.biPlanes);
}

bool kmBmpFile::IsCompressed() {
    return m_infoHeader.biCompression == 0 && m_infoHeader.biBitCount < 9;
}
