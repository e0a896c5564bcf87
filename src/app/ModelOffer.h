// SPDX-License-Identifier: MIT
#pragma once

#include "models/ModelSource.h"

#include <QString>

namespace talvera {

/// Where this program fetches its speech model, and whom it trusts there.
struct ModelOffer {
    ModelSource source;
    QString trustedToo{}; ///< a file of certificates beside the system's; empty for none

    /// What this build was configured with. A diagnostic build takes another offer from the file that
    /// $TALVERA_TEST_MODEL names, so that tests can serve a model of their own: JSON with "url", "sha256",
    /// "size", "trusted", and with "encoder" the first three once more.
    static ModelOffer ofThisBuild();
};

} // namespace talvera
