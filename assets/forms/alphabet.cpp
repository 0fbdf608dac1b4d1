#include "assets/forms/alphabet.h"

#include <array>
#include <cstddef>

namespace assets {
namespace {

constexpr auto line = stroke::line;
constexpr auto arc = stroke::arc;
constexpr float waist = 0.40F;
constexpr float hair = 0.5F; // the up-strokes of diagonals

// All strokes of a letter stand together.
constexpr auto strokes = std::to_array<stroke>({
    {'A', line, 0, 1, 0.5F, 0, 0, 0, hair},
    {'A', line, 0.5F, 0, 1, 1, 0, 0, 1},
    {'A', line, 0.2F, 0.66F, 0.82F, 0.66F},

    {'B', line, 0, 0, 0, 1},
    {'B', line, 0, 0, 0.5F, 0},
    {'B', arc, 0.5F, 0.2F, 0.38F, 0.2F, -90, 90},
    {'B', line, 0, waist, 0.56F, waist},
    {'B', arc, 0.56F, 0.7F, 0.44F, 0.3F, -90, 90},
    {'B', line, 0, 1, 0.56F, 1},

    {'C', arc, 0.54F, 0.5F, 0.54F, 0.5F, -42, -318},

    {'D', line, 0, 0, 0, 1},
    {'D', line, 0, 0, 0.42F, 0},
    {'D', arc, 0.42F, 0.5F, 0.58F, 0.5F, -90, 90},
    {'D', line, 0, 1, 0.42F, 1},

    {'E', line, 0, 0, 0, 1},
    {'E', line, 0, 0, 1, 0},
    {'E', line, 0, waist, 0.8F, waist},
    {'E', line, 0, 1, 1.04F, 1},

    {'F', line, 0, 0, 0, 1},
    {'F', line, 0, 0, 1, 0},
    {'F', line, 0, waist, 0.8F, waist},

    {'G', arc, 0.52F, 0.5F, 0.52F, 0.5F, -44, -328},
    {'G', line, 0.55F, 0.56F, 1, 0.56F},
    {'G', line, 1, 0.56F, 1, 0.8F},

    {'H', line, 0, 0, 0, 1},
    {'H', line, 1, 0, 1, 1},
    {'H', line, 0, waist, 1, waist},

    {'I', line, 0, 0, 0, 1},

    {'J', line, 1, 0, 1, 0.66F},
    {'J', arc, 0.5F, 0.66F, 0.5F, 0.34F, 0, 158},

    {'K', line, 0, 0, 0, 1},
    {'K', line, 0.04F, 0.52F, 1, 0, 0, 0, hair},
    {'K', line, 0.38F, 0.49F, 1, 1, 0, 0, 1},

    {'L', line, 0, 0, 0, 1},
    {'L', line, 0, 1, 1, 1},

    {'M', line, 0, 0, 0, 1, 0, 0, hair},
    {'M', line, 0, 0, 0.5F, 1, 0, 0, 1},
    {'M', line, 0.5F, 1, 1, 0, 0, 0, hair},
    {'M', line, 1, 0, 1, 1},

    {'N', line, 0, 0, 0, 1, 0, 0, hair},
    {'N', line, 0, 0, 1, 1, 0, 0, 1},
    {'N', line, 1, 0, 1, 1, 0, 0, hair},

    {'O', arc, 0.5F, 0.5F, 0.5F, 0.5F, 0, 360},

    {'P', line, 0, 0, 0, 1},
    {'P', line, 0, 0, 0.5F, 0},
    {'P', arc, 0.5F, 0.27F, 0.5F, 0.27F, -90, 90},
    {'P', line, 0, 0.54F, 0.5F, 0.54F},

    {'Q', arc, 0.5F, 0.5F, 0.5F, 0.5F, 0, 360},
    {'Q', line, 0.56F, 0.66F, 1, 1, 0, 0, 0.9F},

    {'R', line, 0, 0, 0, 1},
    {'R', line, 0, 0, 0.5F, 0},
    {'R', arc, 0.5F, 0.23F, 0.46F, 0.23F, -90, 90},
    {'R', line, 0, 0.46F, 0.5F, 0.46F},
    {'R', line, 0.48F, 0.54F, 1, 1, 0, 0, 1},

    {'S', arc, 0.5F, 0.225F, 0.45F, 0.225F, -24, -180, 0.72F},
    {'S', arc, 0.5F, 0.225F, 0.45F, 0.225F, -180, -270, 0.8F},
    {'S', arc, 0.5F, 0.725F, 0.5F, 0.275F, -90, 0, 0.86F},
    {'S', arc, 0.5F, 0.725F, 0.5F, 0.275F, 0, 157, 0.72F},

    {'T', line, 0, 0, 1, 0},
    {'T', line, 0.5F, 0, 0.5F, 1},

    {'U', line, 0, 0, 0, 0.62F},
    {'U', arc, 0.5F, 0.62F, 0.5F, 0.38F, 180, 0},
    {'U', line, 1, 0.62F, 1, 0, 0, 0, 0.62F},

    {'V', line, 0, 0, 0.5F, 1, 0, 0, 1},
    {'V', line, 0.5F, 1, 1, 0, 0, 0, hair},

    {'W', line, 0, 0, 0.28F, 1, 0, 0, 1},
    {'W', line, 0.28F, 1, 0.51F, 0, 0, 0, hair},
    {'W', line, 0.51F, 0, 0.74F, 1, 0, 0, 1},
    {'W', line, 0.74F, 1, 1, 0, 0, 0, hair},

    {'X', line, 0, 0, 1, 1, 0, 0, 1},
    {'X', line, 1, 0, 0, 1, 0, 0, hair},

    {'Y', line, 0, 0, 0.5F, 0.56F, 0, 0, 1},
    {'Y', line, 1, 0, 0.5F, 0.56F, 0, 0, hair},
    {'Y', line, 0.5F, 0.56F, 0.5F, 1},

    {'Z', line, 0, 0, 0.94F, 0},
    {'Z', line, 0.96F, 0, 0.04F, 1, 0, 0, 0.9F},
    {'Z', line, 0.06F, 1, 1, 1},

    {'0', arc, 0.5F, 0.5F, 0.5F, 0.5F, 0, 360},
    {'1', line, 0.1F, 0.2F, 1, 0, 0, 0, hair},
    {'1', line, 1, 0, 1, 1},
    {'2', arc, 0.5F, 0.28F, 0.5F, 0.28F, -168, 42, 0.8F},
    {'2', line, 0.87F, 0.467F, 0.02F, 1, 0, 0, 0.7F},
    {'2', line, 0.02F, 1, 1, 1},
    {'3', arc, 0.46F, 0.22F, 0.46F, 0.22F, -155, 90, 0.8F},
    {'3', arc, 0.46F, 0.72F, 0.54F, 0.28F, -90, 155, 0.8F},
    {'4', line, 0.74F, 0, 0, 0.7F, 0, 0, hair},
    {'4', line, 0, 0.7F, 1, 0.7F},
    {'4', line, 0.74F, 0, 0.74F, 1},
    {'5', line, 0.14F, 0, 0.94F, 0},
    {'5', line, 0.14F, 0, 0.08F, 0.44F, 0, 0, hair},
    {'5', arc, 0.46F, 0.68F, 0.54F, 0.32F, -134, 152, 0.8F},
    {'6', arc, 0.5F, 0.68F, 0.5F, 0.32F, 0, 360, 0.8F},
    {'6', arc, 0.72F, 0.68F, 0.72F, 0.68F, -180, -82, 0.8F},
    {'7', line, 0, 0, 0.96F, 0},
    {'7', line, 0.96F, 0, 0.34F, 1, 0, 0, 1},
    {'8', arc, 0.5F, 0.21F, 0.42F, 0.21F, 0, 360, 0.75F},
    {'8', arc, 0.5F, 0.71F, 0.5F, 0.29F, 0, 360, 0.8F},
    {'9', arc, 0.5F, 0.32F, 0.5F, 0.32F, 0, 360, 0.8F},
    {'9', arc, 0.28F, 0.32F, 0.72F, 0.68F, 0, 98, 0.8F},

    {'.', line, 0, 0.96F, 0, 1, 0, 0, 1.15F},
    {',', line, 0.8F, 0.9F, 0, 1.16F, 0, 0, 0.8F},
    {':', line, 0, 0.36F, 0, 0.4F, 0, 0, 1.1F},
    {':', line, 0, 0.96F, 0, 1, 0, 0, 1.1F},
    {'-', line, 0, 0.54F, 1, 0.54F},
    {'\'', line, 0.4F, 0, 0, 0.26F, 0, 0, 0.7F},
    {'!', line, 0, 0, 0, 0.66F},
    {'!', line, 0, 0.96F, 0, 1, 0, 0, 1.15F},
    {'?', arc, 0.5F, 0.25F, 0.5F, 0.25F, -165, 80, 0.8F},
    {'?', line, 0.54F, 0.5F, 0.5F, 0.7F, 0, 0, 0.8F},
    {'?', line, 0.5F, 0.96F, 0.5F, 1, 0, 0, 1.1F},
    {'/', line, 1, 0, 0, 1, 0, 0, 0.6F},
    {'(', arc, 1, 0.5F, 1, 0.56F, -115, -245, 0.6F},
    {')', arc, 0, 0.5F, 1, 0.56F, -65, 65, 0.6F},
    {'+', line, 0, 0.54F, 1, 0.54F, 0, 0, 0.6F},
    {'+', line, 0.5F, 0.26F, 0.5F, 0.82F, 0, 0, 0.6F},
    {'*', line, 0, 0.5F, 0, 0.54F, 0, 0, 1.15F}, // a dot at half height: divides the parts of a line
    {'&', arc, 0.42F, 0.22F, 0.3F, 0.22F, 0, 360, 0.6F},
    {'&', arc, 0.4F, 0.72F, 0.4F, 0.28F, -70, -330, 0.75F},
    {'&', line, 0.2F, 0.36F, 1, 1, 0, 0, 0.9F},
    {'&', line, 0.75F, 0.86F, 1, 0.5F, 0, 0, hair},
});

struct width_entry {
    char letter;
    float width;
};
constexpr auto widths = std::to_array<width_entry>({
    {'A', 0.86F},  {'B', 0.6F},  {'C', 0.72F}, {'D', 0.74F}, {'E', 0.52F}, {'F', 0.52F}, {'G', 0.76F},
    {'H', 0.72F},  {'I', 0},     {'J', 0.44F}, {'K', 0.68F}, {'L', 0.52F}, {'M', 0.94F}, {'N', 0.76F},
    {'O', 0.86F},  {'P', 0.56F}, {'Q', 0.86F}, {'R', 0.6F},  {'S', 0.56F}, {'T', 0.74F}, {'U', 0.68F},
    {'V', 0.84F},  {'W', 1.24F}, {'X', 0.74F}, {'Y', 0.76F}, {'Z', 0.64F}, {'0', 0.64F}, {'1', 0.24F},
    {'2', 0.54F},  {'3', 0.5F},  {'4', 0.62F}, {'5', 0.52F}, {'6', 0.56F}, {'7', 0.54F}, {'8', 0.54F},
    {'9', 0.56F},  {'.', 0},     {',', 0.06F}, {':', 0},     {'-', 0.26F}, {'!', 0},     {'?', 0.5F},
    {'\'', 0.06F}, {'/', 0.4F},  {'(', 0.16F}, {')', 0.16F}, {'+', 0.44F}, {'*', 0},     {'&', 0.66F},
    {' ', 0.36F},
});

// Letters by the openness of a side: what two open sides share is taken out between them.
struct sides {
    char letter;
    float left, right;
};
constexpr auto open_sides = std::to_array<sides>({
    {'A', 1, 1},
    {'V', 1, 1},
    {'W', 0.8F, 0.8F},
    {'Y', 1, 1},
    {'T', 0.9F, 0.9F},
    {'L', 0, 0.9F},
    {'F', 0, 0.8F},
    {'P', 0, 0.7F},
    {'J', 0.5F, 0},
    {'O', 0.3F, 0.3F},
    {'C', 0.3F, 0.2F},
    {'G', 0.3F, 0},
    {'D', 0, 0.3F},
    {'Q', 0.3F, 0.2F},
    {'7', 0, 0.6F},
});

const sides* sides_of(char letter) {
    for (const sides& s : open_sides) {
        if (s.letter == letter) return &s;
    }
    return nullptr;
}

// Of two open sides one must be open at the cap line and the other at the base line; else they would meet.
bool face_each_other(char left, char right) {
    auto low = [](char c) { return c == 'A' || c == 'L' || c == 'J'; }; // feet stand out
    return low(left) != low(right);
}

constexpr char capital(char letter) {
    return letter >= 'a' && letter <= 'z' ? static_cast<char>(letter - 'a' + 'A') : letter;
}

} // namespace

std::span<const stroke> strokes_of(char letter) {
    letter = capital(letter);
    std::size_t first = 0;
    while (first < strokes.size() && strokes[first].letter != letter)
        ++first;
    std::size_t end = first;
    while (end < strokes.size() && strokes[end].letter == letter)
        ++end;
    return std::span(strokes).subspan(first, end - first);
}

float skeleton_width(char letter) {
    for (const width_entry& entry : widths) {
        if (entry.letter == capital(letter)) return entry.width;
    }
    return 0.3F;
}

float kerning(char left, char right) {
    left = capital(left);
    right = capital(right);
    const sides* a = sides_of(left);
    const sides* b = sides_of(right);
    if (a == nullptr || b == nullptr || !face_each_other(left, right)) return 0;
    return -0.26F * a->right * b->left;
}

} // namespace assets
