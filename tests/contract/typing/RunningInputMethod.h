// SPDX-License-Identifier: MIT
#pragma once

#include <QTemporaryDir>

#include <string>
#include <sys/types.h>
#include <vector>

namespace talvera::test {

/// An input method with one engine, which stands between the keyboard and every application that is started
/// while this lives. It keeps its settings in a home of its own.
class RunningInputMethod {
public:
    enum class Kind { IbusHangul, IbusAnthy, FcitxPinyin };

    /// Returns when it has announced itself. Throws std::runtime_error when it doesn't.
    explicit RunningInputMethod(Kind kind);
    ~RunningInputMethod();
    RunningInputMethod(const RunningInputMethod&) = delete;
    RunningInputMethod& operator=(const RunningInputMethod&) = delete;

private:
    void set(const char* name, const std::string& value);

    QTemporaryDir m_home;
    pid_t m_process = 0;
    std::vector<std::pair<std::string, std::string>> m_before; ///< the environment's former values
    std::vector<std::string> m_new;                            ///< and what it didn't have
};

} // namespace talvera::test
