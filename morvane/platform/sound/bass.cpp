// The calls of the sound layer, each handed to the table in place.
#include "morvane/platform/sound/bass.h"

#include "morvane/platform/sound/inner/bass_mixer.h"

namespace {

const bass::sound_layer* layer_in_place = &bass::mixer_layer;

} // namespace

void bass::set_sound_layer(const sound_layer* layer) {
    layer_in_place = layer != nullptr ? layer : &mixer_layer;
}

std::uint32_t BASS_GetVersion() {
    return layer_in_place->get_version();
}

std::uint32_t BASS_Init(std::int32_t device, std::uint32_t frequency, std::uint32_t flags, void* window) {
    return layer_in_place->init(device, frequency, flags, window);
}

std::uint32_t BASS_Start() {
    return layer_in_place->start();
}

std::uint32_t BASS_MusicLoad(bool memory, const void* file, std::uint32_t offset, std::uint32_t length,
                             std::uint32_t flags) {
    return layer_in_place->music_load(memory, file, offset, length, flags);
}

std::uint32_t BASS_StreamCreateFile(bool memory, const void* file, std::uint32_t offset, std::uint32_t length,
                                    std::uint32_t flags) {
    return layer_in_place->stream_create_file(memory, file, offset, length, flags);
}

std::uint32_t BASS_ChannelSetSync(std::uint32_t handle, std::uint32_t type, std::uint32_t parameter,
                                  bass::sync_function callback, void* user) {
    return layer_in_place->channel_set_sync(handle, type, parameter, callback, user);
}

std::uint32_t BASS_MusicPlay(std::uint32_t handle) {
    return layer_in_place->music_play(handle);
}

std::uint32_t BASS_StreamPlay(std::uint32_t handle, bool flush, std::uint32_t flags) {
    return layer_in_place->stream_play(handle, flush, flags);
}

std::uint32_t BASS_Free() {
    return layer_in_place->free();
}
