// SPDX-License-Identifier: MIT
#pragma once

#include "linux/support/FileDescriptor.h"

#include <QTemporaryDir>

#include <functional>
#include <future>
#include <map>
#include <memory>
#include <string>
#include <thread>
#include <vector>

struct wl_client;
struct wl_display;
struct wl_interface;
struct wl_resource;

namespace talvera::test {

/// Speaks as a Wayland compositor of any kind does, understands all and does nothing: for what no real one
/// does on purpose, such as to vanish or to fall silent, and for what none has yet.
class StandInCompositor {
public:
    /// Offers objects of these kinds, in their newest version. Each that a program takes is shown to
    /// `onBind`, on the compositor's thread.
    explicit StandInCompositor(std::vector<const wl_interface*> globals,
                               std::function<void(StandInCompositor&, wl_resource*)> onBind = nullptr);
    ~StandInCompositor();
    StandInCompositor(const StandInCompositor&) = delete;
    StandInCompositor& operator=(const StandInCompositor&) = delete;

    /// Where programs find it.
    std::string socket() const { return m_socket; }

    /// Makes an object of the program that has `parent`, for an event that tells of it. On its thread.
    wl_resource* create(wl_resource* parent, const wl_interface& interface);

    /// The object of that kind that a program has made last, shown to `action` on the compositor's thread.
    void show(const std::string& interface, const std::function<void(wl_resource*)>& action);

    /// From now on it reads and answers nothing. Only its end comes after that.
    void fallSilent();
    void vanish();

private:
    struct Dispatch;
    struct Global;

    void serve();
    void hand(std::function<void()> job);
    void run(const std::function<void()>& job);
    void adopt(wl_resource* resource);

    const QTemporaryDir m_directory;
    const std::string m_socket = m_directory.filePath("wayland").toStdString();
    const std::vector<const wl_interface*> m_kinds;
    const std::function<void(StandInCompositor&, wl_resource*)> m_onBind;
    const FileDescriptor m_wake;
    wl_display* m_display = nullptr;
    std::vector<std::unique_ptr<Global>> m_globals;
    std::map<std::string, wl_resource*> m_last; ///< by interface
    std::function<void()> m_job;                ///< handed over by the descriptor
    bool m_isEnding = false;
    bool m_isSilent = false;
    std::promise<void> m_goOn; ///< for the silent one
    std::thread m_thread;
};

} // namespace talvera::test
