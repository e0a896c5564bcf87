// SPDX-License-Identifier: MIT
#include "linux/language/ModelFile.h"
#include "PrintQt.h"
#include "linux/language/modelLanguages.h"

#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <random>

using namespace talvera;

namespace {

class ModelFileTest : public testing::Test {
protected:
    std::optional<ModelFile> read(const QByteArray& bytes) {
        QFile file(temporary.filePath("m.gguf"));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(bytes);
        file.close();
        return ModelFile::read(file.fileName());
    }

    static QByteArray testModel() {
        QFile file(TALVERA_TEST_LANGUAGE_MODEL);
        EXPECT_TRUE(file.open(QIODevice::ReadOnly));
        return file.readAll();
    }

    template <typename Number>
    static QByteArray raw(Number number) {
        return QByteArray(reinterpret_cast<const char*>(&number), sizeof number);
    }
    static QByteArray text(const QByteArray& bytes) { return raw(std::uint64_t(bytes.size())) + bytes; }
    static QByteArray head(int entries) {
        return "GGUF" + raw(std::uint32_t(3)) + raw(std::uint64_t(0)) + raw(std::uint64_t(entries));
    }
    static QByteArray entry(const QByteArray& key, const QByteArray& value) {
        return text(key) + raw(std::uint32_t(8)) + text(value);
    }
    static QByteArray entry(const QByteArray& key, std::uint32_t value) {
        return text(key) + raw(std::uint32_t(4)) + raw(value);
    }

    QTemporaryDir temporary;
};

TEST_F(ModelFileTest, head_saysWhatTheModelIs) {
    const auto model = ModelFile::read(TALVERA_TEST_LANGUAGE_MODEL);
    ASSERT_TRUE(model);
    EXPECT_EQ(model->architecture, "llama");
    EXPECT_EQ(model->name, "Talvera test model");
    EXPECT_EQ(model->languages, (QStringList{"en", "de"}));
    EXPECT_EQ(model->size, QFile(TALVERA_TEST_LANGUAGE_MODEL).size());
    EXPECT_EQ(model->contextLength, 2048);
    EXPECT_EQ(model->servedContext(), 2048);
    EXPECT_EQ(model->layers, 1);
    EXPECT_EQ(model->widthOfKeysAndValues, 2 * 288);
}

TEST_F(ModelFileTest, memory_isThatOfTheFileAndOfALongText) {
    // Eight heads of keys and values of 128 numbers each, in 28 layers, as a model of three billions has.
    const auto model =
        read(head(7) + entry("general.architecture", "llama") + entry("llama.context_length", 131072) +
             entry("llama.block_count", 28) + entry("llama.embedding_length", 3072) +
             entry("llama.attention.head_count", 24) + entry("llama.attention.head_count_kv", 8) +
             entry("llama.attention.key_length", 128));
    ASSERT_TRUE(model);
    EXPECT_EQ(model->servedContext(), 16384);
    const auto ofText = 16384LL * 28 * 8 * 256 * 2;
    EXPECT_GE(model->memoryNeeded(), model->size + ofText);
    EXPECT_LE(model->memoryNeeded(), model->size + ofText + (1LL << 30));
}

TEST_F(ModelFileTest, whatIsNoModel_isNone) {
    EXPECT_FALSE(ModelFile::read(temporary.filePath("missing")));
    EXPECT_FALSE(read(""));
    EXPECT_FALSE(read("GGUF"));
    EXPECT_FALSE(read("<html>Not found</html>, and much more of that"));
    EXPECT_FALSE(read(head(0)));
    auto old = head(1) + entry("general.architecture", "llama");
    old[4] = 1;
    EXPECT_FALSE(read(old));
}

TEST_F(ModelFileTest, lengthsThatLie_areNotBelieved) {
    const auto architecture = entry("general.architecture", "llama");
    const auto huge = raw(~std::uint64_t(0));
    EXPECT_TRUE(read(head(1000000) + architecture)) << "what is there counts";
    EXPECT_FALSE(read(head(1) + huge + "general.architecture"));
    EXPECT_FALSE(read(head(1) + text("general.architecture") + raw(std::uint32_t(8)) + huge));
    EXPECT_TRUE(
        read(head(2) + architecture + text("x") + raw(std::uint32_t(9)) + raw(std::uint32_t(8)) + huge));
    EXPECT_TRUE(read(head(2) + architecture + text("x") + raw(std::uint32_t(99))));
    const auto model = read(head(2) + architecture + entry("llama.block_count", ~std::uint32_t(0)) +
                            entry("llama.embedding_length", ~std::uint32_t(0)));
    ASSERT_TRUE(model);
    EXPECT_GT(model->memoryNeeded(), 0);
}

TEST_F(ModelFileTest, headWithoutAnEnd_isNotReadToIt) {
    const int texts = 300;
    auto bytes = head(texts + 2) + entry("general.architecture", "llama");
    for (int i = 0; i < texts; ++i)
        bytes += entry("x" + QByteArray::number(i), QByteArray(1 << 16, 'x'));
    const auto model = read(bytes + entry("general.name", "too late"));
    ASSERT_TRUE(model);
    EXPECT_EQ(model->name, "");
}

TEST_F(ModelFileTest, anyDamage_isReadWithoutHarm) {
    const auto whole = testModel().left(8192);
    std::mt19937 random(7);
    for (int round = 0; round < 2000; ++round) {
        auto damaged = whole.left(static_cast<qsizetype>(random() % 8192));
        for (unsigned flips = random() % 8; flips > 0 && !damaged.isEmpty(); --flips)
            damaged[static_cast<qsizetype>(random() % static_cast<unsigned>(damaged.size()))] =
                static_cast<char>(random());
        if (const auto model = read(damaged)) {
            EXPECT_GT(model->memoryNeeded(), 0);
            EXPECT_FALSE(modelLanguages(*model).isEmpty());
        }
    }
}

TEST(ModelLanguages, areThoseOfTheFileOfTheFamilyOrAll) {
    ModelFile model;
    model.name = "Meta Llama 3.1 8B Instruct";
    EXPECT_TRUE(modelLanguages(model).contains("th"));
    EXPECT_FALSE(modelLanguages(model).contains("ru"));
    model.languages = QStringList{"ru"};
    EXPECT_EQ(modelLanguages(model), QStringList{"ru"});
    model = {};
    model.name = "mine";
    model.family = "SmolLM2";
    EXPECT_EQ(modelLanguages(model), QStringList{"en"});
    model.family = "Unheard-of";
    for (const auto* code : {"en", "de", "ru", "ja", "zh", "uk", "pl"})
        EXPECT_TRUE(modelLanguages(model).contains(QLatin1String(code))) << code;
}

} // namespace
