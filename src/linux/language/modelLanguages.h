// SPDX-License-Identifier: MIT
#pragma once

#include "linux/language/ModelFile.h"

#include <QStringList>

namespace talvera {

/// The languages that a model takes: those that its file names, else those that its makers tell of its
/// family, else all that there are codes for.
QStringList modelLanguages(const ModelFile& model);

/// The same of a model of which only such names are known as its own and its family's.
QStringList modelLanguages(const QStringList& names);

} // namespace talvera
