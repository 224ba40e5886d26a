#pragma once

#include <QObject>
#include <QQmlEngine>

namespace ventaro {

/// How the desktop wants programs to look. One object per process, which the shell keeps up to date
/// and every theme follows. Main thread only.
class Appearance : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON
    /// Turns a font's size in pixels, which Qt takes whole only, into one in points, which may have
    /// a fraction.
    Q_PROPERTY(qreal pointsPerPixel READ pointsPerPixel CONSTANT)
    /// The program's font, which templates of controls do not take by themselves.
    Q_PROPERTY(QString fontFamily READ fontFamily CONSTANT)
    Q_PROPERTY(bool dark READ dark WRITE setDark NOTIFY darkChanged)
    Q_PROPERTY(bool highContrast READ highContrast WRITE setHighContrast NOTIFY highContrastChanged)
    Q_PROPERTY(
        bool reducedMotion READ reducedMotion WRITE setReducedMotion NOTIFY reducedMotionChanged)

public:
    static Appearance& shared();
    /// For the QML engine, which does not own it.
    static Appearance* create(QQmlEngine* engine, QJSEngine* scriptEngine);

    qreal pointsPerPixel() const;
    QString fontFamily() const;
    bool dark() const { return dark_; }
    bool highContrast() const { return highContrast_; }
    bool reducedMotion() const { return reducedMotion_; }
    void setDark(bool dark);
    void setHighContrast(bool high);
    void setReducedMotion(bool reduced);

Q_SIGNALS:
    void darkChanged();
    void highContrastChanged();
    void reducedMotionChanged();

private:
    Appearance() = default;

    bool dark_ = false;
    bool highContrast_ = false;
    bool reducedMotion_ = false;
};

} // namespace ventaro
