// SPDX-License-Identifier: MIT
#include "Microphone.h"

#include <QProcess>

#include <stdexcept>

namespace talvera::test::Microphone {

namespace {

void controlSound(const QStringList& arguments) {
    if (QProcess::execute("pactl", arguments) != 0)
        throw std::runtime_error("pactl " + arguments.join(' ').toStdString() + " has failed");
}

} // namespace

void unplug() {
    controlSound({"unload-module", "module-remap-source"});
}

void plugIn() {
    controlSound({"load-module", "module-remap-source", "source_name=rigmic", "master=rigmic_feed.monitor"});
    controlSound({"set-default-source", "rigmic"});
}

} // namespace talvera::test::Microphone
