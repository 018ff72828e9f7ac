#include "Uuid.h"

#include <QRandomGenerator>

#include <random>

namespace Ombrel {

QUuid newUuid()
{
    thread_local std::mt19937_64 generator(QRandomGenerator::system()->generate64());
    const quint64 high = generator();
    const quint64 low = generator();
    // Version 4 in the high nibble of time_hi, RFC 4122 variant in clock_seq.
    const quint64 versioned = (high & ~quint64(0xF000)) | quint64(0x4000);
    const quint64 variant = (low & ~(quint64(0xC0) << 56)) | (quint64(0x80) << 56);
    return QUuid(uint(versioned >> 32), ushort(versioned >> 16), ushort(versioned),
                 uchar(variant >> 56), uchar(variant >> 48), uchar(variant >> 40),
                 uchar(variant >> 32), uchar(variant >> 24), uchar(variant >> 16),
                 uchar(variant >> 8), uchar(variant));
}

} // namespace Ombrel
