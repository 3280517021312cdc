// dvsegments.h - compressed video segments of DV for the decoder.

#ifndef RAKOVA_DVSEGMENTS_H
#define RAKOVA_DVSEGMENTS_H

const int dvSegmentSize = 400; // five DIF blocks of 80 bytes

// Real codes at 25 Mbit/s, nearly as many as a segment holds, so that all three passes have work.
extern unsigned char const white_noise_table[dvSegmentSize];
extern unsigned char const nature_table[dvSegmentSize];

#endif
