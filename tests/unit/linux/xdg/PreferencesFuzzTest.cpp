// SPDX-License-Identifier: MIT
#include "JsonPreferenceStoreFixture.h"
#include "Mutator.h"
#include "language/TargetLanguage.h"
#include "persistence/AppSettings.h"

using namespace talvera;

namespace {

class PreferencesFuzz : public test::JsonPreferenceStoreFixture {};

const auto good = QByteArrayLiteral(R"({
  "format": "talvera-preferences",
  "preferences": {
    "AppleLanguages": ["fr"],
    "cleanupTone": "casual",
    "hasOnboarded": true,
    "hotkeyBinding": {"data": "eyJob2xkU3BlY2lhbCI6eyJfMCI6ImZuIn19"},
    "targetLanguageCode": "de",
    "translateToggleBinding": {"data": "eyJjaG9yZCI6eyJtb2RpZmllcnMiOjEsImtleUNvZGUiOjE3fX0="},
    "translateToggleBindingSet": true,
    "typewriterThresholdSeconds": 7.5
  },
  "version": 1
}
)");

const QByteArrayList tokens{
    "{",       "}",    "[",     "]",     ",",        ":",           "\"",
    "null",    "true", "false", "1e999", "-0",       "0.1e-400",    "\\u0000",
    "\\ud800", "\xff", "\n",    "{}",    "\"data\"", "\"version\"", "99999999999999999999"};

/// A launch on any file must come up with settings that make sense, keep the file's bytes under one name or
/// the other, and be able to store.
TEST_F(PreferencesFuzz, anyFile_givesValidSettingsAndLosesNoByte) {
    for (std::uint32_t seed = 1; seed <= 800; ++seed) {
        SCOPED_TRACE(testing::Message() << "seed " << seed);
        test::Mutator mutator(seed);
        const auto bytes =
            seed % 20 == 0 ? mutator.noise(mutator.below(3000)) : mutator.mutated(good, tokens);
        placeFile(bytes);
        {
            JsonPreferenceStore store(directory(), files, actor, disk, console);
            AppSettings settings(store);
            const auto target = settings.targetLanguageCode.get();
            ASSERT_EQ(TargetLanguage::byCode(target).code, target);
            ASSERT_NE(settings.lastTargetLanguageCode.get(), u"off");

            const auto setAside = path() + QStringLiteral(".broken-1");
            ASSERT_EQ(contentOf(QFile::exists(path()) ? path() : setAside), bytes);
            QFile::remove(setAside);
            if (seed % 25 != 0) { // the rest ends without a write, since that waits for the disk
                actor.settle();
                QFile::remove(path());
                continue;
            }
            settings.startSoundName.set(QStringLiteral("Tink"));
        }
        actor.settle();
        ASSERT_EQ(launch().string(QStringLiteral("startSoundName")), QStringLiteral("Tink"));
        ASSERT_EQ(namesInDirectory(), QStringList{QStringLiteral("preferences.json")});
        end();
    }
}

} // namespace
