#include "tools/kit/progress.h"

#include <algorithm>
#include <array>
#include <cmath>

std::string progress_text(const char* work, std::int64_t done, std::int64_t total, double seconds) {
    const double rate = seconds > 0 ? static_cast<double>(done) / seconds : 0;
    std::array<char, 128> text{};
    int length = std::snprintf(text.data(), text.size(), "%s %3lld%%, %.0f frames a second", work,
                               static_cast<long long>(done * 100 / total), rate);
    if (rate > 0 && done < total && length < static_cast<int>(text.size())) {
        const long long left = std::llround(std::ceil(static_cast<double>(total - done) / rate));
        const auto used = static_cast<std::size_t>(std::max(length, 0));
        std::snprintf(text.data() + used, text.size() - used, ", %lld:%02lld left", left / 60, left % 60);
    }
    return text.data();
}

progress::progress(std::FILE* out, bool terminal, const char* work, std::int64_t total)
    : out_(out), terminal_(terminal), work_(work), total_(total) {}

void progress::done(std::int64_t frames) {
    using namespace std::chrono_literals;
    const clock::time_point now = clock::now();
    const double seconds = std::chrono::duration<double>(now - start_).count();
    if (terminal_) {
        if (now - shown_ < 100ms) return;
        shown_ = now;
        on_screen_ = true;
        std::fprintf(out_, "\r%-60s", progress_text(work_, frames, total_, seconds).c_str());
    } else {
        const std::int64_t tenths = frames * 10 / total_;
        if (tenths == tenths_) return;
        tenths_ = tenths;
        std::fprintf(out_, "%s\n", progress_text(work_, frames, total_, seconds).c_str());
    }
    std::fflush(out_);
}

void progress::clear() {
    if (!on_screen_) return;
    std::fprintf(out_, "\r%60s\r", "");
    std::fflush(out_);
    on_screen_ = false;
}
