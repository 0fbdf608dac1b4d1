#include "assets/music/tempo.h"

#include <algorithm>
#include <cstddef>

namespace assets::sound {

double tempo_map::step_length(int section) const {
    const auto at = static_cast<std::size_t>(std::clamp(section, 0, sections() - 1));
    return (starts[at + 1] - starts[at]) / steps_a_section;
}

double tempo_map::time(int section, double step) const {
    const auto at = static_cast<std::size_t>(std::clamp(section, 0, sections() - 1));
    return starts[at] + step * step_length(section);
}

} // namespace assets::sound
