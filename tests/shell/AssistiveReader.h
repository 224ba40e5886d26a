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
#include <algorithm>
#include <string>
#include <vector>

namespace ventaro {

/// What the running programs offer to a screen reader: every element that is on screen, with its
/// role, its name and its place. Needs a session bus from which the accessibility bus can be had.
class AssistiveReader {
public:
    struct Element {
        QString service;
        QString path;
        QString role; ///< "push button"
        QString name;

        bool is(const char* wantedRole, const QString& wantedName) const {
            return role == QLatin1String(wantedRole) && name == wantedName;
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

    std::vector<Element> elements() const {
        std::vector<Element> found;
        collect("org.a11y.atspi.Registry", "/org/a11y/atspi/accessible/root", found);
        return found;
    }
    /// All with that role, by name.
    QStringList names(const char* role) const {
        QStringList names;
        for (const Element& element : elements()) {
            if (element.role == QLatin1String(role)) {
                names.append(element.name);
            }
        }
        return names;
    }
    /// On the screen; empty if there is no such element there.
    QRect place(const char* role, const QString& name) const {
        const auto all = elements();
        const auto element = std::find_if(all.begin(), all.end(), [&](const Element& candidate) {
            return candidate.is(role, name);
        });
        return element == all.end() ? QRect() : extents(*element);
    }
    bool isChecked(const char* role, const QString& name) const {
        const auto all = elements();
        return std::any_of(all.begin(), all.end(), [&](const Element& element) {
            return element.is(role, name) && hasState(element, checkedState);
        });
    }

private:
    // Of the protocol.
    static constexpr unsigned checkedState = 4;
    static constexpr unsigned showingState = 25;

    static constexpr auto accessible = "org.a11y.atspi.Accessible";

    void collect(const QString& service, const QString& path, std::vector<Element>& found) const {
        const QVariant children = ask(service, path, accessible, "GetChildren");
        if (!children.canConvert<QDBusArgument>()) {
            return; // it has gone meanwhile
        }
        const auto list = children.value<QDBusArgument>();
        std::vector<Element> all;
        list.beginArray();
        while (!list.atEnd()) {
            Element child;
            QDBusObjectPath object;
            list.beginStructure();
            list >> child.service >> object;
            list.endStructure();
            child.path = object.path();
            all.push_back(child);
        }
        list.endArray();
        for (Element& child : all) {
            if (child.path.endsWith("/root") || hasState(child, showingState)) {
                child.role = ask(child.service, child.path, accessible, "GetRoleName").toString();
                child.name = ask(child.service, child.path, "org.freedesktop.DBus.Properties",
                                 "Get", {accessible, "Name"})
                                 .value<QDBusVariant>()
                                 .variant()
                                 .toString();
                found.push_back(child);
                collect(child.service, child.path, found);
            }
        }
    }
    bool hasState(const Element& element, unsigned state) const {
        const QVariant answer = ask(element.service, element.path, accessible, "GetState");
        if (!answer.canConvert<QDBusArgument>()) {
            return false;
        }
        QList<uint> words;
        answer.value<QDBusArgument>() >> words;
        constexpr unsigned bits = 32;
        return (words.value(state / bits) >> (state % bits) & 1U) != 0;
    }
    QRect extents(const Element& element) const {
        constexpr uint onScreen = 0;
        const QVariant answer = ask(element.service, element.path, "org.a11y.atspi.Component",
                                    "GetExtents", {onScreen});
        if (!answer.canConvert<QDBusArgument>()) {
            return {};
        }
        QRect place;
        int width = 0;
        int height = 0;
        int x = 0;
        int y = 0;
        const auto structure = answer.value<QDBusArgument>();
        structure.beginStructure();
        structure >> x >> y >> width >> height;
        structure.endStructure();
        place.setRect(x, y, width, height);
        return place;
    }
    QVariant ask(const QString& service, const QString& path, const char* interface,
                 const char* method, const QVariantList& arguments = {}) const {
        auto question = QDBusMessage::createMethodCall(service, path, interface, method);
        question.setArguments(arguments);
        return bus_.call(question).arguments().value(0);
    }

    QDBusConnection bus_{QString()};
};

} // namespace ventaro
