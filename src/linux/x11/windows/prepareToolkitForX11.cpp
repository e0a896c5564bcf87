// SPDX-License-Identifier: MIT
#include "linux/x11/windows/prepareToolkitForX11.h"

#include <QByteArray>

namespace talvera {

void prepareToolkitForX11() {
    // Windows are drawn in software: the libraries for the other way would only be memory.
    if (!qEnvironmentVariableIsSet("QT_XCB_GL_INTEGRATION"))
        qputenv("QT_XCB_GL_INTEGRATION", "none");
}

} // namespace talvera
