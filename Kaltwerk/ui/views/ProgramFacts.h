#pragma once

#include <QObject>
#include <QQmlEngine>
#include <QString>

namespace ventaro {

/// What never changes while the program runs, for views to show. Any thread.
class ProgramFacts : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON
    Q_PROPERTY(QString version READ version CONSTANT)
    Q_PROPERTY(int helperProtocol READ helperProtocol CONSTANT)
    Q_PROPERTY(QString helperBinary READ helperBinary CONSTANT)
    Q_PROPERTY(QString helperSocket READ helperSocket CONSTANT)

public:
    using QObject::QObject;

    static QString version();
    static int helperProtocol();
    /// Where the helper and its socket are once it is installed.
    static QString helperBinary();
    static QString helperSocket();
};

} // namespace ventaro
