// One pass over the frames of a source, in which everything that was asked for is made.
#pragma once

#include "tools/record/frame_source.h"
#include "tools/record/record_options.h"

// Writes film, stills and sheet, says on standard output what there is now, shows the progress there, and
// says on standard error what went wrong. Ctrl-C and its like end the pass: the film is finished with the
// frames that it has. Returns the program's exit code: 0; 1 after a failure; that of interrupted_exit_code if
// something that was asked for is cut or isn't there for it.
int record(const record_options& options, const frame_source& source);

// Looks whether the outputs can be written, before anything is drawn, and says on standard error what is in
// the way. Returns 0; 1 if one can't be; 2 if two of them are one.
int check_outputs(const record_options& options);
