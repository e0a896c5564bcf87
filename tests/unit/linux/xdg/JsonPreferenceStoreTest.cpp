// SPDX-License-Identifier: MIT
#include "JsonPreferenceStoreFixture.h"

#include "linux/support/replaceFile.h"

#include <csignal>
#include <random>

#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

using namespace talvera;

namespace {

const QString key = QStringLiteral("key");
const auto ours = QByteArrayLiteral(R"({
  "format": "talvera-preferences",
  "preferences": {
    "key": true
  },
  "version": 1
}
)");

class JsonPreferenceStoreTest : public test::JsonPreferenceStoreFixture {};

mode_t modeOf(const QString& path) {
    struct stat status {};
    return ::lstat(QFile::encodeName(path).constData(), &status) == 0 ? status.st_mode & 07777 : 0;
}

TEST_F(JsonPreferenceStoreTest, launchWithoutChanges_writesNothing) {
    launch();
    end();
    EXPECT_EQ(writer.jobs, 0);
    EXPECT_FALSE(QFile::exists(directory()));
    EXPECT_TRUE(console.logged().isEmpty());
}

TEST_F(JsonPreferenceStoreTest, file_hasThePublishedFormAndIsPrivate) {
    launch().set(key, true);
    end();
    EXPECT_EQ(contentOf(path()).toStdString(), ours.toStdString());
    EXPECT_EQ(modeOf(path()), 0600U);
    EXPECT_EQ(modeOf(directory()), 0700U);
    EXPECT_EQ(namesInDirectory(), QStringList{QStringLiteral("preferences.json")});
}

TEST_F(JsonPreferenceStoreTest, everyType_hasItsWrittenForm) {
    auto& store = launch();
    store.set(QStringLiteral("bool"), false);
    store.set(QStringLiteral("int"), std::int64_t{15});
    store.set(QStringLiteral("double"), 15.0);
    store.set(QStringLiteral("string"), QStringLiteral("é"));
    store.set(QStringLiteral("data"), QByteArrayLiteral("{}"));
    store.set(QStringLiteral("strings"), QStringList{QStringLiteral("fr")});
    end();
    const auto written = contentOf(path());
    for (const auto* line : {R"("bool": false)", R"("int": 15,)", R"("double": 15.0)", R"("string": "é")",
                             R"("data": "e30=")", "\"strings\": [\n      \"fr\"\n    ]"})
        EXPECT_TRUE(written.contains(line)) << line << "\nin " << written.constData();
}

TEST_F(JsonPreferenceStoreTest, changesOfOneTurn_areWrittenTogether) {
    auto& store = launch();
    store.set(QStringLiteral("a"), true);
    store.set(QStringLiteral("b"), true);
    store.remove(QStringLiteral("a"));
    EXPECT_EQ(writer.jobs, 0);
    actor.settle();
    EXPECT_EQ(writer.jobs, 1);
    store.set(QStringLiteral("c"), true);
    actor.settle();
    EXPECT_EQ(writer.jobs, 2);
    EXPECT_EQ(launch().object(QStringLiteral("c")), PreferenceValue(true));
}

TEST_F(JsonPreferenceStoreTest, equalValue_isNotWrittenAgain) {
    placeFile(ours);
    auto& store = launch();
    store.set(key, true);
    store.remove(QStringLiteral("missing"));
    end();
    EXPECT_EQ(writer.jobs, 0);
}

TEST_F(JsonPreferenceStoreTest, endRightAfterAChange_stillWritesIt) {
    launch().set(key, QStringLiteral("last words"));
    EXPECT_EQ(launch().string(key), QStringLiteral("last words"));
}

TEST_F(JsonPreferenceStoreTest, looserMode_isTightenedByTheNextWrite) {
    placeFile(ours);
    ::chmod(QFile::encodeName(path()).constData(), 0644);
    launch().set(key, false);
    end();
    EXPECT_EQ(modeOf(path()), 0600U);
}

TEST_F(JsonPreferenceStoreTest, whatANewerVersionStored_survives) {
    placeFile(R"({"format": "talvera-preferences", "version": 1, "hint": [1, null],
                  "preferences": {"future": {"deep": [{"x": null}]}, "big": 18446744073709551615,
                                  "mixed": [1, "a"], "noData": {"data": "%%%"}, "key": false}})");
    auto& store = launch();
    for (const auto* name : {u"future", u"big", u"mixed", u"noData"})
        EXPECT_EQ(store.object(QString::fromUtf16(name)), std::nullopt);
    store.set(key, true);
    end();
    const auto written = contentOf(path()).simplified().replace(" ", "");
    for (const auto* part :
         {R"("hint":[1,null])", R"("future":{"deep":[{"x":null}]})", R"("big":18446744073709551615)",
          R"("mixed":[1,"a"])", R"("noData":{"data":"%%%"})", R"("key":true)"})
        EXPECT_TRUE(written.contains(part)) << part << "\nin " << written.constData();
}

