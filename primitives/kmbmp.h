// kmbmp.h - reads a bitmap file into an image.

#ifndef RAKOVA_KMBMP_H
#define RAKOVA_KMBMP_H

#include <stdio.h>

#include "kmimage.h"

// The two headers as they lie in a file, 14 and 40 bytes, low byte first or all fields reversed.
struct tagBITMAPFILEHEADER {
    Kel16u bfType; // "BM"
    Kel32u bfSize;
    Kel16u bfReserved1;
    Kel16u bfReserved2;
    Kel32u bfOffBits; // where the pixels begin
};

struct tagBITMAPINFOHEADER {
    Kel32u biSize;
    Kel32s biWidth;
    Kel32s biHeight;
    Kel16u biPlanes;
    Kel16u biBitCount; // of a pixel: 1, 4, 8, 16, 24 or 32
    Kel32u biCompression;
    Kel32u biSizeImage;
    Kel32s biXPelsPerMeter;
    Kel32s biYPelsPerMeter;
    Kel32u biClrUsed; // entries of the palette, 0: as many as the bits can count
    Kel32u biClrImportant;
};

struct kmBmpColor {
    Kel8u blue, green, red, reserved;
};

// Knows no compression. Pixels of up to 8 bits are indexes of the palette: they become one channel of a gray
// palette, three of another. Pixels of more bits are copied in one piece, so that their rows come to lie
// right only if they are a multiple of 16 bytes long. Rows keep the order of the file.
class kmBmpFile {
public:
    explicit kmBmpFile(kmImage *image); // not owned
    virtual ~kmBmpFile() = default;

    // False on failure, with a message unless data are missing; the image may then exist all the same.
    bool load(rkString name, int align);
    bool readInfoHeader(rkString name); // both headers alone

    bool error(rkString text);        // false
    bool ValidFileHeader(bool &swap); // swap: the fields are reversed
    bool CreateImage(int align);      // checks both headers first
    bool ValidCompression();
    bool SetImageWidth(int &width);
    bool SetImageHeight(int &height);
    bool SetImageType(kmType &type);
    bool SetImagePlane(bool &plane);
    bool SetImageChannels(int &channels);

    int GetPaletteNum();  // entries, 0 without a palette
    bool IsGrayPalette(); // also without entries
    int GetDataStep();    // bytes of a row of the file; what no int holds is cut
    int GetDataSize();
    bool IsCompressed(); // the pixels are indexes of the palette

    // Unpack the GetDataSize() bytes of the file's pixels.
    bool SetImageData(unsigned char *data); // false if they are no indexes
    bool SetImageData_8(unsigned char *data);
    bool SetImageData_4(unsigned char *data);
    bool SetImageData_1(unsigned char *data);
    // An index behind the palette is that of its last entry.
    void SetPixel(unsigned char index, unsigned char *row, int x);

    kmImage *m_image;
    rkString m_name;
    tagBITMAPFILEHEADER m_fileHeader = {};
    tagBITMAPINFOHEADER m_infoHeader = {};
    kmBmpColor m_palette[256] = {};

private:
    struct ImageForm {
        int width = 0, height = 0, channels = 0;
        kmType type = 0;
        bool plane = false;
    };
    bool checkHeaders(ImageForm &form);
    bool readHeaders(FILE *file, bool &whole);
    bool readPalette(FILE *file);
    bool readData(FILE *file);
};

#endif
