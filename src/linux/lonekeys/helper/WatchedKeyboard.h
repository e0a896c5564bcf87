// SPDX-License-Identifier: MIT
#pragma once

#include "linux/support/FileDescriptor.h"

#include <cstdint>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace talvera {

using KeyCodes = std::set<std::uint16_t>;

/// What a keyboard tells: that a watched key went down or up, or that some other key went down, and not
/// which.
struct KeyboardNews {
    enum class Kind { Down, Up, Other };
    Kind kind = Kind::Other;
    std::uint16_t code = 0; ///< 0 for others
};

/// A keyboard of the kernel's, opened for reading. The kernel itself keeps back what isn't asked for: at rest
/// nothing but the watched keys wakes us.
class WatchedKeyboard {
public:
    /// Nothing where the device at `path` can't be opened, or has none of these keys.
    static std::optional<WatchedKeyboard> open(const std::string& path, const KeyCodes& keys);

    const std::string& path() const { return m_path; }
    int descriptor() const { return m_device.get(); }

    /// While it is on, `Other` is told as well.
    void setHearsOthers(bool hears);

    /// Takes in what has come, without waiting. Nothing when the keyboard has gone.
    std::optional<std::vector<KeyboardNews>> read();

    /// The watched keys that are down.
    const KeyCodes& held() const { return m_held; }

private:
    WatchedKeyboard(std::string path, FileDescriptor device, const KeyCodes& keys);
    void setMask();
    void take(std::uint16_t code, int value, std::vector<KeyboardNews>& news);
    /// The kernel has thrown events away, since we were slow.
    void catchUp(std::vector<KeyboardNews>& news);

    std::string m_path;
    FileDescriptor m_device;
    KeyCodes m_keys;
    KeyCodes m_held;
    bool m_hearsOthers = false;
};

} // namespace talvera
