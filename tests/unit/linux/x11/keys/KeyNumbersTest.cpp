// SPDX-License-Identifier: MIT
// A key has several numbers, of which none may be taken for another: what is said here is said to the
// compiler.
#include "linux/keyboard/EvdevKeys.h"
#include "linux/x11/server/XKeycode.h"
#include "linux/x11/server/XKeysym.h"
#include "platform/keyboard/VirtualKey.h"

#include <concepts>

using namespace talvera;

namespace {

template <typename One, typename Other>
constexpr bool mixes = std::convertible_to<One, Other> || std::convertible_to<Other, One> ||
                       std::constructible_from<One, Other> || std::equality_comparable_with<One, Other>;

/// Neither is a number that could stand for the other by mistake.
template <typename One, typename... Others>
constexpr bool standsApartFrom = !(mixes<One, Others> || ...);

static_assert(standsApartFrom<VirtualKey, EvdevCode, XKeycode, XKeysym, int, std::uint32_t>);
static_assert(standsApartFrom<EvdevCode, VirtualKey, XKeycode, XKeysym, int, std::uint32_t>);
static_assert(standsApartFrom<XKeycode, VirtualKey, EvdevCode, XKeysym, int, std::uint32_t>);
static_assert(standsApartFrom<XKeysym, VirtualKey, EvdevCode, XKeycode, int, std::uint32_t>);

// And the question can be answered the other way.
static_assert(mixes<int, std::uint32_t> && mixes<XKeycode, XKeycode>);

} // namespace
