// SPDX-License-Identifier: MIT
#include "linux/wayland/sway/SwayConfig.h"
#include "PrintQt.h"
#include "platform/keyboard/VirtualKey.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

using namespace talvera;

namespace {

std::vector<SwayConfig::File> noFiles(const QString&, const QString&) {
    return {};
}

/// The combinations that this configuration binds, such as "Control+space" or "Control+65#" by keycode.
QStringList boundBy(const QByteArray& text, const SwayConfig::Include& include = noFiles) {
    QStringList all;
    const SwayConfig config({"/etc/sway/config", text}, include);
    for (const auto& [modifiers, key, isKeycode] : config.bound()) {
        QString name;
        for (const auto& [flag, word] :
             {std::pair(KeyFlag::Shift, "Shift+"), std::pair(KeyFlag::Control, "Control+"),
              std::pair(KeyFlag::Option, "Option+"), std::pair(KeyFlag::Command, "Command+")}) {
            if (modifiers & flag)
                name += word;
        }
        all << name + key + (isKeycode ? "#" : "");
    }
    return all;
}

TEST(SwayConfig, bindings_areFoundByNameAndByKeycode) {
    EXPECT_EQ(boundBy("bindsym Mod4+Return exec foot\n"
                      "  bindcode --release --locked Ctrl+Alt+65 exec x\n"
                      "bindsym --to-code Control+Mod1+Shift+SPACE nop\n"
                      "bindsym Pause nop"),
              (QStringList{"Command+return", "Control+Option+65#", "Shift+Control+Option+space", "pause"}));
}

TEST(SwayConfig, otherLines_bindNothing) {
    EXPECT_EQ(boundBy("# bindsym Mod4+a nop\noutput * bg x fill\nbindsym\nbindsym --locked\nbindsym a+b nop\n"
                      "bindsym Mod2+a nop\nbindswitch lid:on nop\n}\n\n{\n}\nset\nset $a\ninclude\n"),
              QStringList());
}

TEST(SwayConfig, variables_areReplacedTheLongestNameFirst) {
    EXPECT_EQ(boundBy("set $m Mod4\nset $mod $m+Shift\nset $key \\\nspace\nbindsym $mod+$key nop\n"),
              QStringList{"Shift+Command+space"});
}

TEST(SwayConfig, blocks_standBeforeTheirLines) {
    EXPECT_EQ(boundBy("bindsym --locked {\n  Mod4+a nop\n  Mod4+b nop\n}\nbindsym Mod4+c nop\n"
                      "mode \"default\" {\n bindsym Mod4+d nop\n}\n"),
              (QStringList{"Command+a", "Command+b", "Command+c", "Command+d"}));
}

TEST(SwayConfig, otherModes_bindNothingInTheFirst) {
    EXPECT_EQ(boundBy("mode \"resize\" {\n bindsym {\n  Left resize\n }\n bindsym Escape mode default\n}\n"
                      "bar {\n bindsym button1 nop\n}\nbindsym Mod4+r mode resize\n"),
              QStringList{"Command+r"});
}

TEST(SwayConfig, unbinding_takesABindingAway) {
    EXPECT_EQ(boundBy("bindsym Mod4+a nop\nbindsym Mod4+b nop\nunbindsym Mod4+a\n"),
              QStringList{"Command+b"});
}

TEST(SwayConfig, includedFiles_areReadInTheirPlaceAndFromTheirDirectory) {
    const auto files = [](const QString& pattern, const QString& directory) {
        using Files = std::vector<SwayConfig::File>;
        if (pattern == "d/*" && directory == "/etc/sway")
            return Files{{"/etc/sway/d/first", "bindsym $mod+a nop\ninclude more\n"}};
        if (pattern == "more" && directory == "/etc/sway/d")
            return Files{{"/etc/sway/d/more", "bindsym $mod+b nop\n"}};
        return Files();
    };
    EXPECT_EQ(boundBy("set $mod Mod4\ninclude d/*\n", files), (QStringList{"Command+a", "Command+b"}));
}

TEST(SwayConfig, fileThatIsIncludedTwice_isReadOnce) {
    int asked = 0;
    const auto itself = [&asked](const QString&, const QString& directory) {
        ++asked;
        return std::vector<SwayConfig::File>{
            {directory + "/self", "bindsym Mod4+a nop\ninclude self\ninclude self\n"}};
    };
    EXPECT_EQ(boundBy("include self\nunbindsym Mod4+a\ninclude self\n", itself), QStringList());
    EXPECT_EQ(asked, 4);
}

TEST(SwayConfig, filesOfAPattern_areThoseInTheDirectory) {
    const QTemporaryDir directory;
    for (const auto* name : {"b.conf", "a.conf", "c.other"}) {
        QFile file(directory.filePath(name));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(name);
    }
    QByteArrayList texts;
    for (const auto& file : SwayConfig::filesNamed("*.conf", directory.path())) {
        EXPECT_EQ(file.path, QDir(directory.path()).canonicalPath() + '/' + QString::fromUtf8(file.text));
        texts << file.text;
    }
    EXPECT_EQ(texts, (QByteArrayList{"a.conf", "b.conf"}));
    EXPECT_TRUE(SwayConfig::filesNamed("/nowhere/*.conf", directory.path()).empty());
    EXPECT_TRUE(SwayConfig::filesNamed("$(touch x) (", directory.path()).empty());
}

} // namespace
