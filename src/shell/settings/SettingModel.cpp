// SPDX-License-Identifier: MIT
#include "shell/settings/SettingModel.h"

#include <QtDebug>

namespace talvera {

void SettingModel::setValue(const QVariant& value) {
    if (!m_assign(value))
        qWarning("the setting %s takes no %s", qPrintable(m_key), value.typeName());
}

} // namespace talvera
