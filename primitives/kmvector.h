// kmvector.h - a typed, tracked buffer of test data that fills, keeps and prints itself.

#ifndef RAKOVA_KMVECTOR_H
#define RAKOVA_KMVECTOR_H

#include "rkobject.h"

#include "kmfunc.h"

// Usually a file static of a test, with a block between initData and flushData only. Data are reproducible:
// one seed, fixed generators, conversion to the element type by truncation and never by saturation. An index
// outside of the block writes nothing and reads 0.
class kmVector : public rkObject {
public:
    kmVector();
    explicit kmVector(kmType type);
    kmVector(kmFunc const &func, int arg); // the type of that token of the name, see kmFunc::type
    kmVector(kmFunc const &func, kmArg arg);
    kmVector(kmVector const &) = delete;
    kmVector &operator=(kmVector const &) = delete;

    int objectSize() const override;
    rkString objectInfo() const override;
    bool reserveCopy() override; // the copy is no tracked block: it must not move the blocks that follow
    bool setReservedCopy() override;
    void deleteReservedCopy() override;
    virtual ~kmVector();
    virtual void deleteVector();

    // Fills of the whole vector; nothing happens without a block.
    virtual void setConst(); // 1.00001 in a floating type, 2 in others
    virtual void setConst(double re, double im);
    virtual void setMinValue(); // both parts of a complex element
    virtual void setMaxValue();
    virtual void setJaehne(); // a chirp over the element type's range, magnitude 1 for a floating type
    virtual void setJaehne(double magn);
    virtual void setSequence(double a, double b); // the last element is b, but for rounding
    virtual void setSequence(double low, double high, double step, bool wrap);
    virtual void setRandom(); // over the type's range, -1 to 1 for a floating type
    virtual void setRandom(double low, double high);
    virtual void setRandom(double low, double high, unsigned int seed);

    virtual rkString getString() const;
    virtual int size() const; // bytes
    virtual void *getReservedData();
    virtual void setVector(SetMode mode, double a, double b);
    // One element; SetDefault makes it 0, SetMax, SetMin, SetRandom and SetSequence leave the imaginary part
    // 0.
    virtual void setIndex(int i, SetMode mode, double a, double b);
    virtual double getIndex(int i) const;
    virtual void getIndex(int i, double &re, double &im) const; // im stays for a real type
    virtual void *getDataConst() const;

    void init(kmType type); // deletes the block
    void init(kmFunc const &func, int arg);
    void init(kmFunc const &func, kmArg arg);

    // A zeroed block, the old one is deleted. align: bytes from a 64-byte boundary; below 0: as the session
    // has it. owner: of the tracked block, null: this vector. False on failure.
    bool allocateVector(int bytes, int align, void *owner);
    // len elements, filled with the default constant.
    bool createVector(int len, int align);
    bool createVector(int len, int align, void *owner);
    bool createVector(int len, SetMode mode, double a, double b);
    // The same: all callers pass the session's shift or an offset as align, and it has no effect.
    bool createVectorExt(int len, int align, SetMode mode, double a, double b);

    void *getPointerAt(int i);
    void const *getPointerAt(int i) const;
    static int item(kmFunc const &func); // bytes of an element of the name's first type

    // The limits of the element type; those of a component if it is complex. The floating ones are such that
    // a sum or product of two values does not overflow.
    double minValue() const; // 1 for an undefined type, as maxValue
    double maxValue() const;
    static double getMinValue(kmType type); // 0 for an undefined type
    static double getMaxValue(kmType type); // 1 for an undefined type
    static double getMinAbsValue(kmType type);

    // The data level: n elements of m_type at data, for the vector and for the rows of images. data need not
    // be aligned.
    void setDataConst(void *data, int n, double re, double im) const;
    void setDataRandom(void *data, int n, double low, double high) const; // draws from m_seed
    void setDataSequence(void *data, int n, double low, double high, double step, double wrap) const;
    void setVectorJaehne(void *data, int n, double magn) const;
    void getElement(void const *data, double &re, double &im) const;
    double getElement(void const *data) const;
    // Limits magn to half the range and sets offset to the middle of an unsigned one. False if magn < 0.
    bool updateJaehneMagn(double &magn, double &offset) const;

    rkString getDataString(void const *data, int n) const;
    static rkString getDataString(kmType type, void const *data, int n);
    static rkString getByteString(void const *data, int n);

    void setView(void *data); // the view of m_type holds data, all others are null
    static void memError(long long bytes);

    unsigned char *m_data = nullptr;     // tracked
    unsigned char *m_reserved = nullptr; // from calloc
    int m_len = 0;                       // elements
    kmFunc m_func;                       // describes an element: "_8u_" or "_8u_C1"
    kmType m_type = 0;

    // The view of m_type holds m_data, the others are null.
    Kel8u *p8u = nullptr;
    Kel16u *p16u = nullptr;
    Kel32u *p32u = nullptr;
    Kel64u *p64u = nullptr;
    Kel8s *p8s = nullptr;
    Kel16s *p16s = nullptr;
    Kel32s *p32s = nullptr;
    Kel64s *p64s = nullptr;
    Kel8sc *p8sc = nullptr;
    Kel16sc *p16sc = nullptr;
    Kel16uc *p16uc = nullptr; // keeps its value in deleteVector
    Kel32sc *p32sc = nullptr;
    Kel64sc *p64sc = nullptr;
    Kel32f *p32f = nullptr;
    Kel64f *p64f = nullptr;
    Kel32fc *p32fc = nullptr;
    Kel64fc *p64fc = nullptr;

    static unsigned int m_seed; // of all random data; a fill leaves the seed of the next one

private:
    void clearViews();
    void setElement(void *element, SetMode mode, double a, double b);
    void setRandomElement(void *element, double a, double b);
};

#endif
