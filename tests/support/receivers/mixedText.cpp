// SPDX-License-Identifier: MIT
#include "receivers/mixedText.h"

namespace talvera::test {

QString mixedText() {
    return QStringLiteral("The quick brown fox jumps over 13 lazy dogs; \"quoted\" {braces} [brackets] "
                          "<tags> #1 @ 50% & more? ~/a_b|c\\d^e`f\n"
                          "Съешь же ещё этих мягких французских булок, да выпей чаю.\n"
                          "Falsches Üben von Xylophonmusik quält jeden größeren Zwerg: 5 € §3\n"
                          "Où l'œuvre naïve, ça déçoit — Zażółć gęślą jaźń\n"
                          "नमस्ते दुनिया مرحبا بالعالم\t漢字かな交じり文 안녕하세요 세계\n"
                          "cafe\u0301 n\u0303 a\u0308\u0304 😀🎉👩\u200d💻👍🏽 end");
}

} // namespace talvera::test
