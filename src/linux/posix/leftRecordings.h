// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

namespace talvera {

/// Deletes the recordings, chunks, transcripts and core files in the private temporary directory. While a
/// dictation runs they are its own business; this is for what a killed process has left there, and for the
/// end.
void removeLeftRecordings(const QString& temporaryDirectory);

} // namespace talvera
