#include "tests/synth/SynthPlayer.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <span>

namespace ormund {

namespace {

std::complex<double> windowed(std::span<const float> signal, double radiansPerSample)
{
    std::complex<double> sum;
    const auto size = static_cast<double>(signal.size());
    for (size_t i = 0; i < signal.size(); ++i) {
        const auto place = static_cast<double>(i);
        const double window = 1.0 - std::cos(2.0 * std::numbers::pi * place / size);
        sum += std::polar(window * static_cast<double>(signal[i]), -radiansPerSample * place);
    }
    return sum * (2.0 / size);
}

} // namespace

SynthPlayer::SynthPlayer(float sampleRate, const AudioLoops& loops)
    : synth((info.setSampleRate(sampleRate), info), loops)
{
    set(17, 0.1f);
    set(18, 0.5f);
    set(19, 0.0f);
    set(22, 0.0f);
    set(23, 1.0f);
    set(25, 1.0f);
    set(27, 1.0f);
}

Stereo SynthPlayer::play(int ticks, float pitchOffset, const Split& split)
{
    Stereo out;
    const auto samples = static_cast<size_t>(ticks * kTickSamples);
    out.left.resize(samples);
    out.right.resize(samples);
    size_t at = 0;
    for (int tick = 0; tick < ticks; ++tick) {
        synth.controlTick(pitchOffset);
        for (int left = kTickSamples; left > 0;) {
            const int run = split(left);
            synth.render(&out.left[at], &out.right[at], run);
            at += static_cast<size_t>(run);
            left -= run;
        }
    }
    return out;
}

double rms(const std::vector<float>& signal)
{
    double sum = 0;
    for (const float sample : signal)
        sum += static_cast<double>(sample) * static_cast<double>(sample);
    return std::sqrt(sum / static_cast<double>(signal.size()));
}

double peak(const std::vector<float>& signal)
{
    double most = 0;
    for (const float sample : signal)
        most = std::max(most, std::abs(static_cast<double>(sample)));
    return most;
}

double amplitudeAt(const std::vector<float>& signal, double hertz, double sampleRate)
{
    return std::abs(windowed(signal, 2.0 * std::numbers::pi * hertz / sampleRate));
}

double frequencyNear(const std::vector<float>& signal, double hertz, double sampleRate)
{
    const double omega = 2.0 * std::numbers::pi * hertz / sampleRate;
    const size_t half = signal.size() / 2;
    const std::span<const float> all = signal;
    const auto first = windowed(all.first(half), omega);
    const auto second = windowed(all.subspan(half, half), omega);
    const double turn =
        std::arg(second * std::polar(1.0, -omega * static_cast<double>(half)) / first);
    return hertz + turn / static_cast<double>(half) * sampleRate / (2.0 * std::numbers::pi);
}

} // namespace ormund
