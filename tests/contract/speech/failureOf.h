// SPDX-License-Identifier: MIT
#pragma once

#include "speech/WhisperError.h"

#include <gtest/gtest.h>

namespace talvera::test {

/// The error with which `recognise` fails, as it has to.
template <typename Recognise>
WhisperError failureOf(Recognise recognise) {
    try {
        recognise();
    } catch (const WhisperError& error) {
        return error;
    }
    ADD_FAILURE() << "no failure";
    return WhisperError::missingBinary();
}

} // namespace talvera::test
