#include "assets/forms/lettering.h"

#include <algorithm>
#include <cmath>

#include "assets/forms/alphabet.h"
#include "morvane/base/numbers.h"

namespace assets {
namespace {

constexpr int arc_pieces = 28;
// Free ends are cut along this slope: the normal of the cut, pointing right.
constexpr vec2 cut_normal{0.9F, 0.436F};

// One stroke with its weight, in the letter's own pixels: a chain of straight pieces.
struct chain {
    std::vector<vec2> points;
    std::vector<float> halves; // half the weight at each point
};

// A letter's outline in the letter's own pixels (origin at the left end of the cap line).
struct letter_form {
    std::vector<chain> chains;
    float width = 0;
    float height = 0;
};

vec2 point_on(const stroke& s, float t) {
    if (s.kind == stroke::line) return {mix(s.a, s.c, t), mix(s.b, s.d, t)};
    const float angle = mix(s.from, s.to, t) * pi / 180;
    return {s.a + std::cos(angle) * s.c, s.b + std::sin(angle) * s.d};
}

float half_weight(const stroke& s, vec2 direction, const type_style& style) {
    const float upright = std::fabs(direction.y);
    const float by_direction = mix(style.thin, style.stem, upright * upright);
    if (s.weight <= 0) return by_direction * style.size * 0.5F;
    // An arc with a share keeps half of its stress; a line with a share has none.
    const float even = style.stem * s.weight;
    return (s.kind == stroke::arc ? mix(even, by_direction, 0.5F) : even) * style.size * 0.5F;
}

float letter_width(char letter, const type_style& style) {
    if (letter == ' ') return skeleton_width(letter) * style.stretch * style.size;
    return (skeleton_width(letter) * style.stretch + style.stem) * style.size;
}

chain chain_of(const stroke& s, const letter_form& form, char letter, const type_style& style) {
    const float stem = style.stem * style.size * 0.5F;
    const float thin = style.thin * style.size * 0.5F;
    const float inner = skeleton_width(letter) * style.stretch * style.size;
    chain result;
    const int pieces = s.kind == stroke::line ? 1 : arc_pieces;
    for (int i = 0; i <= pieces; ++i) {
        const vec2 p = point_on(s, static_cast<float>(i) / static_cast<float>(pieces));
        result.points.push_back({stem + p.x * inner, thin + p.y * (form.height - 2 * thin)});
    }
    for (std::size_t i = 0; i < result.points.size(); ++i) {
        const vec2 before = result.points[i == 0 ? 0 : i - 1];
        const vec2 after = result.points[std::min(i + 1, result.points.size() - 1)];
        result.halves.push_back(half_weight(s, normalised(after - before), style));
    }
    return result;
}

// Distance to the middle line of a chain, less the weight there.
float distance_to(const chain& c, vec2 p) {
    float nearest = 1e9F;
    for (std::size_t i = 0; i + 1 < c.points.size(); ++i) {
        float along = 0;
        const float d = sd_segment(p, c.points[i], c.points[i + 1], &along);
        nearest = std::min(nearest, d - mix(c.halves[i], c.halves[i + 1], along));
    }
    return nearest;
}

bool ends_in_another(const letter_form& form, std::size_t own, vec2 end) {
    for (std::size_t i = 0; i < form.chains.size(); ++i) {
        if (i != own && distance_to(form.chains[i], end) < -0.1F) return true;
    }
    return false;
}

// An end of a stroke that is cut off straight.
struct cut {
    std::size_t chain;
    vec2 end;
    vec2 normal; // points away from the stroke
    float half;
};

// A letter ready to be measured.
struct outline {
    letter_form form;
    std::vector<cut> cuts;
};

// Treats one end: at the cap and base line an upright stroke runs on and is cut by the line; a free end is
// cut along the slope; an end inside another stroke stays round.
void finish_end(outline& letter, std::size_t index, bool last) {
    chain& c = letter.form.chains[index];
    vec2& end = last ? c.points.back() : c.points.front();
    const vec2 before = last ? c.points[c.points.size() - 2] : c.points[1];
    const float half = last ? c.halves.back() : c.halves.front();
    const vec2 outward = normalised(end - before);
    const bool at_line = end.y < letter.form.height * 0.06F || end.y > letter.form.height * 0.94F;
    if (at_line && std::fabs(outward.y) > 0.4F) {
        end = end + outward * (half * 2.5F / std::fabs(outward.y));
        return;
    }
    if (ends_in_another(letter.form, index, end)) return;
    const bool upright = std::fabs(outward.y) > 0.9F;
    const float side = outward.x * cut_normal.x + outward.y * cut_normal.y >= 0 ? 1.0F : -1.0F;
    const vec2 normal = upright ? vec2{0, outward.y > 0 ? 1.0F : -1.0F} : cut_normal * side;
    letter.cuts.push_back({index, end + outward * (half * 0.3F), normal, half});
    end = end + outward * (half * 1.8F);
}

outline outline_of(char letter, const type_style& style) {
    outline result;
    result.form.width = letter_width(letter, style);
    result.form.height = style.size;
    for (const stroke& s : strokes_of(letter))
        result.form.chains.push_back(chain_of(s, result.form, letter, style));
    const letter_form untouched = result.form;
    for (std::size_t i = 0; i < untouched.chains.size(); ++i) {
        const vec2 first = untouched.chains[i].points.front();
        const vec2 last = untouched.chains[i].points.back();
        if (length(first - last) < 0.01F) continue; // a closed ring has no ends
        finish_end(result, i, false);
        finish_end(result, i, true);
    }
    return result;
}

float distance_to(const outline& letter, vec2 p, bool descends) {
    float nearest = 1e9F;
    for (std::size_t i = 0; i < letter.form.chains.size(); ++i) {
        float d = distance_to(letter.form.chains[i], p);
        for (const cut& c : letter.cuts) {
            if (c.chain != i) continue;
            // The cut works near its end only: far off, the stroke may pass that line again.
            const float far = std::max(length(p - c.end) - 3 * c.half - 1, 0.0F);
            d = std::max(d, dot(p - c.end, c.normal) - far * 3);
        }
        nearest = std::min(nearest, d);
    }
    const float below = descends ? -1e9F : p.y - letter.form.height;
    return std::max(nearest, std::max(-p.y, below));
}

void measure(plane& distances, const placed_letter& placed, float reach) {
    const outline letter = outline_of(placed.letter, placed.style);
    if (letter.form.chains.empty()) return;
    const vec2 middle =
        placed.origin + rotated({letter.form.width * 0.5F, letter.form.height * 0.5F}, placed.angle);
    const float radius = length({letter.form.width, letter.form.height * 1.2F}) * 0.5F + reach + 1;
    const std::int32_t x0 = std::max(trunc_to_int(middle.x - radius), 0);
    const std::int32_t x1 = std::min(trunc_to_int(middle.x + radius) + 1, distances.width);
    const std::int32_t y0 = std::max(trunc_to_int(middle.y - radius), 0);
    const std::int32_t y1 = std::min(trunc_to_int(middle.y + radius) + 1, distances.height);
    const bool descends = placed.letter == ',' || placed.letter == '(' || placed.letter == ')';
    for (std::int32_t y = y0; y < y1; ++y) {
        for (std::int32_t x = x0; x < x1; ++x) {
            const vec2 p{static_cast<float>(x) + 0.5F, static_cast<float>(y) + 0.5F};
            const vec2 own = rotated(p - placed.origin, -placed.angle);
            const float outside = std::max(std::max(-own.x, own.x - letter.form.width),
                                           std::max(-own.y, own.y - letter.form.height));
            if (outside > reach) continue;
            float& d = distances.at(x, y);
            d = std::min(d, distance_to(letter, own, descends));
        }
    }
}

// From the left end of letter `i` to that of the next.
float advance(std::string_view text, std::size_t i, const type_style& style) {
    const float pair = i + 1 < text.size() ? kerning(text[i], text[i + 1]) : 0;
    return letter_width(text[i], style) + (style.tracking + pair) * style.size;
}

} // namespace

float line_width(std::string_view text, const type_style& style) {
    float width = 0;
    for (std::size_t i = 0; i < text.size(); ++i)
        width += advance(text, i, style);
    return text.empty() ? 0 : width - style.tracking * style.size;
}

setting set_line(std::string_view text, vec2 at, const type_style& style, align how, float angle) {
    const float width = line_width(text, style);
    float x = how == align::left ? 0 : (how == align::centre ? -width * 0.5F : -width);
    setting result;
    for (std::size_t i = 0; i < text.size(); ++i) {
        result.push_back({text[i], at + rotated({x, 0}, angle), angle, style});
        x += advance(text, i, style);
    }
    return result;
}

setting set_justified(std::string_view text, vec2 at, float width, type_style style) {
    const float rest = width - line_width(text, style);
    style.tracking += rest / (static_cast<float>(text.size() - 1) * style.size);
    return set_line(text, at, style);
}

setting set_ring(std::string_view text, vec2 centre, float radius, float angle, const type_style& style,
                 bool inside) {
    const float turn = inside ? -1.0F : 1.0F; // inside, the text runs against the clock
    float x = -line_width(text, style) * 0.5F;
    setting result;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const float width = letter_width(text[i], style);
        const float at = angle + turn * (x + width * 0.5F) / radius;
        const vec2 outward{std::cos(at), std::sin(at)};
        const float upright = inside ? at - pi * 0.5F : at + pi * 0.5F;
        // Cap line: outside by a cap height, or inside by one.
        const vec2 top = centre + outward * (radius + turn * style.size);
        result.push_back({text[i], top - rotated({width * 0.5F, 0}, upright), upright, style});
        x += advance(text, i, style);
    }
    return result;
}

void append(setting& text, const setting& more) {
    text.insert(text.end(), more.begin(), more.end());
}

plane distances_to(const setting& text, std::int32_t width, std::int32_t height, float reach) {
    plane distances(width, height, reach + 1);
    for (const placed_letter& letter : text)
        measure(distances, letter, reach);
    return distances;
}

} // namespace assets
