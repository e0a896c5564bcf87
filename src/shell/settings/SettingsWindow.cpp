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
    if (!m_open) {
        m_open = std::make_unique<Open>();
        m_open->model = m_make.model();
        if (section)
            m_open->model->select(*section);
        m_open->window = m_make.window(*m_open->model);
        m_open->window->onClosed = [this] { close(); };
    } else if (section) {
        switchToSection(*section);
    }
    m_open->window->bringToFront();
}

void SettingsWindow::switchToSection(SettingsSectionID section) {
    if (m_open)
        m_open->model->select(section);
}

/// It ends in a later turn, since one of its own controls may have asked for this; or with this object, if
/// the program ends before that turn comes.
void SettingsWindow::close() {
    if (!m_open)
        return;
    m_closed = std::move(m_open);
    m_actor.post(m_lifetime.ifAlive([this] { m_closed.reset(); }));
}

} // namespace talvera
