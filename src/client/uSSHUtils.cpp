#include "client/uSSHUtils.h"

#include "client/uSSHKey.h"

#include <QList>
#include <QtEndian>

namespace {

TSSHKeyAlgorithm AlgorithmOf(ssh_keytypes_e type)
{
    switch (type) {
    case SSH_KEYTYPE_DSS:
        return sshkaDSA;
    case SSH_KEYTYPE_RSA:
        return sshkaRSA;
    case SSH_KEYTYPE_ECDSA:
    case SSH_KEYTYPE_ECDSA_P256:
    case SSH_KEYTYPE_ECDSA_P384:
    case SSH_KEYTYPE_ECDSA_P521:
        return sshkaECDSA;
    case SSH_KEYTYPE_ED25519:
        return sshkaEd25519;
    default:
        return sshkaUnknown;
    }
}

/// The length-prefixed parts of a public key as it goes over the wire (RFC 4253, section 6.6).
QList<QByteArray> PartsOf(const ssh_key key)
{
    char *text = nullptr;
    if (ssh_pki_export_pubkey_base64(key, &text) != SSH_OK)
        return {};
    const QByteArray blob = QByteArray::fromBase64(text);
    ssh_string_free_char(text);
    QList<QByteArray> parts;
    for (qsizetype at = 0; at + 4 <= blob.size();) {
        const qsizetype size = qFromBigEndian<quint32>(blob.constData() + at);
        parts.append(blob.mid(at + 4, size));
        at += 4 + size;
    }
    return parts;
}

qint32 BitsOfNumber(const QByteArray &number)
{
    for (qsizetype i = 0; i < number.size(); ++i)
        if (const quint32 byte = static_cast<uchar>(number[i]))
            return static_cast<qint32>((number.size() - i) * 8 -
                                       (qCountLeadingZeroBits(byte) - 24));
    return 0;
}

qint32 BitsOf(const ssh_key key)
{
    const QList<QByteArray> parts = PartsOf(key);
    switch (ssh_key_type(key)) {
    case SSH_KEYTYPE_RSA:
        return BitsOfNumber(parts.value(2)); // the modulus
    case SSH_KEYTYPE_DSS:
        return BitsOfNumber(parts.value(1)); // the prime
    case SSH_KEYTYPE_ED25519:
        return 256;
    case SSH_KEYTYPE_ECDSA_P256:
        return 256;
    case SSH_KEYTYPE_ECDSA_P384:
        return 384;
    case SSH_KEYTYPE_ECDSA_P521:
        return 521;
    default:
        return 0;
    }
}

QString FingerprintOf(const ssh_key key)
{
    uchar *hash = nullptr;
    size_t size = 0;
    if (ssh_get_publickey_hash(key, SSH_PUBLICKEY_HASH_MD5, &hash, &size) != SSH_OK)
        return {};
    const QByteArray bytes(reinterpret_cast<const char *>(hash), static_cast<qsizetype>(size));
    ssh_clean_pubkey_hash(&hash);
    return QString::fromLatin1(bytes.toHex(':'));
}

} // namespace

TSSHKeyPtr ImportSSHKey(const QByteArray &privateKey, const QString &passPhrase)
{
    ssh_key key = nullptr;
    const QByteArray phrase = passPhrase.toUtf8();
    // A pass phrase that is not there must not be asked for at a terminal.
    const int result = ssh_pki_import_privkey_base64(privateKey.constData(), phrase.constData(),
                                                     nullptr, nullptr, &key);
    return TSSHKeyPtr(result == SSH_OK ? key : nullptr);
}

bool TSSHUtils::TryGetKeyInfo(const QByteArray &privateKey, const QString &password,
                              TSSHKeyInfo &info)
{
    const TSSHKeyPtr key = ImportSSHKey(privateKey, password);
    if (!key)
        return false;
    info.Algorithm = AlgorithmOf(ssh_key_type(key.get()));
    info.BitCount = BitsOf(key.get());
    info.MD5FingerprintString = FingerprintOf(key.get());
    return true;
}

QString TSSHUtils::GetAlgorithmName(TSSHKeyAlgorithm algorithm)
{
    switch (algorithm) {
    case sshkaDSA:
        return "DSA";
    case sshkaRSA:
        return "RSA";
    case sshkaECDSA:
        return "ECDSA";
    case sshkaEd25519:
        return "Ed25519";
    case sshkaUnknown:
        break;
    }
    return "Unknown";
}
