// cosines.h - the basis of the discrete cosine transforms.

#ifndef KELVARA_COSINES_H
#define KELVARA_COSINES_H

namespace kelvara {

// cos(k * pi / 16)
constexpr double cosine16(int k) {
    constexpr double quarter[9] = {1,
                                   0.98078528040323044913,
                                   0.92387953251128675613,
                                   0.83146961230254523708,
                                   0.70710678118654752440,
                                   0.55557023301960222474,
                                   0.38268343236508977173,
                                   0.19509032201612826785,
                                   0};
    const int turn = k % 32, half = turn > 16 ? 32 - turn : turn;
    return half <= 8 ? quarter[half] : -quarter[16 - half];
}

// Orthonormal N-point DCT, N 4 or 8: at[k][n] is the weight of sample n in coefficient k.
template <int N>
struct DctBasis {
    constexpr DctBasis() : at() {
        for (int k = 0; k < N; ++k) {
            const double norm = (k == 0 ? cosine16(4) : 1) * (N == 8 ? 0.5 : cosine16(4));
            for (int n = 0; n < N; ++n) {
                at[k][n] = static_cast<float>(norm * cosine16(k * (2 * n + 1) * (8 / N)));
            }
        }
    }

    float at[N][N];
};

// The same by samples: at[n][k].
template <int N>
struct TransposedDctBasis {
    constexpr TransposedDctBasis() : at() {
        for (int n = 0; n < N; ++n) {
            for (int k = 0; k < N; ++k) at[n][k] = DctBasis<N>().at[k][n];
        }
    }

    float at[N][N];
};

} // namespace kelvara

#endif