TEST_F(JsonPreferenceStoreTest, leftoverOfACrash_doesNotStandInTheWay) {
    placeFile(ours);
    QFile leftover(path() + QStringLiteral(".new"));
    ASSERT_TRUE(leftover.open(QIODevice::WriteOnly));
    leftover.write("half a fi");
    leftover.close();
    launch().set(key, false);
    end();
    EXPECT_EQ(launch().object(key), PreferenceValue(false));
    EXPECT_EQ(namesInDirectory(), QStringList{QStringLiteral("preferences.json")});
}

TEST_F(JsonPreferenceStoreTest, linkToAFile_staysALink) {
    QDir().mkpath(directory());
    const auto elsewhere = directory() + QStringLiteral("/dotfiles.json");
    QFile target(elsewhere);
    ASSERT_TRUE(target.open(QIODevice::WriteOnly));
    target.write(ours);
    target.close();
    ASSERT_TRUE(QFile::link(elsewhere, path()));
    auto& store = launch();
    EXPECT_EQ(store.object(key), PreferenceValue(true));
    store.set(key, std::int64_t{5});
    end();
    EXPECT_TRUE(QFileInfo(path()).isSymLink());
    EXPECT_TRUE(contentOf(elsewhere).contains("\"key\": 5"));
    EXPECT_EQ(namesInDirectory().size(), 2);
}

/// The kernel refuses to let files grow over some bytes, much as a full disk does.
class SmallDisk {
public:
    SmallDisk() {
        ::getrlimit(RLIMIT_FSIZE, &m_before);
        m_handler = std::signal(SIGXFSZ, SIG_IGN);
        const rlimit limit{40, m_before.rlim_max};
        ::setrlimit(RLIMIT_FSIZE, &limit);
    }
    ~SmallDisk() {
        ::setrlimit(RLIMIT_FSIZE, &m_before);
        std::signal(SIGXFSZ, m_handler);
    }

private:
    rlimit m_before{};
    void (*m_handler)(int) = SIG_DFL;
};

TEST_F(JsonPreferenceStoreTest, fullDisk_leavesTheOldFileWholeAndGoesOnInMemory) {
    placeFile(ours);
    auto& store = launch();
    {
        const SmallDisk full;
        store.set(key, QStringLiteral("new"));
        actor.settle();
        store.set(QStringLiteral("other"), true);
        actor.settle();
    }
    EXPECT_EQ(store.string(key), QStringLiteral("new"));
    EXPECT_EQ(contentOf(path()), ours);
    EXPECT_EQ(namesInDirectory(), QStringList{QStringLiteral("preferences.json")});
    ASSERT_EQ(console.logged().size(), 1);
    EXPECT_TRUE(console.logged().constFirst().startsWith(u"[settings] not saved: "));
}

TEST_F(JsonPreferenceStoreTest, diskWithRoomAgain_isWrittenToAtTheNextAssignmentOrAtTheEnd) {
    for (const bool assign : {true, false}) {
        placeFile(ours);
        auto& store = launch();
        {
            const SmallDisk full;
            store.set(key, QStringLiteral("new"));
            actor.settle();
        }
        if (assign) {
            store.set(key, QStringLiteral("new"));
            actor.settle();
            EXPECT_TRUE(contentOf(path()).contains("new"));
        }
        EXPECT_EQ(launch().string(key), QStringLiteral("new"));
    }
}

TEST_F(JsonPreferenceStoreTest, directoryThatCannotBe_losesNothingInMemory) {
    QFile inTheWay(directory());
    ASSERT_TRUE(inTheWay.open(QIODevice::WriteOnly));
    inTheWay.close();
    auto& store = launch();
    store.set(key, true);
    actor.settle();
    EXPECT_EQ(store.object(key), PreferenceValue(true));
    EXPECT_FALSE(console.logged().isEmpty());
}

TEST_F(JsonPreferenceStoreTest, killAtAnyMoment_leavesAWholeFile) {
    QDir().mkpath(directory());
    replaceFile(path(), QByteArray(3000, '0'));
    std::mt19937 random(7); // NOLINT: the same moments each time
    for (int run = 0; run < 40; ++run) {
        int progress[2];
        ASSERT_EQ(::pipe(progress), 0);
        const pid_t child = ::fork();
        if (child == 0) {
            for (char letter = '0';; letter = static_cast<char>(letter == '9' ? '0' : letter + 1)) {
                replaceFile(path(), QByteArray(3000, letter));
                if (::write(progress[1], &letter, 1) != 1)
                    ::_exit(1);
            }
        }
        ::close(progress[1]);
        char letter = 0;
        for (unsigned reads = 1 + random() % 4; reads > 0; --reads)
            ASSERT_EQ(::read(progress[0], &letter, 1), 1);
        ::kill(child, SIGKILL);
        ::waitpid(child, nullptr, 0);
        ::close(progress[0]);
        const auto content = contentOf(path());
        ASSERT_EQ(content, QByteArray(3000, content.isEmpty() ? '?' : content.front()));
    }
    replaceFile(path(), ours);
    EXPECT_EQ(namesInDirectory(), QStringList{QStringLiteral("preferences.json")});
}

} // namespace
