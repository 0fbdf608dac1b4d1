#include "morvane/base/log.h"

log_switches log_channel;

namespace {

const char* tag_of(std::uint32_t level) {
    switch (level) {
    case log_trace:
        return "[-]";
    case log_error:
        return "[ERROR]";
    case log_warning:
        return "[W]";
    case log_note:
        return "[N]";
    case log_debug:
        return "[D]";
    default:
        return "";
    }
}

} // namespace

bool log_wanted(std::uint32_t level) {
    const bool sink = (log_channel.to_file && log_channel.log_file != nullptr) || log_channel.to_stdout;
    return log_channel.enabled && (log_channel.level_mask & level) != 0 && sink;
}

int log_message(const char* message, std::uint32_t level, int critical) {
    if (log_wanted(level)) {
        const char* tag = tag_of(level);
        if (log_channel.to_file && log_channel.log_file != nullptr)
            std::fprintf(log_channel.log_file, "%s %s\n", tag, message);
        if (log_channel.to_stdout) std::printf("%s %s\n", tag, message);
    }
    if (critical == 1) std::printf("A critical error occured: %s\n", message);
    return critical == 1 ? 0 : 1;
}
