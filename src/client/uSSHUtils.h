#pragma once

#include <QByteArray>
#include <QString>

enum TSSHKeyAlgorithm { sshkaDSA, sshkaRSA, sshkaECDSA, sshkaEd25519, sshkaUnknown };

struct TSSHKeyInfo
{
    TSSHKeyAlgorithm Algorithm = sshkaUnknown;
    qint32 BitCount = 0;
    QString MD5FingerprintString; // "aa:bb:..." of the public key
};

class TSSHUtils
{
public:
    /// Reads a private key in OpenSSH, PEM or PKCS#8 form. False when it cannot be read, also for
    /// want of the right pass phrase.
    static bool TryGetKeyInfo(const QByteArray &privateKey, const QString &password,
                              TSSHKeyInfo &info);
    /// DSA, RSA, ECDSA, Ed25519.
    static QString GetAlgorithmName(TSSHKeyAlgorithm algorithm);
};
