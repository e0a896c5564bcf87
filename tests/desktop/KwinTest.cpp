// SPDX-License-Identifier: MIT
// What a Plasma session has of its own: nothing is typed there, and all is pasted.
#include "OnWayland.h"

using namespace talvera::test;

namespace {

class DictationOnKwin : public OnWayland {};

} // namespace

TEST_F(DictationOnKwin, intoAQtEditor_isPasted) {
    startAgent();
    Receiver editor(Receiver::Kind::Qt);
    dictateInto(editor);
    const QString russian = "Пожалуйста, отправьте отчёт.";
    dictateInto(editor, russian, spoken(russian, "ru"));
}
