// The four scenes behind the timed movements. None has an end time; each draws the frame of time `t`.
#pragma once

struct show;

void movement3_draw(show& all, float t); // the meteor in negative
void movement4_draw(show& all, float t); // the light field
void movement5_draw(show& all, float t); // a still picture: `canvas` as it was left
void movement6_draw(show& all, float t); // the card
