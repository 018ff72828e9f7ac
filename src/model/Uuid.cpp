#include "Uuid.h"

#include <QRandomGenerator>

namespace Ombrel {

namespace {

// SplitMix64: a counter passed through a bijective mixer. A few instructions
// per draw, where a Mersenne Twister spends a noticeable share of a parse of
// many small rulesets on refilling its state; and since the counter never
// repeats, neither does a draw.
class IdGenerator
{
public:
    IdGenerator() : m_state(QRandomGenerator::system()->generate64()) {}

    quint64 operator()()
    {
        quint64 z = (m_state += 0x9E3779B97F4A7C15);
        z = (z ^ (z >> 30)) * 0xBF58476D1CE4E5B9;
        z = (z ^ (z >> 27)) * 0x94D049BB133111EB;
        return z ^ (z >> 31);
    }

private:
    quint64 m_state;
};

} // namespace

QUuid newUuid()
{
    thread_local IdGenerator generator;
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
