#pragma once

#include <QByteArray>
#include <QString>

/// Who may use the local interface. Its ports are within the reach of every page that a browser on
/// this machine shows.

/// @param origin  of a page, as its browser sends it
/// @param list  of origins, separated by commas; an empty one allows all
bool isOriginAllowed(const QString &origin, const QString &list);

/// @param authority  a host as a request names it, with a port or without
/// @param port  the one that the request came to
/// @return false for every other name, which may have been made to lead here
bool namesThisMachine(const QByteArray &authority, quint16 port);

/// What a client says about itself, fit for the log and for messages: short, no control characters,
/// no markup. The end, which tells whose a host is, is kept.
QString shownText(const QString &text);
