// SPDX-License-Identifier: MIT
#include "JsonPreferenceStoreFixture.h"

#include "persistence/AppSettings.h"

#include <cstdlib>
#include <random>

#include <sys/stat.h>
#include <unistd.h>

using namespace talvera;

namespace {

const QString key = QStringLiteral("key");
const auto whole = QByteArrayLiteral(R"({
  "format": "talvera-preferences",
  "preferences": {
    "hasOnboarded": true,
    "hotkeyBinding": {
      "data": "eyJob2xkU3BlY2lhbCI6eyJfMCI6ImZuIn19"
    },
    "targetLanguageCode": "de",
    "typewriterThresholdSeconds": 7.5,
    "AppleLanguages": [
      "fr"
    ]
  },
  "version": 1
}
)");

class BrokenPreferences : public test::JsonPreferenceStoreFixture {
protected:
    QString setAside(int number = 1) const { return path() + QStringLiteral(".broken-%1").arg(number); }

    /// Launches on what lies there, and expects that it was set aside and that the store works all the same.
    void expectSetAside() {
        auto& store = launch();
        EXPECT_EQ(store.object(key), std::nullopt);
        EXPECT_FALSE(QFileInfo(path()).isSymLink());
        EXPECT_FALSE(QFile::exists(path()));
        EXPECT_EQ(console.logged().size(), 2);
        EXPECT_TRUE(console.logged().constLast().contains(setAside()));
        store.set(key, true);
        EXPECT_EQ(launch().object(key), PreferenceValue(true));
        EXPECT_EQ(console.logged().size(), 2);
    }
};

struct BrokenFile {
    const char* name;
    QByteArray bytes;
};

void PrintTo(const BrokenFile& file, std::ostream* out) {
    *out << file.name;
}

class BrokenPreferencesFile : public BrokenPreferences, public testing::WithParamInterface<BrokenFile> {};

TEST_P(BrokenPreferencesFile, isSetAsideWithItsBytesAndTheDefaultsApply) {
    placeFile(GetParam().bytes);
    expectSetAside();
    EXPECT_EQ(contentOf(setAside()), GetParam().bytes);
    EXPECT_EQ(namesInDirectory().size(), 2);
}

QByteArray noise(int size) {
    std::mt19937 random(1); // NOLINT: the same noise each time
    QByteArray bytes(size, 0);
    for (auto& byte : bytes)
        byte = static_cast<char>(random());
    return bytes;
}

INSTANTIATE_TEST_SUITE_P(
    Kinds, BrokenPreferencesFile,
    testing::Values(
        BrokenFile{"empty", ""}, BrokenFile{"cut", whole.left(whole.size() / 2)},
        BrokenFile{"withoutItsLastBrace", whole.trimmed().chopped(1)},
        BrokenFile{"followedByMore", whole + "{}"}, BrokenFile{"foreignText", "[General]\nkey=true\n"},
        BrokenFile{"foreignJson", R"({"key": true})"}, BrokenFile{"anotherFormat", R"({"format": "x"})"},
        BrokenFile{"array", "[]"}, BrokenFile{"null", "null"},
        BrokenFile{"futureVersion", R"({"format": "talvera-preferences", "version": 2, "preferences": {}})"},
        BrokenFile{"withoutVersion", R"({"format": "talvera-preferences", "preferences": {}})"},
        BrokenFile{"preferencesOfWrongType",
                   R"({"format": "talvera-preferences", "version": 1, "preferences": [1]})"},
        BrokenFile{"numberTooLarge",
                   R"({"format": "talvera-preferences", "version": 1, "preferences": {"a": 1e999}})"},
        BrokenFile{"noUtf8", QByteArray(whole).replace("fr", "\xff\xfe")},
        BrokenFile{"zeros", QByteArray(4096, '\0')}, BrokenFile{"noise", noise(4 * 1024 * 1024)},
        BrokenFile{"nested", QByteArray(4 * 1024 * 1024, '[')},
        BrokenFile{"larger16MB", QByteArray(16 * 1024 * 1024 + 1, ' ')}),
    [](const auto& file) { return std::string(file.param.name); });

TEST_F(BrokenPreferences, secondBrokenFile_doesNotReplaceTheFirst) {
    placeFile("first");
    launch();
    end();
    placeFile("second");
    launch();
    EXPECT_EQ(contentOf(setAside(1)), "first");
    EXPECT_EQ(contentOf(setAside(2)), "second");
}

TEST_F(BrokenPreferences, directoryInItsPlace_isSetAsideWithAllInIt) {
    QDir().mkpath(path() + QStringLiteral("/inner"));
    expectSetAside();
    EXPECT_TRUE(QFileInfo(setAside() + QStringLiteral("/inner")).isDir());
}

