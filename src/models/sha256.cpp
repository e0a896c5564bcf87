// SPDX-License-Identifier: MIT
#include "models/sha256.h"

#include "platform/system/FileSystem.h"

#include <QByteArrayView>

#include <openssl/evp.h>

#include <array>
#include <memory>

namespace talvera {

namespace {

constexpr qint64 blockSize = 1 << 20;

struct FreeContext {
    void operator()(EVP_MD_CTX* context) const { EVP_MD_CTX_free(context); }
};

void require(bool succeeded) {
    if (!succeeded) // there is no memory left, or no such library
        qFatal("SHA-256 failed");
}

} // namespace

QString sha256Hex(FileSystem& files, const QString& path, const std::function<bool()>& isGivenUp) {
    const std::unique_ptr<EVP_MD_CTX, FreeContext> context(EVP_MD_CTX_new());
    require(context && EVP_DigestInit_ex(context.get(), EVP_sha256(), nullptr) == 1);
    files.readBlocks(path, blockSize, [&](QByteArrayView block) {
        if (isGivenUp())
            throw PlatformError(QStringLiteral("SHA-256"), static_cast<int>(std::errc::operation_canceled));
        require(EVP_DigestUpdate(context.get(), block.data(), static_cast<std::size_t>(block.size())) == 1);
    });
    std::array<unsigned char, EVP_MAX_MD_SIZE> digest{};
    unsigned int length = 0;
    require(EVP_DigestFinal_ex(context.get(), digest.data(), &length) == 1);
    const QByteArray bytes(reinterpret_cast<const char*>(digest.data()), static_cast<qsizetype>(length));
    return QString::fromLatin1(bytes.toHex());
}

} // namespace talvera
