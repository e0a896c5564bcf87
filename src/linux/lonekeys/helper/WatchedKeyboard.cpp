// SPDX-License-Identifier: MIT
#include "linux/lonekeys/helper/WatchedKeyboard.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <utility>

#include <fcntl.h>
#include <linux/input.h>
#include <sys/ioctl.h>
#include <unistd.h>

namespace talvera {

namespace {

/// A set of codes as the kernel reads and writes it.
template <std::size_t count>
class CodeBits {
public:
    static constexpr std::size_t size = (count + 7) / 8;

    void insert(std::size_t code) { m_bytes.at(code / 8) |= static_cast<std::uint8_t>(1U << code % 8); }
    void insertAll() { m_bytes.fill(0xFF); }
    bool contains(std::size_t code) const { return (m_bytes.at(code / 8) >> code % 8 & 1) != 0; }
    std::uint8_t* data() { return m_bytes.data(); }

private:
    // A multiple of the kernel's words
    std::array<std::uint8_t, (size + sizeof(long) - 1) / sizeof(long) * sizeof(long)> m_bytes{};
};
using KeyBits = CodeBits<KEY_CNT>;
using TypeBits = CodeBits<EV_CNT>;

/// A kernel that doesn't know masks tells everything; what isn't asked for is dropped here then.
template <typename Bits>
void setMaskOf(int device, std::uint32_t type, Bits bits) {
    const input_mask mask{type, Bits::size, reinterpret_cast<std::uintptr_t>(bits.data())};
    (void)::ioctl(device, EVIOCSMASK, &mask);
}

template <typename Bits>
Bits askedFor(int device, unsigned long request) {
    Bits bits;
    (void)::ioctl(device, request, bits.data());
    return bits;
}

} // namespace

std::optional<WatchedKeyboard> WatchedKeyboard::open(const std::string& path, const KeyCodes& keys) {
    FileDescriptor device(::open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC | O_NOCTTY));
    if (!device.isOpen())
        return std::nullopt;
    const auto has = askedFor<KeyBits>(device.get(), EVIOCGBIT(EV_KEY, KeyBits::size));
    if (std::ranges::none_of(keys, [&has](std::uint16_t code) { return has.contains(code); }))
        return std::nullopt;
    return WatchedKeyboard(path, std::move(device), keys);
}

WatchedKeyboard::WatchedKeyboard(std::string path, FileDescriptor device, const KeyCodes& keys)
    : m_path(std::move(path))
    , m_device(std::move(device))
    , m_keys(keys) {
    TypeBits types;
    types.insert(EV_KEY);
    setMaskOf(m_device.get(), EV_SYN, types);
    setMask();
}

void WatchedKeyboard::setHearsOthers(bool hears) {
    if (std::exchange(m_hearsOthers, hears) != hears)
        setMask();
}

void WatchedKeyboard::setMask() {
    KeyBits wanted;
    if (m_hearsOthers)
        wanted.insertAll();
    for (const auto code : m_keys)
        wanted.insert(code);
    setMaskOf(m_device.get(), EV_KEY, wanted);
}

std::optional<std::vector<KeyboardNews>> WatchedKeyboard::read() {
    std::vector<KeyboardNews> news;
    std::array<input_event, 64> events{};
    for (;;) {
        const auto bytes = ::read(m_device.get(), events.data(), sizeof events);
        if (bytes < 0 && errno == EINTR)
            continue;
        if (bytes < 0 && errno == EAGAIN)
            return news;
        if (bytes <= 0)
            return std::nullopt;
        for (std::size_t i = 0; i < static_cast<std::size_t>(bytes) / sizeof(input_event); ++i) {
            const auto& event = events.at(i);
            if (event.type == EV_KEY)
                take(event.code, event.value, news);
            else if (event.type == EV_SYN && event.code == SYN_DROPPED)
                catchUp(news);
        }
        events.fill({}); // other keys may have come with ours
    }
}

void WatchedKeyboard::take(std::uint16_t code, int value, std::vector<KeyboardNews>& news) {
    constexpr int up = 0;
    constexpr int down = 1; // a repeat is 2
    using Kind = KeyboardNews::Kind;
    if (!m_keys.contains(code)) {
        if (m_hearsOthers && value == down)
            news.push_back({Kind::Other});
    } else if (value == down && m_held.insert(code).second) {
        news.push_back({Kind::Down, code});
    } else if (value == up && m_held.erase(code) > 0) {
        news.push_back({Kind::Up, code});
    }
}

void WatchedKeyboard::catchUp(std::vector<KeyboardNews>& news) {
    const auto down = askedFor<KeyBits>(m_device.get(), EVIOCGKEY(KeyBits::size));
    for (const auto code : m_keys)
        take(code, down.contains(code) ? 1 : 0, news);
}

} // namespace talvera
