// fuzz_bitmap.cpp - the reader of bitmap files, against a plain look at the file's bytes.
// Input: a whole file.

#include <limits.h>

#include "fuzz.h"
#include "kmbmp.h"
#include "rkmemory.h"
#include "rkstream.h"

namespace {

// What the headers of a file ask for, and where its pixels lie.
class File {
public:
    File(std::string const &bytes, kmBmpFile &reader) : m_bytes(bytes), m_reader(reader) {}

    tagBITMAPINFOHEADER const &info() const { return m_reader.m_infoHeader; }
    bool packed() const { return info().biBitCount <= 8; }

    // The palette as it lies behind the headers.
    int color(int index, int component) const {
        int n = m_reader.GetPaletteNum();
        size_t entry = static_cast<size_t>(index < n ? index : n - 1);
        return byte(54 + 4 * entry + static_cast<size_t>(component));
    }
    bool gray() const {
        for (int i = 0; i < m_reader.GetPaletteNum(); ++i) {
            if (color(i, 0) != color(i, 1) || color(i, 1) != color(i, 2)) return false;
        }
        return true;
    }
    int channels() const {
        if (!packed()) return info().biBitCount / 8;
        return gray() ? 1 : 3;
    }
    // Bytes of an image of the asked size, as much as a number can hold.
    double imageSize() const {
        double row = static_cast<double>(info().biWidth) * channels();
        return (row + 15) * info().biHeight;
    }

    // A byte of the pixels, and one that the file need not hold.
    bool holdsPixels(size_t n) const { return m_bytes.size() >= first() && m_bytes.size() - first() >= n; }
    int pixelByte(size_t i) const { return byte(first() + i); }

    int index(int x, int y) const {
        size_t step = static_cast<size_t>(m_reader.GetDataStep());
        int bits = info().biBitCount, perByte = 8 / bits;
        int value = pixelByte(step * static_cast<size_t>(y) + static_cast<size_t>(x / perByte));
        if (bits == 8) return value;
        if (bits == 4) return x % 2 == 0 ? value / 16 : value % 16;
        bool rest = x >= info().biWidth / 8 * 8;
        return value >> (rest ? x % 8 : 7 - x % 8) & 1;
    }

private:
    size_t first() const { return m_reader.m_fileHeader.bfOffBits; }
    int byte(size_t i) const { return static_cast<unsigned char>(m_bytes.at(i)); }

    std::string const &m_bytes;
    kmBmpFile &m_reader;
};

long long allTracked() {
    long long sum = 0;
    int size = 0;
    for (void *p = rkMallocFirst(&size, nullptr); p; p = rkMallocNext(&size, nullptr)) sum += size;
    return sum;
}

void checkPacked(File const &file, kmImage const &image) {
    int channels = file.channels();
    for (int y = 0; y < image.m_height; ++y) {
        for (int x = 0; x < image.m_width; ++x) {
            int index = file.index(x, y);
            for (int c = 0; c < channels; ++c) {
                auto *value = static_cast<unsigned char const *>(image.getRowPointer(y)) + x * channels + c;
                require(*value == file.color(index, c), "a pixel has the color of its index");
            }
        }
    }
}

void checkDirect(File const &file, kmImage const &image) {
    for (int i = 0; i < image.size() && file.holdsPixels(static_cast<size_t>(i) + 1); ++i) {
        require(image.m_data[i] == file.pixelByte(static_cast<size_t>(i)), "direct pixels are the file's");
    }
}

void checkImage(File const &file, kmImage const &image) {
    require(image.m_width == file.info().biWidth && image.m_height == file.info().biHeight, "the asked size");
    require(image.m_type == 8 && kmImage::numChannels(image.m_func) == file.channels(), "bytes, by channels");
    require(allTracked() == image.size(), "one block of the asked size");
    if (file.packed()) {
        checkPacked(file, image);
    } else {
        checkDirect(file, image);
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(uint8_t const *data, size_t size) {
    g_ostrm.setOutLevel(0);
    std::string bytes(reinterpret_cast<char const *>(data), size);
    MemoryFile stored(bytes);
    kmImage image;
    kmBmpFile reader(&image);
    bool headers = reader.readInfoHeader(stored.path());
    File file(bytes, reader);
    double asked = static_cast<double>(reader.m_infoHeader.biWidth) * reader.m_infoHeader.biHeight;
    if (headers && asked > 1 << 16 && asked < INT_MAX) return 0; // there may be room, but no time
    bool loaded = image.loadImage(stored.path(), static_cast<int>(size % 80));
    require(!loaded || headers, "what has no headers does not load");
    require(!loaded || file.imageSize() < INT_MAX, "sizes are numbers");
    require(allTracked() <= image.size(), "nothing else was taken");
    if (loaded) checkImage(file, image);
    return 0;
}
