#pragma once

// Whether sounds can be played at all: a sound server and an output device. Qt's audio on Linux
// goes through a PulseAudio server (PipeWire provides one too); without one it complains on every
// lookup, so this looks for its socket first and stays quiet.
bool soundOutputAvailable();
