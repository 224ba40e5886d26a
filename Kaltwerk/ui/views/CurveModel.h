#pragma once

#include "ControllerListModel.h"

#include <QList>
#include <QPointF>
#include <QUrl>
#include <optional>

namespace ventaro {

/// The points of the fan curve, a row each in stored order, and all that can be done to them. Every
/// change reaches the controller at once; what ends an edit saves it and has it applied. Never adds
/// or removes a point. Main thread only.
class CurveModel : public ventaro::ControllerListModel {
    Q_OBJECT
    QML_ELEMENT
    /// Temperature (°C) and percent of all points, by ascending temperature.
    Q_PROPERTY(QList<QPointF> sorted READ sorted NOTIFY curveChanged)
    /// The rows in the order of `sorted`.
    Q_PROPERTY(QList<int> sortedRows READ sortedRows NOTIFY curveChanged)
    /// The temperature of the chosen source, °C; what the curve makes of it, percent; and the
    /// left fan's speed there, RPM.
    Q_PROPERTY(double currentTemperature READ currentTemperature NOTIFY currentChanged)
    Q_PROPERTY(double currentPercent READ currentPercent NOTIFY currentChanged)
    Q_PROPERTY(double currentRPM READ currentRPM NOTIFY currentChanged)
    /// The row of the source.
    Q_PROPERTY(int source READ source NOTIFY sourceChanged)
    Q_PROPERTY(bool isActive READ isActive NOTIFY isActiveChanged)
    Q_PROPERTY(bool canUndo READ canUndo NOTIFY editsChanged)
    Q_PROPERTY(bool canRedo READ canRedo NOTIFY editsChanged)
    /// Why the last export or import has come to nothing, German; empty after a good one and after
    /// any other change.
    Q_PROPERTY(QString problem READ problem NOTIFY problemChanged)

    // Where a point can be moved to, °C.
    Q_PROPERTY(double minimumTemperature MEMBER minimumTemperature CONSTANT)
    Q_PROPERTY(double maximumTemperature MEMBER maximumTemperature CONSTANT)
    Q_PROPERTY(double percentStep MEMBER percentStep CONSTANT)

public:
    enum Role { temperatureRole = Qt::UserRole, percentRole, leftRPMRole, rightRPMRole };

    using ControllerListModel::ControllerListModel;

    QList<QPointF> sorted() const;
    QList<int> sortedRows() const;
    double currentTemperature() const;
    double currentPercent() const;
    double currentRPM() const;
    int source() const;
    bool isActive() const;
    bool canUndo() const { return !undo_.empty(); }
    bool canRedo() const { return !redo_.empty(); }
    const QString& problem() const { return problem_; }

    int rowCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QHash<int, QByteArray> roleNames() const override;

    /// The place of `row` in `sortedRows`; -1 if it is none.
    Q_INVOKABLE int rankOf(int row) const { return static_cast<int>(sortedRows().indexOf(row)); }
    /// The row of the point whose temperature is nearest to where the pointer is, the lower one of
    /// two; -1 without points.
    Q_INVOKABLE int nearestRow(double temperature) const;
    /// Moves the nearest point to the pointer's data values, rounded and limited; returns its row,
    /// or -1 if nothing can be moved there.
    Q_INVOKABLE int drag(double temperature, double percent);
    /// Moves the point of `row` there, limited to whole degrees and percent of the editor's range.
    /// What it has already stays as it is.
    Q_INVOKABLE void movePoint(int row, double temperature, double percent);

    /// An edit that changes points in several steps begins; again while it lasts does nothing.
    Q_INVOKABLE void beginEdit();
    /// Saves and, in the curve's profile, applies what the edit has made, if one lasts.
    Q_INVOKABLE void endEdit();
    /// Puts all points back to where they were when the edit began, if one lasts.
    Q_INVOKABLE void cancelEdit();

    /// The curve of a first start.
    Q_INVOKABLE void reset();
    /// One edit back, or forward again; an edit that lasts ends with it.
    Q_INVOKABLE void undo();
    Q_INVOKABLE void redo();
    Q_INVOKABLE void chooseSource(int row);
    Q_INVOKABLE void activate();

    /// Writes the points to a file, or takes them from one, which changes nothing unless it is
    /// good. What is wrong is the `problem`.
    Q_INVOKABLE void exportTo(const QUrl& file);
    Q_INVOKABLE void importFrom(const QUrl& file);

Q_SIGNALS:
    void curveChanged();
    void currentChanged();
    void sourceChanged();
    void isActiveChanged();
    void editsChanged();
    void problemChanged();

protected:
    void follow(FanControllerViewModel& viewModel) override;

private:
    using Curve = std::vector<CurvePoint>;

    static constexpr double minimumTemperature = 35; // °C
    static constexpr double maximumTemperature = 95;
    static constexpr double percentStep = 5;

    void update();
    /// Keeps the edit that lasts as one to be undone; whether one lasted.
    bool closeEdit();
    void replace(Curve points);
    void step(std::vector<Curve>& from, std::vector<Curve>& to);
    void apply();
    void setProblem(const QString& problem);
    double speed(int fan, double percent) const;

    Curve points_;
    std::optional<Curve> editedFrom_;
    std::vector<Curve> undo_;
    std::vector<Curve> redo_;
    QString problem_;
};

} // namespace ventaro
