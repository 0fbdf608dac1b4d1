// Standard output held back for a while: the contents of the scene, which a start-up prints, are no part of a
// recording.
#pragma once

// From construction to destruction nothing that the process prints on standard output appears.
class quiet_output {
  public:
    quiet_output();
    ~quiet_output();
    quiet_output(const quiet_output&) = delete;
    quiet_output& operator=(const quiet_output&) = delete;

  private:
    int saved_; // the descriptor that standard output had; below 0: it could not be held back
};
