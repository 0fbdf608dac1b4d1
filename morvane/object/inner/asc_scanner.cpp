#include "morvane/object/inner/asc_scanner.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstddef>
#include <system_error>

namespace {

constexpr std::size_t token_limit = 99;
constexpr std::string_view blanks = " \t\n\v\f\r";

bool is_digit(char c) {
    return '0' <= c && c <= '9';
}

} // namespace

bool asc_scanner::find_keyword(std::string_view word) {
    while (!token.starts_with(word))
        if (!read_token()) return ended(word);
    return true;
}

bool asc_scanner::read_token() {
    skip_blanks();
    if (rest.empty()) return ended("more text");
    token = rest.substr(0, std::min(rest.substr(0, token_limit).find_first_of(blanks), token_limit));
    rest.remove_prefix(token.size());
    return true;
}

bool asc_scanner::read_name(std::string_view& name) {
    skip_blanks();
    if (rest.empty()) return ended("a name");
    name = rest.substr(0, rest.find_first_of(blanks));
    rest.remove_prefix(name.size());
    return true;
}

bool asc_scanner::find_letter(char letter) {
    const std::size_t place = rest.find(letter);
    if (place == std::string_view::npos) {
        rest = {};
        return ended({&letter, 1});
    }
    rest.remove_prefix(place + 1);
    return true;
}

bool asc_scanner::find_value(char letter) {
    if (!find_letter(letter)) return false;
    rest.remove_prefix(std::min<std::size_t>(rest.size(), 1)); // the ':', whatever it is
    return true;
}

bool asc_scanner::read_value(char letter, float& value) {
    return find_value(letter) && read_float(value);
}

bool asc_scanner::read_value(char letter, std::int32_t& value) {
    return find_value(letter) && read_int(value);
}

bool asc_scanner::read_int(std::int32_t& value) {
    skip_blanks();
    const bool minus = take_minus();
    if (rest.empty()) return ended("a number");
    if (!is_digit(rest.front())) return fail("no number where one belongs");
    std::int64_t number = 0;
    for (; !rest.empty() && is_digit(rest.front()); rest.remove_prefix(1))
        number = std::min(number * 10 + (rest.front() - '0'), std::int64_t{INT32_MAX} + 1);
    value = static_cast<std::int32_t>(minus ? -number : std::min(number, std::int64_t{INT32_MAX}));
    return true;
}

bool asc_scanner::read_float(float& value) {
    skip_blanks();
    const bool minus = take_minus();
    if (rest.empty()) return ended("a number");
    if (!is_digit(rest.front()) && rest.front() != '.') return fail("no number where one belongs");
    const char* const end = rest.data() + rest.size();
    float number = 0;
    auto [stop, error] = std::from_chars(rest.data(), end, number);
    if (error == std::errc::result_out_of_range) {
        double wide = 0;
        error = std::from_chars(rest.data(), end, wide).ec;
        if (std::abs(wide) > 1) return fail("a number is too large");
        number = 0; // too small to be told from it
    }
    // A number that breaks off in its exponent, or goes on in other digits, is no number.
    if (error != std::errc() ||
        (stop != end && std::string_view("eExX").find(*stop) != std::string_view::npos))
        return fail("no number where one belongs");
    rest.remove_prefix(static_cast<std::size_t>(stop - rest.data()));
    value = minus ? -number : number;
    return true;
}

bool asc_scanner::fail(const std::string& reason) {
    const std::string_view read = all.substr(0, all.size() - rest.size());
    why = "line " + std::to_string(std::ranges::count(read, '\n') + 1) + ": " + reason;
    return false;
}

void asc_scanner::skip_blanks() {
    rest.remove_prefix(std::min(rest.find_first_not_of(blanks), rest.size()));
}

bool asc_scanner::take_minus() {
    const bool minus = rest.starts_with('-');
    if (minus || rest.starts_with('+')) rest.remove_prefix(1);
    return minus;
}

bool asc_scanner::ended(std::string_view wanted) {
    why = "the file ends where \"" + std::string(wanted) + "\" is looked for";
    return false;
}
