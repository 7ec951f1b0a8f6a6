#pragma once

#include <QByteArray>
#include <QString>
#include <libssh/libssh.h>
#include <memory>

struct TSSHKeyDeleter
{
    void operator()(ssh_key key) const { ssh_key_free(key); }
};
using TSSHKeyPtr = std::unique_ptr<ssh_key_struct, TSSHKeyDeleter>;

/// nullptr when the key cannot be read.
TSSHKeyPtr ImportSSHKey(const QByteArray &privateKey, const QString &passPhrase);
