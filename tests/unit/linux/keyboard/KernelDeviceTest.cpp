// SPDX-License-Identifier: MIT
#include "linux/keyboard/KernelDevice.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <linux/input-event-codes.h>

using namespace talvera;

namespace {

class KernelDevice : public testing::Test {
protected:
    /// What the kernel says of event3.
    void say(const char* capabilities) {
        const QDir device(sysfs.filePath(QStringLiteral("class/input/event3/device/capabilities")));
        QFile file(device.filePath(QStringLiteral("key")));
        ASSERT_TRUE(device.mkpath(QStringLiteral(".")) && file.open(QIODevice::WriteOnly));
        file.write(capabilities);
    }

    std::optional<bool> has(std::initializer_list<int> keys, const char* node = "/dev/input/event3") {
        std::vector<EvdevCode> codes;
        for (const int key : keys)
            codes.push_back(EvdevCode(key));
        return kernelDeviceHasAnyOf(codes, node, sysfs.path().toStdString());
    }

    const QTemporaryDir sysfs;
};

TEST_F(KernelDevice, laptopKeyboard_hasTheKeysOfItsBits) {
    say("402000000 3803078f800d001 feffffdfffefffff fffffffffffffffe\n");
    EXPECT_EQ(has({KEY_A}), true);
    EXPECT_EQ(has({KEY_RIGHTCTRL}), true);
    EXPECT_EQ(has({KEY_WAKEUP}), true);
    EXPECT_EQ(has({KEY_RESERVED}), false);
    EXPECT_EQ(has({KEY_F16}), false);
    EXPECT_EQ(has({KEY_F16, KEY_A}), true);
    EXPECT_EQ(has({KEY_FN}), false); // beyond all that it tells
}

TEST_F(KernelDevice, powerButton_hasNoneOfThem) {
    say("10000000000000 0\n");
    EXPECT_EQ(has({KEY_POWER}), true);
    EXPECT_EQ(has({KEY_A, KEY_WAKEUP}), false);
    EXPECT_EQ(has({}), false);
}

TEST_F(KernelDevice, deviceOfWhichTheKernelSaysNothing_isUnknown) {
    EXPECT_EQ(has({KEY_A}), std::nullopt);
    for (const char* node : {"", "/", "/dev/input/", "/dev/input/event4", "../../../etc"})
        EXPECT_EQ(has({KEY_A}, node), std::nullopt) << node;
    say("no numbers\n");
    EXPECT_EQ(has({KEY_A}), std::nullopt);
}

} // namespace
