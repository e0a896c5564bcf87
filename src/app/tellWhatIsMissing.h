// SPDX-License-Identifier: MIT
#pragma once

namespace talvera {

class DictationHUDController;
class FileSystem;
class ModelStore;

/// Says on the screen what of the speech model isn't in its place; nothing when all is there. As long as
/// there is no wizard to see to it.
void tellWhatIsMissing(FileSystem& files, const ModelStore& models, DictationHUDController& hud);

} // namespace talvera
