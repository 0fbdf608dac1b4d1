// The plucked string.
#include <cmath>
#include <cstddef>
#include <vector>

#include "assets/music/filters.h"
#include "assets/music/instruments.h"
#include "assets/music/oscillators.h"
#include "assets/music/random.h"

namespace assets::sound {
namespace {

// One round of the wave along the string.
struct round_trip {
    std::vector<float> ring;
    std::size_t at = 0;
    float dull;            // share of the sample before, which takes the high partials away first
    float tune;            // coefficient of the allpass that gives the part of a sample
    float before = 0;      // of the loss filter
    float in = 0, out = 0; // of the allpass

    round_trip(float period, float dullness) : dull(dullness) {
        // The loss filter delays by `dull`, the allpass by 0.1 to 1.1 samples.
        const int whole = std::max(2, trunc_to_int(static_cast<double>(period - dull - 0.1F)));
        ring.assign(static_cast<std::size_t>(whole), 0.0F);
        const float rest = period - dull - static_cast<float>(whole);
        tune = (1.0F - rest) / (1.0F + rest);
    }
    float step(float loss) {
        const float x = ring[at];
        const float softened = loss * ((1.0F - dull) * x + dull * before);
        before = x;
        out = tune * (softened - out) + in;
        in = softened;
        ring[at] = out;
        at = at + 1 == ring.size() ? 0 : at + 1;
        return x;
    }
};

// What the pick leaves on the string: noise, softer when struck softly, without the partials that have a
// node at the place of the pick.
void pluck(round_trip& string, float bright, float place, random_source& noise) {
    one_pole pick;
    pick.set(bright);
    std::vector<float>& ring = string.ring;
    float mean = 0;
    for (float& sample : ring) {
        sample = pick.step(noise.bipolar());
        mean += sample / static_cast<float>(ring.size());
    }
    const std::vector<float> plain = ring;
    const auto shift = static_cast<std::size_t>(place * static_cast<float>(ring.size()));
    for (std::size_t i = 0; i < ring.size(); ++i)
        ring[i] = (plain[i] - mean) - (plain[(i + ring.size() - shift) % ring.size()] - mean);
}

} // namespace

void add_string(stereo& out, const note& played, const string_sound& sound, std::uint32_t seed) {
    const auto gate = static_cast<float>(played.length);
    const stretch where = cut(out, frame_of(played.start), frame_of(played.length + 0.4));
    const pan_gains pan = panned(played.pan);
    for (std::size_t side = 0; side < 2; ++side) {
        random_source noise = seeded(seed); // both sides are the same pick, a little out of tune
        const float lean = (side == 0 ? -0.5F : 0.5F) * sound.shimmer * 0.01F;
        const float period = 1.0F / increment_of(played.pitch + lean);
        round_trip string(period, sound.dull);
        pluck(string, 900.0F + 7000.0F * played.velocity * played.velocity * sound.bright, sound.place,
              noise);
        // A round takes `period` samples; 1/1000 after `seconds`, sooner once the finger is back.
        const float ringing = std::pow(0.001F, period * sample_time / sound.seconds);
        const float damped = std::pow(0.001F, period * sample_time / 0.25F);
        const float gain = sound.gain * played.velocity * (side == 0 ? pan.left : pan.right);
        float* to = (side == 0 ? out.left : out.right).data() + where.start;
        for (int i = 0; i < where.count; ++i) {
            const float t = static_cast<float>(i) * sample_time;
            const float ends = std::min(t * 2000.0F, 1.0F) * (1.0F - smooth(gate + 0.2F, gate + 0.4F, t));
            to[i] += string.step(t < gate ? ringing : damped) * gain * ends;
        }
    }
}

} // namespace assets::sound
