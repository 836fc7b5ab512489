#pragma once

namespace speech {

// The reading speed the pupil chooses, as a percentage of the voice's normal speed.
constexpr int SlowestRate = 50;
constexpr int NormalRate = 100;
constexpr int FastestRate = 250;
constexpr int RateStep = 10;

constexpr int clampedRate(int percent)
{
    return percent < SlowestRate ? SlowestRate : percent > FastestRate ? FastestRate : percent;
}

// speech-dispatcher's rate (-100..100) for a percentage of the normal speed. Its espeak-ng
// module turns 0 into espeak-ng's normal 170 words a minute, -100 into its slowest 80 and
// 100 into its fastest 449, in a straight line on each side; so the percentage is
// 170 words a minute times percent/100, placed on that line: 50 % (85 wpm) is -94, 100 %
// is 0, 250 % (425 wpm) is 91. Other voices read the same number on their own scale.
constexpr int voiceRate(int percent)
{
    constexpr int slowestWpm = 80;
    constexpr int normalWpm = 170;
    constexpr int fastestWpm = 449;
    const int p = clampedRate(percent);
    const int wpm100 = normalWpm * p; // words a minute, times 100
    const int rate = p >= NormalRate
        ? (wpm100 - normalWpm * 100 + (fastestWpm - normalWpm) / 2) / (fastestWpm - normalWpm)
        : -((normalWpm * 100 - wpm100 + (normalWpm - slowestWpm) / 2) / (normalWpm - slowestWpm));
    return rate < -100 ? -100 : rate > 100 ? 100 : rate;
}

static_assert(voiceRate(100) == 0);
static_assert(voiceRate(50) == -94);
static_assert(voiceRate(250) == 91);
static_assert(voiceRate(200) > voiceRate(150) && voiceRate(60) > voiceRate(50));

} // namespace speech
