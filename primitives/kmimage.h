// kmimage.h - a vector with two dimensions: rows at a fixed step, in one block or in up to four planes.

#ifndef RAKOVA_KMIMAGE_H
#define RAKOVA_KMIMAGE_H

#include "kmplaintypes.h"
#include "kmvector.h"

// Chunky: one block, the channels of a pixel side by side. Planar: a block for each channel, m_data is null.
// An image made by hand may also hold all its planes one behind the other in the one block of m_data. m_len
// is always 0. Fills leave what lies between the rows. No fill or read checks a position.
class kmImage : public kmVector {
public:
    explicit kmImage(kmType type = 8, int channels = 1, bool plane = false);
    ~kmImage() override = default;

    int objectSize() const override; // bytes of the pixels alone
    rkString objectInfo() const override;
    bool reserveCopy() override;
    bool setReservedCopy() override;
    void deleteVector() override;

    void setConst() override;
    void setConst(double re, double im) override;
    void setJaehne() override;
    void setJaehne(double magn) override; // rings around the middle; nothing in separate planes
    // The step is a - b, as an image counts no elements.
    void setSequence(double a, double b) override;
    void setSequence(double low, double high, double step, bool wrap) override; // each row from low on
    using kmVector::setRandom;
    void setRandom() override;
    void setRandom(double low, double high) override; // runs on from row to row

    rkString getString() const override; // a line for each row, an empty line between planes
    int size() const override;           // bytes of all rows with what lies between them
    // By an index from the start of m_data that counts the room between rows: not for separate planes.
    void setIndex(int i, SetMode mode, double a, double b) override;
    double getIndex(int i) const override;
    void getIndex(int i, double &re, double &im) const override;
    void *getDataConst() const override;

    // Column, row, channel.
    virtual void setImageAt(int x, int y, int c, double re, double im);
    virtual void getImageAt(int x, int y, int c, double &re, double &im) const; // im stays for a real type
    virtual double getImageAt(int x, int y, int c) const;
    virtual int numItems() const;                                                 // elements of all channels
    virtual int numActualItems() const;                                           // without alpha
    virtual void setIndex(int x, int y, int c, SetMode mode, double a, double b); // a and b in every mode
    virtual void getIndex(int x, int y, int c, double &re, double &im) const;
    virtual double getIndex(int x, int y, int c) const;

    void init(kmType type, int channels, bool plane); // deletes the block

    // Filled with the default constant. step: bytes from row to row; below 1: those of a row, rounded up to a
    // multiple of 16. align: as for a vector; alignFirstOnly: the planes behind the first stand on a
    // boundary. On failure of a plane those before it stay until the next delete.
    bool createImage(int w, int h, int step, int align, bool alignFirstOnly);
    bool createImage(KeliSize size, int step, int align, bool alignFirstOnly);
    bool createVector(KeliSize size, SetMode mode, double a, double b);
    bool createVector(int w, int h, SetMode mode, double a, double b);
    // The same: alignment and step have no effect.
    bool createVectorExt(int w, int h, int align, SetMode mode, double a, double b);
    bool createVectorExt(KeliSize size, int align, SetMode mode, double a, double b);
    bool createImageExt(int w, int h, int step, int align, SetMode mode, double a, double b);
    bool createImageExt(KeliSize size, int step, int align, SetMode mode, double a, double b);

    bool canLoadImage() { return true; }
    bool loadImage(rkString name, int align); // a bitmap file, see kmBmpFile

    // Finds the planes of an image made by hand as one block. False, without planes, unless it is planar.
    bool setPlaneArray();
    void setPlanePtrs(); // the views of m_type hold m_planes and the first plane, all others are null

    int getNumRows() const; // of all planes
    int getRowLen() const;  // elements
    void *getRowPointer(int row);
    void const *getRowPointer(int row) const;
    void *getPointerAt(int x, int y, int c);
    void const *getPointerAt(int x, int y, int c) const;

    static rkString channelString(int n, bool plane); // "C1", "P3"; four channels hold alpha: "AC4"
    static bool isPlane(kmFunc const &func);
    static int numChannels(kmFunc const &func); // 1 to 4
    static int numActualChannels(kmFunc const &func);

    int m_width = 0;  // pixels in a row
    int m_height = 0; // rows in a plane
    int m_step = 0;   // bytes from one row to the next
    kmVector m_planeVector[4];
    void *m_planes[4] = {};

    // The view of m_type points to m_planes if these are separate, the others are null.
    Kel8u **planes8u = nullptr;
    Kel16u **planes16u = nullptr;
    Kel32u **planes32u = nullptr;
    Kel64u **planes64u = nullptr;
    Kel8s **planes8s = nullptr;
    Kel16s **planes16s = nullptr;
    Kel32s **planes32s = nullptr;
    Kel64s **planes64s = nullptr;
    Kel8sc **planes8sc = nullptr;
    Kel16sc **planes16sc = nullptr;
    Kel16uc **planes16uc = nullptr; // keeps its value in deleteVector
    Kel32sc **planes32sc = nullptr;
    Kel64sc **planes64sc = nullptr;
    Kel32f **planes32f = nullptr;
    Kel64f **planes64f = nullptr;
    Kel32fc **planes32fc = nullptr;
    Kel64fc **planes64fc = nullptr;

private:
    long long rowBytes(int w) const;
    long long stepOf(int w, int step) const;
    int planeSize() const;
    bool createPlanes(int planeLen, int align, bool alignFirstOnly);
    void clearPlanes();
    bool hasPlanes() const;
    void setPlaneView(bool chosen);
    void *rowAt(int row) const;
    void *elementAt(int x, int y, int c) const;
    void setPlaneJaehne(unsigned char *data, int pixStep, double magn);
};

#endif
