// kelvc_dvpicture.h - decoded macroblocks of DV and DV100 as pictures of 4:2:2.

#ifndef KELVC_DVPICTURE_H
#define KELVC_DVPICTURE_H

#include "keltypes.h"

#ifdef __cplusplus
extern "C" {
#endif

// What kelvc.h says of all functions holds here too, but for this: destinations of several macroblocks may
// overlap, as the macroblocks are written one after the other, from the first to the last.
//
// A macroblock is six blocks of 64 elements behind each other, Y0 Y1 Y2 Y3 CR CB, each in raster order, as
// kelvc_dv.h leaves them. Samples are those of an inverse transform, around 0: 128 is added to them, and they
// are limited to 0..255 (SMPTE 314M and IEC 61834-2). A picture has two bytes a pixel, Y CB Y CR for two
// pixels. Steps are in bytes and at least a row of a macroblock's picture.
//
// - 4:1:1: 32x8 pixels, the blocks of Y side by side; a sample of CR and CB is that of 4 pixels.
// - 4:1:1 at the right edge: 16x16 pixels, Y0 Y1 above Y2 Y3; of the blocks of colour, the left half is the
//   upper 16x8 pixels, the right half the lower ones.
// - 4:2:0: 16x16 pixels, Y0 Y1 above Y2 Y3; a sample of CR and CB is that of 2x2 pixels in two lines of the
//   same field: line 2k of colour is that of the lines 4k and 4k + 2, line 2k + 1 that of 4k + 1 and 4k + 3.
// - 4:2:2: 16x8 pixels, the blocks Y0 and Y2 side by side; a sample of CR and CB is that of 2 pixels. In the
//   places of Y1 and Y3 the format has more bits of the blocks in front of them: these are not read.
//
// ZoomOut2, 4 and 8 are pictures of a half, a quarter and an eighth of the width and height: a sample is the
// mean, halves rounded up, of all those that the full picture has in its place.

// clang-format off

// One macroblock of 4:1:1 at the right edge.
KELAPI KelStatus keliYCrCb411ToYCbCr422_EdgeDV_16s8u_P3C2R(const Kel16s *pSrc, Kel8u *pDst, int dstStep);
KELAPI KelStatus keliYCrCb411ToYCbCr422_ZoomOut2_EdgeDV_16s8u_P3C2R(const Kel16s *pSrc, Kel8u *pDst, int dstStep);
KELAPI KelStatus keliYCrCb411ToYCbCr422_ZoomOut4_EdgeDV_16s8u_P3C2R(const Kel16s *pSrc, Kel8u *pDst, int dstStep);
KELAPI KelStatus keliYCrCb411ToYCbCr422_ZoomOut8_EdgeDV_16s8u_P3C2R(const Kel16s *pSrc, Kel8u *pDst, int dstStep);

// The five macroblocks of a video segment, each to a place of its own. No pointer is null.
KELAPI KelStatus keliYCrCb411ToYCbCr422_5MBDV_16s8u_P3C2R(const Kel16s *const pSrc[5], Kel8u *const pDst[5], int dstStep);
KELAPI KelStatus keliYCrCb411ToYCbCr422_ZoomOut2_5MBDV_16s8u_P3C2R(const Kel16s *const pSrc[5], Kel8u *const pDst[5], int dstStep);
KELAPI KelStatus keliYCrCb411ToYCbCr422_ZoomOut4_5MBDV_16s8u_P3C2R(const Kel16s *const pSrc[5], Kel8u *const pDst[5], int dstStep);
KELAPI KelStatus keliYCrCb420ToYCbCr422_5MBDV_16s8u_P3C2R(const Kel16s *const pSrc[5], Kel8u *const pDst[5], int dstStep);
KELAPI KelStatus keliYCrCb420ToYCbCr422_ZoomOut2_5MBDV_16s8u_P3C2R(const Kel16s *const pSrc[5], Kel8u *const pDst[5], int dstStep);
KELAPI KelStatus keliYCrCb420ToYCbCr422_ZoomOut4_5MBDV_16s8u_P3C2R(const Kel16s *const pSrc[5], Kel8u *const pDst[5], int dstStep);
KELAPI KelStatus keliYCrCb422ToYCbCr422_5MBDV_16s8u_P3C2R(const Kel16s *const pSrc[5], Kel8u *const pDst[5], int dstStep);
KELAPI KelStatus keliYCrCb422ToYCbCr422_ZoomOut2_5MBDV_16s8u_P3C2R(const Kel16s *const pSrc[5], Kel8u *const pDst[5], int dstStep);
KELAPI KelStatus keliYCrCb422ToYCbCr422_ZoomOut4_5MBDV_16s8u_P3C2R(const Kel16s *const pSrc[5], Kel8u *const pDst[5], int dstStep);

// The same at an eighth: 8 bytes of 4:1:1 and of 4:2:0, 4 of 4:2:2, the two rows of 4:2:0 behind each other.
KELAPI KelStatus keliYCrCb411ToYCbCr422_ZoomOut8_5MBDV_16s8u_P3C2R(const Kel16s *const pSrc[5], Kel8u *const pDst[5]);
KELAPI KelStatus keliYCrCb420ToYCbCr422_ZoomOut8_5MBDV_16s8u_P3C2R(const Kel16s *const pSrc[5], Kel8u *const pDst[5]);
KELAPI KelStatus keliYCrCb422ToYCbCr422_ZoomOut8_5MBDV_16s8u_P3C2R(const Kel16s *const pSrc[5], Kel8u *const pDst[5]);

// The five macroblocks of a video segment of DV100 (SMPTE 370M). Each is eight blocks, Y0 Y1 Y2 Y3 CR0 CR1 CB0
// CB1, of 512 elements together, and they lie behind each other. The halves, 16x8 pixels with Y0 Y1 CR0 CB0 and
// with Y2 Y3 CR1 CB1, are the pictures 2m and 2m + 1 of macroblock m. No pointer is null.
KELAPI KelStatus keliYCrCb422ToYCbCr422_10HalvesMB16x8_DV100_16s8u_P3C2R(const Kel16s *pSrc, Kel8u *const pDst[10], int dstStep);

// Pictures of half the width and height out of blocks of 4x4 samples, as keliDCT8x4x2To4x4Inv_DV_16s_C1I leaves
// them: each of the six blocks has its samples in the first 16 of its 64 elements, the others are not read. A
// line of such a block is the mean of both fields, so that a sample of CR and CB of 4:2:0 is that of 2x2
// neighbours; all else is as above. The name holds the width and height of a macroblock's picture.
KELAPI KelStatus keliYCrCb420ToYCbCr422_8x8x5MB_DV_16s8u_P3C2R(const Kel16s *const pSrc[5], Kel8u *const pDst[5], int dstStep);
KELAPI KelStatus keliYCrCb411ToYCbCr422_16x4x5MB_DV_16s8u_P3C2R(const Kel16s *const pSrc[5], Kel8u *const pDst[5], int dstStep);
KELAPI KelStatus keliYCrCb422ToYCbCr422_8x4x5MB_DV_16s8u_P3C2R(const Kel16s *const pSrc[5], Kel8u *const pDst[5], int dstStep);

// The same of one macroblock of 4:1:1 at the right edge.
KELAPI KelStatus keliYCrCb411ToYCbCr422_8x8MB_DV_16s8u_P3C2R(const Kel16s *pSrc, Kel8u *pDst, int dstStep);

// clang-format on

#ifdef __cplusplus
}
#endif

#endif
