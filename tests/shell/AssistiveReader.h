#pragma once

#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusVariant>
#include <QRect>
#include <QString>
#include <QStringList>
#include <QVariant>
#include <string>
#include <vector>

namespace ventaro {

/// What the running programs offer to a screen reader: every element that is on screen, with its
/// role, its name and its place. Needs a session bus from which the accessibility bus can be had.
class AssistiveReader {
public:
    struct Element {
        QString service;
        QDBusObjectPath path;
        QString role; ///< "push button"
        QString name;

        /// Where it lives.
        friend const QDBusArgument& operator>>(const QDBusArgument& list, Element& element) {
            list.beginStructure();
            list >> element.service >> element.path;
            list.endStructure();
            return list;
        }
    };

    explicit AssistiveReader(const std::string& sessionBus) {
        auto session = QDBusConnection::connectToBus(QString::fromStdString(sessionBus),
                                                     QStringLiteral("reader-session"));
        const QDBusMessage answer = session.call(QDBusMessage::createMethodCall(
            "org.a11y.Bus", "/org/a11y/bus", "org.a11y.Bus", "GetAddress"));
        bus_ = QDBusConnection::connectToBus(answer.arguments().value(0).toString(),
                                             QStringLiteral("reader"));
    }
    ~AssistiveReader() {
        QDBusConnection::disconnectFromBus(QStringLiteral("reader"));
        QDBusConnection::disconnectFromBus(QStringLiteral("reader-session"));
    }
    AssistiveReader(const AssistiveReader&) = delete;
    AssistiveReader& operator=(const AssistiveReader&) = delete;

    bool isConnected() const { return bus_.isConnected(); }

    /// All with that role, by name.
    QStringList names(const char* role) const {
        QStringList names;
        for (const Element& element : elements(role)) {
            names.append(element.name);
        }
        return names;
    }
    /// On the screen; empty if there is no such element there.
    QRect place(const char* role, const QString& name) const {
        const auto found = elements(role, &name);
        constexpr uint onScreen = 0;
        return found.empty() ? QRect()
                             : qdbus_cast<QRect>(ask(found.front(), "org.a11y.atspi.Component",
                                                     "GetExtents", {onScreen}));
    }
    bool isChecked(const char* role, const QString& name) const {
        const auto found = elements(role, &name);
        return !found.empty() && hasState(found.front(), checkedState);
    }

private:
    // Of the protocol.
    static constexpr unsigned checkedState = 4;
    static constexpr unsigned showingState = 25;
    static constexpr auto accessible = "org.a11y.atspi.Accessible";

    std::vector<Element> elements(const char* role, const QString* name = nullptr) const {
        std::vector<Element> found;
        collect(
            {"org.a11y.atspi.Registry", QDBusObjectPath("/org/a11y/atspi/accessible/root"), {}, {}},
            found);
        std::erase_if(found, [&](const Element& element) {
            return element.role != QLatin1String(role) ||
                   (name != nullptr && element.name != *name);
        });
        return found;
    }
    void collect(const Element& parent, std::vector<Element>& found) const {
        // No list, if the parent has gone meanwhile.
        for (Element& child : qdbus_cast<QList<Element>>(ask(parent, accessible, "GetChildren"))) {
            if (child.path.path().endsWith("/root") || hasState(child, showingState)) {
                child.role = ask(child, accessible, "GetRoleName").toString();
                child.name =
                    ask(child, "org.freedesktop.DBus.Properties", "Get", {accessible, "Name"})
                        .value<QDBusVariant>()
                        .variant()
                        .toString();
                found.push_back(child);
                collect(child, found);
            }
        }
    }
    bool hasState(const Element& element, unsigned state) const {
        constexpr unsigned bits = 32;
        const auto words = qdbus_cast<QList<uint>>(ask(element, accessible, "GetState"));
        return (words.value(state / bits) >> (state % bits) & 1U) != 0;
    }
    QVariant ask(const Element& element, const char* interface, const char* method,
                 const QVariantList& arguments = {}) const {
        auto question =
            QDBusMessage::createMethodCall(element.service, element.path.path(), interface, method);
        question.setArguments(arguments);
        return bus_.call(question).arguments().value(0);
    }

    QDBusConnection bus_{QString()};
};

} // namespace ventaro
