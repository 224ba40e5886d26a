#include "LinePlot.h"

#include <QPainter>
#include <algorithm>
#include <cmath>

namespace ventaro {

namespace {

bool isPlace(const QPointF& point) { return std::isfinite(point.x()) && std::isfinite(point.y()); }

} // namespace

LinePlot::LinePlot(QQuickItem* parent) : QQuickPaintedItem(parent) {
    connect(this, &LinePlot::domainChanged, this, [this] { update(); });
}

QQmlListProperty<ChartLine> LinePlot::lines() {
    using List = QQmlListProperty<ChartLine>;
    const auto append = [](List* list, ChartLine* line) {
        static_cast<LinePlot*>(list->object)->append(line);
    };
    const auto count = [](List* list) {
        return static_cast<LinePlot*>(list->object)->lines_.size();
    };
    const auto at = [](List* list, qsizetype index) {
        return static_cast<LinePlot*>(list->object)->lines_.at(index).data();
    };
    return {this, nullptr, append, count, at, nullptr};
}

void LinePlot::append(ChartLine* line) {
    const auto repaint = [this] { update(); };
    connect(line, &ChartLine::pointsChanged, this, repaint);
    connect(line, &ChartLine::colorChanged, this, repaint);
    lines_.append(line);
    update();
    Q_EMIT linesChanged();
}

void LinePlot::paint(QPainter* painter) {
    constexpr qreal lineWidth = 2.2;
    constexpr qreal far = 1e6; // the painter loses lines from much farther away
    if (domain_.isEmpty()) {
        return;
    }
    const qreal horizontal = width() / domain_.width();
    const qreal vertical = height() / domain_.height();
    painter->setRenderHint(QPainter::Antialiasing);
    for (const QPointer<ChartLine>& line : lines_) {
        if (line == nullptr) {
            continue;
        }
        QList<QPointF> places = smoothed(line->points());
        for (QPointF& place : places) {
            if (isPlace(place)) {
                place = {std::clamp((place.x() - domain_.left()) * horizontal, -far, far),
                         std::clamp((domain_.bottom() - place.y()) * vertical, -far, far)};
            }
        }
        // The pieces are so short that round joins would only show as dark dots.
        painter->setPen(QPen(line->color(), lineWidth, Qt::SolidLine, Qt::RoundCap, Qt::BevelJoin));
        // A value that is no number leaves a gap.
        for (auto first = places.cbegin(); first != places.cend();) {
            const auto gap = std::find_if_not(first, places.cend(), isPlace);
            painter->drawPolyline(&*first, static_cast<int>(gap - first));
            first = std::find_if(gap, places.cend(), isPlace);
        }
    }
}

} // namespace ventaro
