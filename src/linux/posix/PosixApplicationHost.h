// SPDX-License-Identifier: MIT
#pragma once

#include "platform/system/ApplicationHost.h"

namespace talvera {

/// This process. X11 sessions know no policy for a whole program: each window says for itself whether it
/// stands in task bars and switchers.
class PosixApplicationHost final : public ApplicationHost {
public:
    void changeCurrentDirectory(const QString& path) override;
    void setActivationPolicy(ActivationPolicy) override {}
    void terminate() override;
};

} // namespace talvera
