#pragma once

#include <QColor>
#include <QList>
#include <QObject>
#include <QPointF>
#include <QQmlEngine>

namespace ventaro {

/// One line of a chart.
class ChartLine : public QObject {
    Q_OBJECT
    QML_ELEMENT
    /// As the legend shows it.
    Q_PROPERTY(QString name MEMBER name_ NOTIFY nameChanged)
    /// What its values are called.
    Q_PROPERTY(QString valueLabel MEMBER valueLabel_ NOTIFY nameChanged)
    Q_PROPERTY(QColor color MEMBER color_ NOTIFY colorChanged)
    /// By ascending x, which is a time in milliseconds since 1970.
    Q_PROPERTY(QList<QPointF> points READ points WRITE setPoints NOTIFY pointsChanged)
    Q_PROPERTY(bool isEmpty READ isEmpty NOTIFY pointsChanged)
    /// The newest point; (0, 0) without one.
    Q_PROPERTY(QPointF last READ last NOTIFY pointsChanged)

public:
    using QObject::QObject;

    const QColor& color() const { return color_; }
    const QList<QPointF>& points() const { return points_; }
    void setPoints(const QList<QPointF>& points);
    bool isEmpty() const { return points_.isEmpty(); }
    QPointF last() const { return points_.isEmpty() ? QPointF() : points_.last(); }

    /// The point whose time is nearest to `time`; (0, 0) without one.
    Q_INVOKABLE QPointF nearest(double time) const;

Q_SIGNALS:
    void nameChanged();
    void colorChanged();
    void pointsChanged();

private:
    QString name_;
    QString valueLabel_;
    QColor color_;
    QList<QPointF> points_;
};

/// `points`, by ascending x, with further ones between them that make a smooth line. It goes
/// through every point and never beyond its neighbours, so that no value is shown that there was
/// not.
QList<QPointF> smoothed(const QList<QPointF>& points);

} // namespace ventaro
