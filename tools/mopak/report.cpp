#include "tools/mopak/report.h"

#include <cerrno>
#include <cstdio>
#include <cstring>

std::string printable(std::string_view name) {
    std::string text(name);
    for (std::size_t i = 0; i < text.size(); ++i) {
        const auto c = static_cast<unsigned char>(text[i]);
        const auto next = static_cast<unsigned char>(i + 1 < text.size() ? text[i + 1] : 0);
        if (c < 32 || c == 127) text[i] = '?';
        if (c == 0xc2 && next >= 0x80 && next < 0xa0) text.replace(i, 2, "?"); // the same, as two bytes
    }
    return text;
}

void report(std::string_view subject, std::string_view text) {
    std::fflush(stdout); // on a terminal both come in the order of events
    std::fprintf(stderr, "mopak: %s: %s\n", printable(subject).c_str(), printable(text).c_str());
}

std::string in_words(const char* message) {
    const int reason = errno;
    std::string text = message;
    if (text.ends_with('!')) text.pop_back();
    if (reason != 0) text += std::string(": ") + std::strerror(reason);
    return text;
}

std::string percent(std::int64_t part, std::int64_t whole) {
    if (whole <= 0) return "-";
    char text[32];
    std::snprintf(text, sizeof text, "%.1f%%",
                  100.0 * static_cast<double>(part) / static_cast<double>(whole));
    return text;
}

std::string count_of(std::int64_t count, std::string_view noun) {
    return std::to_string(count) + " " + std::string(noun) + (count == 1 ? "" : "s");
}
