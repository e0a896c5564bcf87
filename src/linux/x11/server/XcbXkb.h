// SPDX-License-Identifier: MIT
#pragma once

#include <xcb/xcb.h>

// The header of the keyboard extension names a member with a keyword of C++.
#define explicit explicit_
#include <xcb/xkb.h>
#undef explicit
