#include "ChartLine.h"

#include <algorithm>
#include <cmath>

namespace ventaro {

namespace {

qreal slopeBetween(const QPointF& left, const QPointF& right) {
    const qreal width = right.x() - left.x();
    return width > 0 ? (right.y() - left.y()) / width : 0;
}

/// The slopes of a monotone cubic through `points`, after Steffen: flat at a peak, and never so
/// steep that the curve overshoots.
QList<qreal> tangents(const QList<QPointF>& points) {
    QList<qreal> slopes(points.size(), 0);
    for (qsizetype index = 1; index + 1 < points.size(); ++index) {
        const qreal before = slopeBetween(points[index - 1], points[index]);
        const qreal after = slopeBetween(points[index], points[index + 1]);
        if (before * after > 0) {
            const qreal left = points[index].x() - points[index - 1].x();
            const qreal right = points[index + 1].x() - points[index].x();
            const qreal mean = (before * right + after * left) / (left + right);
            slopes[index] = std::copysign(
                std::min({2 * std::abs(before), 2 * std::abs(after), std::abs(mean)}), before);
        }
    }
    return slopes;
}

} // namespace

QList<QPointF> smoothed(const QList<QPointF>& points) {
    constexpr int steps = 6;
    if (points.size() < 3) {
        return points;
    }
    const QList<qreal> slopes = tangents(points);
    QList<QPointF> line;
    line.reserve(points.size() * steps);
    for (qsizetype index = 0; index + 1 < points.size(); ++index) {
        const QPointF& from = points[index];
        const QPointF& to = points[index + 1];
        const qreal width = to.x() - from.x();
        line.append(from);
        if (from.y() == to.y()) {
            continue;
        }
        for (int step = 1; step < steps; ++step) {
            const qreal t = static_cast<qreal>(step) / steps;
            const qreal rest = 1 - t;
            const qreal y = (1 + 2 * t) * rest * rest * from.y() +
                            t * rest * rest * width * slopes[index] + t * t * (3 - 2 * t) * to.y() -
                            t * t * rest * width * slopes[index + 1];
            line.append({from.x() + t * width, y});
        }
    }
    line.append(points.last());
    return line;
}

void ChartLine::setPoints(const QList<QPointF>& points) {
    if (points_ != points) {
        points_ = points;
        Q_EMIT pointsChanged();
    }
}

QPointF ChartLine::nearest(double time) const {
    const auto after =
        std::lower_bound(points_.begin(), points_.end(), time,
                         [](const QPointF& point, double wanted) { return point.x() < wanted; });
    if (after == points_.end()) {
        return last();
    }
    if (after == points_.begin()) {
        return *after;
    }
    const auto before = std::prev(after);
    return time - before->x() <= after->x() - time ? *before : *after;
}

} // namespace ventaro
