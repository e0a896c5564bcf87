// SPDX-License-Identifier: MIT
#include "InMemoryPreferenceStore.h"
#include "RecordingConsole.h"
#include "SimulatedMainActor.h"
#include "linux/posix/PosixFileSystem.h"
#include "linux/xdg/JsonPreferenceStore.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <limits>

using namespace talvera;

namespace {

/// A store, and a way to end its program and start it again.
class Subject {
public:
    virtual ~Subject() = default;
    virtual PreferenceStore& store() = 0;
    virtual void relaunch() = 0;
};

class InMemorySubject final : public Subject {
public:
    PreferenceStore& store() override { return m_store; }
    void relaunch() override {}

private:
    test::InMemoryPreferenceStore m_store;
};

class JsonSubject final : public Subject {
public:
    PreferenceStore& store() override { return *m_store; }
    void relaunch() override {
        m_store.reset();
        m_actor.settle();
        m_store = launched();
    }

private:
    std::unique_ptr<JsonPreferenceStore> launched() {
        return std::make_unique<JsonPreferenceStore>(m_directory.path(), m_files, m_actor, m_writer,
                                                     m_console);
    }

    QTemporaryDir m_directory;
    PosixFileSystem m_files;
    test::SimulatedMainActor m_actor;
    test::SimulatedSerialQueue m_writer{m_actor};
    test::RecordingConsole m_console;
    std::unique_ptr<JsonPreferenceStore> m_store = launched();
};

template <typename T>
class PreferenceStoreContract : public testing::Test {
protected:
    void SetUp() override { subject = std::make_unique<T>(); }
    PreferenceStore& store() { return subject->store(); }

