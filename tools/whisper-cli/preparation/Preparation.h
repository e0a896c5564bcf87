// SPDX-License-Identifier: MIT
#pragma once

namespace talvera::preparation {

/// Whether whoever has started the recogniser wants it to load its model first and to get the recording
/// later: the environment variable TALVERA_INPUT_FD then names a connected socket, which is standard input
/// from now on. What comes there up to its end is the recording. To be called once, before anything else is
/// opened.
bool isAsked();

/// Tells the other end that the model is loaded and that the recording can come.
void tellReady();

} // namespace talvera::preparation
