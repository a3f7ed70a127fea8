#pragma once
// Whole-block operations on plain arrays: conversion to double and the extremes of a run of
// samples. The buffers use them, and so can draw and intake code that holds a Read pointer,
// without a call per sample.

#include <cstddef>
#include <cstdint>

namespace qv {

// ADest[i] = ASource[i] as a double, for i < ACount. 64-bit integers beyond 2^53 round to the
// nearest double. The two ranges must not overlap.
void QVArrayConvert(const double* ASource, double* ADest, size_t ACount);
void QVArrayConvert(const float* ASource, double* ADest, size_t ACount);
void QVArrayConvert(const int32_t* ASource, double* ADest, size_t ACount);
void QVArrayConvert(const uint32_t* ASource, double* ADest, size_t ACount);
void QVArrayConvert(const int64_t* ASource, double* ADest, size_t ACount);
void QVArrayConvert(const uint64_t* ASource, double* ADest, size_t ACount);
void QVArrayConvert(const int16_t* ASource, double* ADest, size_t ACount);
void QVArrayConvert(const uint16_t* ASource, double* ADest, size_t ACount);

// Smallest and largest of ACount doubles. NaN samples count as missing and are skipped; with
// no sample that is a number (ACount 0, or only NaN) the result is NaN. Infinities count.
double QVArrayMin(const double* AData, size_t ACount);
double QVArrayMax(const double* AData, size_t ACount);

// Both extremes of ACount doubles in one pass, NaN skipped and infinities counted: false, and
// ALo and AHi untouched, when no sample is a number.
bool QVArrayMinMax(const double* AData, size_t ACount, double& ALo, double& AHi);
// Both extremes of the finite samples (NaN and infinities skipped) in one pass: false, and ALo
// and AHi untouched, when no sample is finite.
bool QVArrayFiniteMinMax(const double* AData, size_t ACount, double& ALo, double& AHi);

// All four in one pass, for summaries: ALo and AHi of the numbers (NaN skipped), AFiniteLo and
// AFiniteHi of the finite samples. A kind with no sample gives +inf and -inf.
void QVArrayExtremes(const double* AData, size_t ACount, double& ALo, double& AHi, double& AFiniteLo,
                     double& AFiniteHi);

// Smallest and largest of ACount integers; for ACount 0, INT32_MAX and INT32_MIN respectively.
int32_t QVArrayMin(const int32_t* AData, size_t ACount);
int32_t QVArrayMax(const int32_t* AData, size_t ACount);

} // namespace qv
