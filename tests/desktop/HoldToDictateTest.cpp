// SPDX-License-Identifier: MIT
// The main job: hold the key, speak, let go, and the words stand at the cursor.
#include "DesktopTest.h"

using namespace talvera::test;

namespace {

const QString sentence = QStringLiteral("Please send the report tomorrow.");

class HoldToDictate : public DesktopTest {
protected:
    void dictateInto(Receiver::Kind kind, const QJsonObject& preferences = {}) {
        startAgent(preferences);
        Receiver editor(kind);
        holdAndSay(spoken(sentence));
        EXPECT_TRUE(editor.waitForText(sentence)) << editor.text().toStdString();
        agent->await("state idle");
        EXPECT_TRUE(isClean());
    }
};

} // namespace

TEST_F(HoldToDictate, typedIntoAGtkEditor) {
    dictateInto(Receiver::Kind::Gtk);
}