    std::unique_ptr<Subject> subject;
};

using Subjects = testing::Types<InMemorySubject, JsonSubject>;

class SubjectNames {
public:
    template <typename T>
    static std::string GetName(int) {
        return std::is_same_v<T, JsonSubject> ? "Json" : "InMemory";
    }
};

TYPED_TEST_SUITE(PreferenceStoreContract, Subjects, SubjectNames);

QByteArray everyByte() {
    QByteArray bytes;
    for (int byte = 0; byte < 256; ++byte)
        bytes.append(static_cast<char>(byte));
    return bytes;
}

const QString key = QStringLiteral("key");

TYPED_TEST(PreferenceStoreContract, storedValue_keepsItsTypeAndContent) {
    const std::vector<PreferenceValue> values{
        true,
        false,
        std::int64_t{0},
        std::int64_t{1},
        std::int64_t{9007199254740993}, // the first that a double can't hold
        std::numeric_limits<std::int64_t>::max(),
        std::numeric_limits<std::int64_t>::min(),
        0.0,
        1.0,
        15.0,
        0.1,
        -2.5e-300,
        std::numeric_limits<double>::max(),
        std::numeric_limits<double>::denorm_min(),
        1e22,
        QString(QLatin1String("")),
        QStringLiteral("true"),
        QStringLiteral("15.0"),
        QStringLiteral("a\"b\\c\n\t/ é 日本 \U0001F600 \u200d"),
        QString(QChar(0)) + QStringLiteral("after"),
        QByteArray(""),
        QByteArrayLiteral("plain"),
        everyByte(),
        QStringList{},
        QStringList{QStringLiteral("fr")},
        QStringList{QString(QLatin1String("")), QStringLiteral("b"), QStringLiteral("b")},
    };
    const auto keyOf = [](size_t index) { return QStringLiteral("key %1").arg(index); };
    for (size_t i = 0; i < values.size(); ++i) {
        this->store().set(keyOf(i), values[i]);
        EXPECT_EQ(this->store().object(keyOf(i)), values[i]) << "value " << i;
    }
    this->subject->relaunch();
    for (size_t i = 0; i < values.size(); ++i)
        EXPECT_EQ(this->store().object(keyOf(i)), values[i]) << "value " << i << " after a relaunch";
}

TYPED_TEST(PreferenceStoreContract, missingKey_isToldFromFalseZeroAndEmpty) {
    EXPECT_EQ(this->store().object(key), std::nullopt);
    EXPECT_FALSE(this->store().boolean(key));
    for (const PreferenceValue& value : {PreferenceValue(false), PreferenceValue(std::int64_t{0}),
                                         PreferenceValue(QString(QLatin1String("")))}) {
        this->store().set(key, value);
        EXPECT_NE(this->store().object(key), std::nullopt);
    }
}

TYPED_TEST(PreferenceStoreContract, newValue_replacesOneOfAnotherType) {
    this->store().set(key, QStringLiteral("text"));
    this->store().set(key, 2.0);
    this->subject->relaunch();
    EXPECT_EQ(this->store().object(key), PreferenceValue(2.0));
    this->store().set(key, std::int64_t{2});
    this->subject->relaunch();
    EXPECT_EQ(this->store().object(key), PreferenceValue(std::int64_t{2}));
}

TYPED_TEST(PreferenceStoreContract, removedKey_isMissingAlsoAfterARelaunch) {
    this->store().set(key, true);
    this->subject->relaunch();
    this->store().remove(key);
    EXPECT_EQ(this->store().object(key), std::nullopt);
    this->subject->relaunch();
    EXPECT_EQ(this->store().object(key), std::nullopt);
}

TYPED_TEST(PreferenceStoreContract, removingAMissingKey_isFine) {
    this->store().set(key, true);
    this->store().remove(QStringLiteral("another"));
    EXPECT_EQ(this->store().object(key), PreferenceValue(true));
}

TYPED_TEST(PreferenceStoreContract, anyText_canBeAKey) {
    for (const auto& name :
         {QString(QLatin1String("")), QStringLiteral("a.b/c~0"), QStringLiteral("ключ 🔑")}) {
        this->store().set(name, name);
        this->subject->relaunch();
        EXPECT_EQ(this->store().string(name), name);
    }
}

TYPED_TEST(PreferenceStoreContract, textAndDataReaders_takeTheirOwnTypeOnly) {
    this->store().set(QStringLiteral("text"), QStringLiteral("7"));
    this->store().set(QStringLiteral("data"), QByteArrayLiteral("7"));
    this->store().set(QStringLiteral("number"), std::int64_t{7});
    EXPECT_EQ(this->store().string(QStringLiteral("text")), QStringLiteral("7"));
    EXPECT_EQ(this->store().string(QStringLiteral("data")), std::nullopt);
    EXPECT_EQ(this->store().string(QStringLiteral("number")), std::nullopt);
    EXPECT_EQ(this->store().data(QStringLiteral("data")), QByteArrayLiteral("7"));
    EXPECT_EQ(this->store().data(QStringLiteral("text")), std::nullopt);
    EXPECT_EQ(this->store().data(QStringLiteral("missing")), std::nullopt);
}

struct Conversion {
    PreferenceValue stored;
    bool boolean;
    std::optional<bool> asBool;
    std::optional<double> asDouble;
};

TYPED_TEST(PreferenceStoreContract, truthAndNumberReaders_convertWhatConverts) {
    const std::vector<Conversion> conversions{
        {true, true, true, 1.0},
        {false, false, false, 0.0},
        {std::int64_t{0}, false, false, 0.0},
        {std::int64_t{1}, true, true, 1.0},
        {std::int64_t{2}, true, std::nullopt, 2.0},
        {0.0, false, false, 0.0},
        {1.0, true, true, 1.0},
        {0.5, true, std::nullopt, 0.5},
        {QStringLiteral("YES"), true, std::nullopt, std::nullopt},
        {QStringLiteral("true"), true, std::nullopt, std::nullopt},
        {QStringLiteral("1"), true, std::nullopt, std::nullopt},
        {QStringLiteral("no"), false, std::nullopt, std::nullopt},
        {QStringLiteral("15.0"), false, std::nullopt, std::nullopt},
        {QByteArrayLiteral("1"), false, std::nullopt, std::nullopt},
        {QStringList{QStringLiteral("1")}, false, std::nullopt, std::nullopt},
    };
    for (size_t i = 0; i < conversions.size(); ++i) {
        this->store().set(key, conversions[i].stored);
        EXPECT_EQ(this->store().boolean(key), conversions[i].boolean) << i;
        EXPECT_EQ(this->store().asBool(key), conversions[i].asBool) << i;
        EXPECT_EQ(this->store().asDouble(key), conversions[i].asDouble) << i;
    }
}

} // namespace
