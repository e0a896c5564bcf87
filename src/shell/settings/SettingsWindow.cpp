// SPDX-License-Identifier: MIT
#include "shell/settings/SettingsWindow.h"

#include "concurrency/MainActor.h"
#include "shell/settings/SettingsModel.h"

#include <utility>

namespace talvera {

SettingsWindow::SettingsWindow(MainActor& actor, Makers make)
    : m_actor(actor)
    , m_make(std::move(make)) {}

SettingsWindow::~SettingsWindow() = default;

void SettingsWindow::show(std::optional<SettingsSectionID> section) {
    if (!m_open.window) {
        m_open.model = m_make.model();
        if (section)
            m_open.model->select(*section);
        m_open.window = m_make.window(*m_open.model);
        m_open.window->onClosed = [this] { close(); };
    } else if (section) {
        switchToSection(*section);
    }
    m_open.window->bringToFront();
}

void SettingsWindow::switchToSection(SettingsSectionID section) {
    if (m_open.model)
        m_open.model->select(section);
}

/// The window ends in a later turn: one of its own controls may have asked for this.
void SettingsWindow::close() {
    m_actor.post([gone = std::make_shared<Open>(std::exchange(m_open, {}))]() mutable { gone.reset(); });
}

} // namespace talvera