TEST_F(BrokenPreferences, linkToNothing_isSetAside) {
    QDir().mkpath(directory());
    ASSERT_TRUE(QFile::link(directory() + QStringLiteral("/gone"), path()));
    expectSetAside();
    EXPECT_TRUE(QFileInfo(setAside()).isSymLink());
    EXPECT_FALSE(QFile::exists(directory() + QStringLiteral("/gone")));
}

TEST_F(BrokenPreferences, linkToAForeignFile_isSetAsideAndItsTargetLeftAlone) {
    QDir().mkpath(directory());
    const auto target = directory() + QStringLiteral("/foreign");
    QFile foreign(target);
    ASSERT_TRUE(foreign.open(QIODevice::WriteOnly));
    foreign.write("not ours");
    foreign.close();
    ASSERT_TRUE(QFile::link(target, path()));
    expectSetAside();
    EXPECT_EQ(contentOf(target), "not ours");
}

TEST_F(BrokenPreferences, pipeInItsPlace_isSetAsideWithoutWaitingForAWriter) {
    QDir().mkpath(directory());
    ASSERT_EQ(::mkfifo(QFile::encodeName(path()).constData(), 0600), 0);
    expectSetAside();
}

TEST_F(BrokenPreferences, deviceInItsPlace_isSetAside) {
    QDir().mkpath(directory());
    ASSERT_TRUE(QFile::link(QStringLiteral("/dev/zero"), path()));
    expectSetAside();
}

/// For its lifetime this process may not do what only root may.
class Unprivileged {
public:
    Unprivileged()
        : m_switched(::getuid() == 0) {
        if (m_switched && ::seteuid(65534) != 0)
            std::abort();
    }
    ~Unprivileged() {
        if (m_switched && ::seteuid(0) != 0)
            std::abort();
    }

private:
    bool m_switched;
};

TEST_F(BrokenPreferences, unreadableFile_isSetAside) {
    placeFile(whole);
    const auto file = QFile::encodeName(path());
    const auto home = QFileInfo(directory()).path();
    if (::getuid() == 0) {
        for (const auto& each : {home, directory()})
            ASSERT_EQ(::chown(QFile::encodeName(each).constData(), 65534, 65534), 0);
    }
    ASSERT_EQ(::chmod(file.constData(), 0), 0);
    {
        const Unprivileged user;
        expectSetAside();
    }
    ASSERT_EQ(::chmod(QFile::encodeName(setAside()).constData(), 0600), 0);
    EXPECT_EQ(contentOf(setAside()), whole);
}

TEST_F(BrokenPreferences, fileThatCannotBeSetAside_isNeverWrittenOver) {
    placeFile("not ours");
    const auto holder = QFile::encodeName(directory());
    ASSERT_EQ(::chmod(holder.constData(), 0555), 0);
    ASSERT_EQ(::chmod(QFile::encodeName(QFileInfo(directory()).path()).constData(), 0755), 0);
    {
        const Unprivileged user;
        auto& store = launch();
        store.set(key, true);
        actor.settle();
        EXPECT_EQ(store.object(key), PreferenceValue(true));
        EXPECT_EQ(contentOf(path()), "not ours");
    }
    ASSERT_EQ(::chmod(holder.constData(), 0755), 0);
    EXPECT_EQ(launch().object(key), PreferenceValue(true)); // the end of the first launch could set it aside
    EXPECT_EQ(contentOf(setAside()), "not ours");
}

TEST_F(BrokenPreferences, valuesOfWrongTypes_giveTheirDefaultsAndKeepTheFile) {
    placeFile(R"({"format": "talvera-preferences", "version": 1, "preferences": {
        "targetLanguageCode": 5, "hasOnboarded": [], "hotkeyBinding": "fn", "cleanupTone": {"data": ""},
        "typewriterThresholdSeconds": "15", "showMenuBarIcon": null, "appLanguage": {"x": 1}}})");
    AppSettings settings(launch());
    EXPECT_TRUE(console.logged().isEmpty());
    EXPECT_EQ(settings.targetLanguageCode.get(), u"off");
    EXPECT_FALSE(settings.hasOnboarded.get());
    EXPECT_EQ(settings.hotkeyBinding.get(),
              HotkeyBinding::holdSpecial(HotkeyBinding::SpecialKey::RightCommand));
    EXPECT_EQ(settings.cleanupTone.get(), CleanupTone::Conversational);
    EXPECT_EQ(settings.typewriterThresholdSeconds.get(), 15.0);
    EXPECT_TRUE(settings.showMenuBarIcon.get());
    EXPECT_EQ(settings.appLanguage.get(), u"system");
}

TEST_F(BrokenPreferences, settings_areWrittenOnceAtTheFirstLaunchAndNotAtTheNext) {
    {
        const AppSettings settings(launch());
        actor.settle();
        EXPECT_EQ(writer.jobs, 1);
    }
    {
        const AppSettings settings(launch());
        actor.settle();
        EXPECT_EQ(writer.jobs, 1);
    }
}

} // namespace
