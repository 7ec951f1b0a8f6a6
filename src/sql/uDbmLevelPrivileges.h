#pragma once

#include "sql/uDbmSqlUtils.h"
#include "support/uSet.h"

#include <QStringList>
#include <span>

/// One privilege: its bit, the word in statements, and the column or the
/// word of a SET column in the grant tables.
struct TDbmPrivilegeText
{
    int Bit;
    const char *Word;
    const char *Stored;
};

/// The statements that the three levels below the global one share.
class TDbmLevelPrivileges
{
public:
    using TTexts = std::span<const TDbmPrivilegeText>;

    /// The global privileges in the order of the server's releases. REFERENCES among them; see
    /// TDbmServerFeatures.
    static TTexts UserPrivs();
    /// Words, one a line, each with a comma behind it but the last; empty for none.
    template <typename E>
    static QString FormatList(TTexts texts, const TSet<E> &privs)
    {
        QString list;
        for (const TDbmPrivilegeText &text : texts)
            if (privs.Contains(static_cast<E>(text.Bit)))
                list += (list.isEmpty() ? "\r\n  " : ", \r\n  ") + QString(text.Word);
        return list;
    }
    static QString FormatGrant(const QString &list, const QString &objectLine,
                               const QString &userHost);
    static QString FormatRevoke(const QString &list, const QString &objectLine,
                                const QString &userHost);
    /// `object` as it stands behind ON.
    static QString FormatDelete(const QString &object, const QString &userHost,
                                bool hasGrantOption);
    /// The members of a SET column's text; words that are in no row are skipped.
    template <typename E>
    static TSet<E> ParseWords(TTexts texts, const QString &words)
    {
        TSet<E> privs;
        for (const QString &word : words.split(u','))
            for (const TDbmPrivilegeText &text : texts)
                if (word.compare(QLatin1String(text.Stored), Qt::CaseInsensitive) == 0)
                    privs.Include(static_cast<E>(text.Bit));
        return privs;
    }
};
