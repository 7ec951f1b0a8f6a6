#pragma once

#include <QByteArray>
#include <QStringList>

/// Plain requests over HTTP, redirects followed. Each blocks its caller, which is a thread of its
/// own and never the main one.
class THttpUtils
{
public:
    /// Posts fields, each a key, "=" and a value in `fields`; the answer is of no interest. Raises
    /// EException when the request fails.
    static void Post(const QString &address, const QStringList &fields);
    /// The body of the answer. Raises EException when the request fails.
    static QByteArray Get(const QString &address);

    /// Ends requests that are under way and refuses new ones, as the program ends.
    static void Abort();
    /// Lets requests go out again.
    static void Resume();
};
