// SPDX-License-Identifier: MIT
#include "delivery/FocusProtectionMode.h"
#include "delivery/InsertionMode.h"
#include "delivery/TextInserter.h"

#include <QStringList>

#include <gtest/gtest.h>

using namespace talvera;

namespace {

TEST(InsertionMode, rawValues_areThePersistedFormInDeclarationOrder) {
    QStringList raw;
    for (const auto mode : allCases<InsertionMode>())
        raw.append(rawValue(mode));
    EXPECT_EQ(raw, QStringList({"paste", "autoByDuration"}));
}

TEST(InsertionMode, fromRawValue_matchesExactlyOrNot) {
    EXPECT_EQ(fromRawValue<InsertionMode>("paste"), InsertionMode::Paste);
    EXPECT_EQ(fromRawValue<InsertionMode>("autoByDuration"), InsertionMode::AutoByDuration);
    EXPECT_EQ(fromRawValue<InsertionMode>("typed"), std::nullopt);
    EXPECT_EQ(fromRawValue<InsertionMode>("Paste"), std::nullopt);
    EXPECT_EQ(fromRawValue<InsertionMode>(""), std::nullopt);
}

TEST(FocusProtectionMode, rawValues_areThePersistedFormInDeclarationOrder) {
    QStringList raw;
    for (const auto mode : allCases<FocusProtectionMode>())
        raw.append(rawValue(mode));
    EXPECT_EQ(raw, QStringList({"reactivate", "clipboardOnly"}));
}

TEST(FocusProtectionMode, fromRawValue_matchesExactlyOrNot) {
    EXPECT_EQ(fromRawValue<FocusProtectionMode>("reactivate"), FocusProtectionMode::Reactivate);
    EXPECT_EQ(fromRawValue<FocusProtectionMode>("clipboardOnly"), FocusProtectionMode::ClipboardOnly);
    EXPECT_EQ(fromRawValue<FocusProtectionMode>("x"), std::nullopt);
}

TEST(TextInserter, resolveMode_typesOnlyWhatIsShorterThanTheThreshold) {
    const auto resolve = TextInserter::resolveMode;
    EXPECT_EQ(resolve(InsertionMode::AutoByDuration, 14.999, 15.0), ResolvedMode::Typewriter);
    EXPECT_EQ(resolve(InsertionMode::AutoByDuration, 15.0, 15.0), ResolvedMode::Paste) << "at the threshold";
    EXPECT_EQ(resolve(InsertionMode::AutoByDuration, 20.0, 15.0), ResolvedMode::Paste);
    EXPECT_EQ(resolve(InsertionMode::AutoByDuration, 0.0, 0.0), ResolvedMode::Paste);
}

TEST(TextInserter, resolveMode_pastesAnyDurationIfTheUserWantsItSo) {
    EXPECT_EQ(TextInserter::resolveMode(InsertionMode::Paste, 0.3, 15.0), ResolvedMode::Paste);
    EXPECT_EQ(TextInserter::resolveMode(InsertionMode::Paste, 100.0, 15.0), ResolvedMode::Paste);
}

} // namespace
